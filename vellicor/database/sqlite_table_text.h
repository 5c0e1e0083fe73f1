// vellicor/database/sqlite_table_text.h — what only the text of a CREATE TABLE statement says of a table of SQLite.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

struct SQLiteTableText {
    struct Column {
        std::string collation;
        std::string generated;  ///< expression
        bool autoIncrement = false;
    };
    struct Key {
        std::string name;
        std::vector<std::string> columns;
        bool isOfColumn = false;  ///< stands in the column's definition
        bool operator==(const Key&) const = default;
    };
    struct ForeignKey {
        std::string name;
        bool deferrable = false;
        bool initiallyDeferred = false;
    };
    struct Check {
        std::string name;
        std::string expression;
    };

    std::map<std::string, Column> columns;  ///< by the name's lower case
    std::string primaryKeyName;
    std::vector<Key> uniques;
    std::vector<ForeignKey> foreignKeys;  ///< in the order of the text
    std::vector<Check> checks;
    bool hasConflictClauses = false;
    bool sortsPrimaryKey = false;  ///< DESC or a collation inside the primary key

    [[nodiscard]] static SQLiteTableText parse(std::string_view sql);
};

/// The query of a CREATE VIEW statement, and whether the view lists its columns.
struct SQLiteViewText {
    std::string query;
    bool listsColumns = false;
    [[nodiscard]] static SQLiteViewText parse(std::string_view sql);
};

/// Behind the word WHERE of a CREATE INDEX statement, and the expressions of its parts in order.
struct SQLiteIndexText {
    std::string condition;
    std::vector<std::string> parts;  ///< as written, without collation and direction
    [[nodiscard]] static SQLiteIndexText parse(std::string_view sql);
};

}  // namespace vellicor
