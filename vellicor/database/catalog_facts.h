// vellicor/database/catalog_facts.h — what databases hold, a line a fact, for comparing them.
#pragma once

#include <string>
#include <vector>

#include "vellicor/database/catalog.h"

namespace vellicor {

/// Everything that a catalog says of a table or view, so that equal lines mean equal objects; types of SQLite are the
/// same in any case. "column a VARCHAR(20) not null default 'x'".
[[nodiscard]] std::vector<std::string> factsOf(const CatalogTable& table);
[[nodiscard]] std::vector<std::string> factsOf(const CatalogView& view);

/// "table t: column a integer is missing", "table u is not expected"…; empty when both hold the same.
[[nodiscard]] std::vector<std::string> differences(const Catalog& expected, const Catalog& actual);

}  // namespace vellicor
