// vellicor/model/primary_key_references.h — who references the primary keys of a document's tables.
#pragma once

#include <unordered_map>
#include <vector>

#include "vellicor/model/forward.h"

namespace vellicor {

/// Gathers the resolved references of a document once, for callers that ask about many tables. Valid until the document
/// changes.
class PrimaryKeyReferences {
public:
    explicit PrimaryKeyReferences(const SQLContainer& container);

    /// In the order of the document's tables and their components: columns that reference the table's only primary-key
    /// column, and keys whose target columns are its primary-key columns in their order. A table without a primary key
    /// has none.
    [[nodiscard]] std::vector<SQLConnectable*> referencing(const SQLTable& table) const;

private:
    std::unordered_map<const SQLField*, std::vector<SQLConnectable*>> _byFirstTarget;
};

}  // namespace vellicor
