// vellicor/database/catalog_reader.h — reading what a database holds.
#pragma once

#include "vellicor/database/catalog.h"

namespace vellicor {

class DatabaseConnection;

/// Reads the schemas that the connection's URL names, or all that are not the engine's own, with a handful of queries
/// whatever the number of tables. Raises `DatabaseError`, also for a schema that is not there.
[[nodiscard]] Catalog readCatalog(DatabaseConnection& connection);

// One an engine.
[[nodiscard]] Catalog readSQLiteCatalog(DatabaseConnection& connection);
[[nodiscard]] Catalog readPostgreSQLCatalog(DatabaseConnection& connection);
[[nodiscard]] Catalog readMySQLCatalog(DatabaseConnection& connection);

/// The default of a text literal with that content: a value, or the literal as an expression where a script might take
/// the content for a word of the language.
[[nodiscard]] CatalogDefault catalogDefaultOf(std::string content, std::string_view literal);

/// Puts tables, and what each holds, and views into the order of names.
void sortCatalog(Catalog& catalog);

}  // namespace vellicor
