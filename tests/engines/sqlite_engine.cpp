// tests/engines/sqlite_engine.cpp — SQLite in this process.
#include "tests/engines/sqlite_engine.h"

#include <sqlite3.h>

#include <stdexcept>

namespace vellicor::testing {

SQLiteEngine::~SQLiteEngine() { sqlite3_close(_database); }

void SQLiteEngine::clear() {
    sqlite3_close(_database);
    if (sqlite3_open(":memory:", &_database) != SQLITE_OK) throw std::runtime_error("SQLite cannot open a database");
    if (!run("PRAGMA foreign_keys = ON").empty()) throw std::runtime_error("SQLite has no foreign keys");
}

std::string SQLiteEngine::run(std::string_view script) {
    char* message = nullptr;
    const int result = sqlite3_exec(_database, std::string(script).c_str(), nullptr, nullptr, &message);
    const std::string refusal = message ? message : "";
    sqlite3_free(message);
    return result == SQLITE_OK ? "" : refusal;
}

std::vector<Rows> SQLiteEngine::rows(const std::vector<std::string>& queries) {
    std::vector<Rows> results;
    for (const std::string& query : queries) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(_database, query.c_str(), -1, &statement, nullptr) != SQLITE_OK)
            throw std::runtime_error(std::string(sqlite3_errmsg(_database)) + " in " + query);
        Rows& rows = results.emplace_back();
        while (sqlite3_step(statement) == SQLITE_ROW) {
            auto& row = rows.emplace_back();
            for (int i = 0; i < sqlite3_column_count(statement); ++i) {
                const unsigned char* content = sqlite3_column_text(statement, i);
                row.push_back(content ? reinterpret_cast<const char*>(content) : "NULL");
            }
        }
        sqlite3_finalize(statement);
    }
    return results;
}

Catalog SQLiteEngine::catalog() {
    const std::string tables =
        " FROM (SELECT * FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\') m ";
    const auto results = rows({
        "SELECT type || ' ' || name FROM sqlite_master WHERE type IN ('table', 'view') AND name NOT LIKE 'sqlite\\_%' "
        "ESCAPE '\\'",
        "SELECT m.name, c.name, c.type, c.\"notnull\", c.dflt_value" + tables + "JOIN pragma_table_info(m.name) c",
        "SELECT m.name, (SELECT group_concat(name) FROM (SELECT name FROM pragma_table_info(m.name) WHERE pk > 0 ORDER "
        "BY pk))" +
            tables,
        "SELECT m.name, i.name, i.\"unique\", (SELECT group_concat(name) FROM (SELECT name FROM "
        "pragma_index_info(i.name) ORDER BY seqno))" +
            tables + "JOIN pragma_index_list(m.name) i WHERE i.origin <> 'pk'",
        "SELECT m.name, (SELECT group_concat(\"from\") FROM (SELECT \"from\" FROM pragma_foreign_key_list(m.name) "
        "WHERE id = k.id ORDER BY seq)),"
        " k.\"table\", (SELECT group_concat(\"to\") FROM (SELECT \"to\" FROM pragma_foreign_key_list(m.name) WHERE id "
        "= k.id ORDER BY seq)),"
        " k.on_delete, k.on_update" +
            tables + "JOIN pragma_foreign_key_list(m.name) k WHERE k.seq = 0",
    });
    Catalog catalog;
    for (const auto& row : results[0]) catalog.facts.insert(row[0]);
    for (const auto& row : results[1]) {
        const std::string name = row[0] + "." + row[1];
        catalog.facts.insert("column " + name + " " + row[2] + (row[3] == "1" ? " not null" : ""));
        if (row[4] != "NULL") catalog.defaults[name] = row[4];
    }
    for (const auto& row : results[2])
        if (row[1] != "NULL") catalog.facts.insert("primary key " + row[0] + " (" + row[1] + ")");
    for (const auto& row : results[3]) {
        catalog.facts.insert((row[2] == "1" ? "unique " : "index ") + row[0] + " (" + row[3] + ")");
        catalog.names.insert(row[1]);
    }
    for (const auto& row : results[4])
        catalog.facts.insert("foreign key " + row[0] + " (" + row[1] + ") -> " + row[2] + " (" + row[3] +
                             ") on delete " + row[4] + " on update " + row[5]);
    return catalog;
}

std::vector<std::string> SQLiteEngine::keywords() {
    std::vector<std::string> words;
    for (int i = 0; i < sqlite3_keyword_count(); ++i) {
        const char* word = nullptr;
        int size = 0;
        sqlite3_keyword_name(i, &word, &size);
        words.emplace_back(word, static_cast<std::size_t>(size));
    }
    return words;
}

std::string SQLiteEngine::typeOf(const SQLField& field) const {
    const bool isOnlyKey = field.getPrimaryKey() && field.parentTable()->primaryKeyList().size() == 1;
    return isOnlyKey && field.getAutoIncrement() ? "INTEGER" : uppercased(field.getType());
}

}  // namespace vellicor::testing
