// vellicor/database/catalog.h — what a database holds, in the same words for every engine.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "vellicor/database/database_url.h"
#include "vellicor/platform/text.h"

namespace vellicor {

struct CatalogDefault {
    std::string text;  ///< the content of a value, or an expression as the engine writes it
    bool isExpression = false;
    bool operator==(const CatalogDefault&) const = default;
};

struct CatalogColumn {
    std::string name;
    std::string type;  ///< as the engine writes it, with its size
    bool notNull = false;
    std::optional<CatalogDefault> defaultValue;
    bool autoIncrement = false;  ///< the engine counts
    std::string identity;        ///< "ALWAYS", "BY DEFAULT" or empty
    std::string generated;       ///< the expression of a generated column; empty for others
    std::string generatedKind;   ///< "STORED" or "VIRTUAL"
    std::string characterSet;    ///< empty: the table's
    std::string collation;       ///< empty: the usual one of the type or table
    std::string onUpdate;        ///< expression
    std::string comment;
    bool operator==(const CatalogColumn&) const = default;
};

/// A primary key or a unique constraint.
struct CatalogKey {
    std::string name;  ///< empty: it has none
    std::vector<std::string> columns;
    bool deferrable = false;
    bool initiallyDeferred = false;
    bool nullsNotDistinct = false;
    std::vector<std::string> included;
    std::string comment;
    bool operator==(const CatalogKey&) const = default;
};

struct CatalogCheck {
    std::string name;  ///< empty: it has none
    std::string expression;
    std::string comment;
    bool operator==(const CatalogCheck&) const = default;
};

struct CatalogForeignKey {
    std::string name;  ///< empty: it has none
    std::vector<std::string> columns;
    std::string targetSchema;
    std::string targetTable;
    std::vector<std::string> targetColumns;  ///< empty: the target's primary key
    std::uint64_t deleteAction = 0;          ///< codes of actions; 0 where the engine's own is meant
    std::uint64_t updateAction = 0;
    bool deferrable = false;
    bool initiallyDeferred = false;
    std::string match;  ///< "FULL" or empty
    std::string comment;
    bool operator==(const CatalogForeignKey&) const = default;
};

struct CatalogIndexPart {
    std::string column;      ///< empty for an expression
    std::string expression;  ///< without outer parentheses
    std::string size;        ///< prefix length
    std::string options;     ///< collation, operator class, direction and place of nulls, where they are not the usual
    bool operator==(const CatalogIndexPart&) const = default;
};

struct CatalogIndex {
    std::string name;
    std::string type;    ///< "", "UNIQUE", "FULLTEXT" or "SPATIAL"
    std::string method;  ///< empty: the engine's usual one
    std::vector<CatalogIndexPart> parts;
    std::vector<std::string> included;
    std::string condition;
    bool nullsNotDistinct = false;
    std::string comment;
    bool operator==(const CatalogIndex&) const = default;
};

struct CatalogTable {
    std::string schema;  ///< empty for the connection's own
    std::string name;
    std::vector<CatalogColumn> columns;
    std::optional<CatalogKey> primaryKey;
    std::vector<CatalogKey> uniques;
    std::vector<CatalogCheck> checks;
    std::vector<CatalogForeignKey> foreignKeys;
    std::vector<CatalogIndex> indexes;
    std::string comment;
    std::string engine;  ///< of storage
    std::string characterSet;
    std::string collation;
    std::string tablespace;
    std::string options;
    bool operator==(const CatalogTable&) const = default;
};

struct CatalogView {
    std::string schema;
    std::string name;
    std::string query;
    std::vector<std::string> columns;
    bool listsColumns = false;  ///< the view itself names its columns
    bool isMaterialized = false;
    std::string comment;
    bool operator==(const CatalogView&) const = default;
};

/// Lists are in the order of names, columns in their own.
struct Catalog {
    DatabaseEngine engine = DatabaseEngine::SQLite;
    std::vector<std::string> prologue;  ///< statements that the tables need: types of the user's own
    std::vector<CatalogTable> tables;
    std::vector<CatalogView> views;
    std::vector<std::string> omissions;  ///< a line for each thing that is not carried over
};

}  // namespace vellicor
