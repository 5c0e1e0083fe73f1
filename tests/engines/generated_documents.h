// tests/engines/generated_documents.h — documents made by number: the same number makes the same document everywhere.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "tests/engines/engine.h"
#include "tests/support/scoped_preference.h"

namespace vellicor::testing {

/// What a generated document needs to know of an engine.
struct DocumentTraits {
    struct Default {
        const char* value;
        bool isExpression = false;  ///< flagged so
    };
    struct Type {
        const char* name;
        std::vector<Default> defaults;
        bool isIndexable = true;
        bool isUnsigned = false;
        bool hasTimeZone = false;
    };
    std::vector<Type> types;
    /// A key of a table in a schema may lead to one without. Where schemas are databases, no text says which that is.
    bool keysLeaveSchemas = true;
};

/// Columns of all types with defaults of every form, comments that try to end early, compound keys, keys by column and
/// as objects over any table, cycles included, indexes that share names, checks, views over views, schemas, tables
/// without columns, names that need quotes, and the user's own statements. Preferences that decide about quoting and
/// order are set while the object lives.
class GeneratedDocument {
public:
    GeneratedDocument(std::uint64_t number, std::string_view dialect, const DocumentTraits& traits);
    [[nodiscard]] SQLContainer& document() const { return *_document; }

private:
    std::vector<std::unique_ptr<ScopedPreference>> _preferences;
    std::shared_ptr<SQLContainer> _document;
};

/// Runs the documents 1 to `count` on the engine.
void expectGeneratedDocumentsOnEngine(Engine& engine, const DocumentTraits& traits, std::uint64_t count);

}  // namespace vellicor::testing
