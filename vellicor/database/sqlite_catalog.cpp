// vellicor/database/sqlite_catalog.cpp — what a database of SQLite holds: its pragmas, and the texts that it keeps.
#include <algorithm>
#include <map>
#include <unordered_map>

#include "vellicor/database/catalog_reader.h"
#include "vellicor/database/connection.h"
#include "vellicor/database/sql_scanner.h"
#include "vellicor/database/sqlite_table_text.h"
#include "vellicor/model/connectable.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::string_view kSQLiteTables =
    " FROM (SELECT m.name AS name, m.sql AS sql FROM sqlite_master m JOIN pragma_table_list l ON l.schema = 'main'"
    " AND l.name = m.name WHERE m.type = 'table' AND l.type = 'table' AND m.name NOT LIKE 'sqlite\\_%' ESCAPE '\\') m ";

std::uint64_t sqliteActionOf(std::string_view words) {
    if (words == "CASCADE") return action::cascade;
    if (words == "RESTRICT") return action::restrict_;
    if (words == "SET NULL") return action::setNull;
    if (words == "SET DEFAULT") return action::setDefault;
    return action::none;
}

CatalogDefault sqliteDefaultOf(const std::string& written) {
    std::string content;
    if (contentOfSqlText(written, content)) return catalogDefaultOf(std::move(content), written);
    return {written, true};
}

class SQLiteCatalogReader {
public:
    explicit SQLiteCatalogReader(DatabaseConnection& connection) : _connection(connection) {}

    Catalog read() {
        if (!_connection.url().schemas.empty())
            throw DatabaseError(DatabaseError::Kind::BadUrl, "a database of SQLite has no schemas to choose from");
        _catalog.engine = DatabaseEngine::SQLite;
        // One look at all of them, whatever somebody else changes meanwhile.
        _connection.execute("BEGIN");
        readObjects();
        readColumns();
        readIndexes();
        readForeignKeys();
        _connection.execute("COMMIT");
        for (CatalogTable& table : _catalog.tables) addTextFacts(table);
        sortCatalog(_catalog);
        return std::move(_catalog);
    }

private:
    DatabaseRows rows(std::string_view columns, std::string_view rest) {
        return _connection.query(text("SELECT %@%@%@", columns, kSQLiteTables, rest));
    }
    CatalogTable& table(const std::string& name) { return _catalog.tables[_places.at(name)]; }
    const SQLiteTableText& textOf(const std::string& name) { return _texts.at(name); }

    void readObjects() {
        const DatabaseRows objects = _connection.query(
            "SELECT m.type, m.name, m.sql, l.type, l.wr, l.strict, m.tbl_name FROM sqlite_master m"
            " LEFT JOIN pragma_table_list l ON l.schema = 'main' AND l.name = m.name AND m.type IN ('table', 'view')"
            " WHERE m.type IN ('table', 'view', 'trigger') AND m.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY "
            "m.name");
        for (const auto& row : objects) {
            const std::string& type = *row[0];
            const std::string& name = *row[1];
            const std::string sql = row[2].value_or("");
            if (type == "trigger") {
                omit(text("trigger %@ of table %@", name, row[6]));
            } else if (type == "view") {
                const auto view = SQLiteViewText::parse(sql);
                CatalogView facts;
                facts.name = name;
                facts.query = view.query;
                facts.listsColumns = view.listsColumns;
                _catalog.views.push_back(std::move(facts));
            } else if (row[3] == "virtual") {
                omit(text("virtual table %@", name));
            } else if (row[3] != "shadow") {
                _places.emplace(name, _catalog.tables.size());
                _texts.emplace(name, SQLiteTableText::parse(sql));
                CatalogTable facts;
                facts.name = name;
                if (row[5] == "1") facts.options = "STRICT";
                if (row[4] == "1") facts.options += facts.options.empty() ? "WITHOUT ROWID" : ", WITHOUT ROWID";
                _catalog.tables.push_back(std::move(facts));
            }
        }
        for (CatalogView& view : _catalog.views)
            if (view.listsColumns) readViewColumns(view);
    }

    /// Only views that list their columns, which are few, are asked one by one: one that no longer works would fail
    /// all.
    void readViewColumns(CatalogView& view) {
        try {
            for (const auto& row :
                 _connection.query(text("SELECT name FROM pragma_table_info(%@)", _connection.literal(view.name))))
                view.columns.push_back(*row[0]);
        } catch (const DatabaseError& error) {
            omit(text("columns of view %@, which does not work any more (%@)", view.name, error.reason()));
            view.listsColumns = false;
        }
    }

    void readColumns() {
        std::map<std::string, std::map<int, std::string>> keys;  // columns by place
        for (const auto& row : rows("m.name, c.name, c.type, c.\"notnull\", c.dflt_value, c.pk, c.hidden",
                                    "JOIN pragma_table_xinfo(m.name) c ORDER BY m.name, c.cid")) {
            CatalogColumn column;
            column.name = *row[1];
            column.type = row[2]->empty() ? "BLOB" : *row[2];  // what a column without a type behaves like
            column.notNull = row[3] == "1";
            if (row[4]) column.defaultValue = sqliteDefaultOf(*row[4]);
            if (row[6] == "2" || row[6] == "3") column.generatedKind = row[6] == "2" ? "VIRTUAL" : "STORED";
            if (row[5] != "0") keys[*row[0]][std::stoi(*row[5])] = column.name;
            table(*row[0]).columns.push_back(std::move(column));
        }
        for (auto& [name, columns] : keys) {
            CatalogKey key;
            key.name = textOf(name).primaryKeyName;
            for (auto& [place, column] : columns) key.columns.push_back(std::move(column));
            table(name).primaryKey = std::move(key);
        }
    }

    void readIndexes() {
        struct Place {
            std::string table, index;
            bool operator==(const Place&) const = default;
        } last;
        const DatabaseRows parts =
            rows("m.name, i.name, i.\"unique\", i.origin, x.cid, x.name, x.desc, x.coll, s.sql",
                 "JOIN pragma_index_list(m.name) i JOIN pragma_index_xinfo(i.name) x LEFT JOIN sqlite_master s"
                 " ON s.type = 'index' AND s.name = i.name WHERE x.key AND i.origin <> 'pk' ORDER BY m.name, i.seq, "
                 "x.seqno");
        std::unordered_map<std::string, SQLiteIndexText> texts;
        for (const auto& row : parts) {
            const Place place{*row[0], *row[1]};
            CatalogTable& table = this->table(place.table);
            const bool isConstraint = row[3] == "u";
            if (place != last) {
                if (isConstraint) {
                    table.uniques.emplace_back();
                } else {
                    CatalogIndex index;
                    index.name = place.index;
                    index.type = row[2] == "1" ? "UNIQUE" : "";
                    const auto text = SQLiteIndexText::parse(row[8].value_or(""));
                    index.condition = text.condition;
                    _indexParts = text.parts;
                    table.indexes.push_back(std::move(index));
                }
                last = place;
            }
            if (isConstraint)
                table.uniques.back().columns.push_back(row[5].value_or(""));
            else
                addPart(table, table.indexes.back(), row);
        }
    }

    void addPart(const CatalogTable& table, CatalogIndex& index, const std::vector<OptionalText>& row) {
        CatalogIndexPart part;
        if (row[5])
            part.column = *row[5];
        else if (index.parts.size() < _indexParts.size())
            part.expression = withoutOuterParentheses(_indexParts[index.parts.size()]);
        // The usual collation of a part is its column's.
        const auto& columns = textOf(table.name).columns;
        const auto known = columns.find(lowercased(part.column));
        const std::string usual =
            known == columns.end() || known->second.collation.empty() ? "BINARY" : known->second.collation;
        if (!equalIgnoringCase(row[7].value_or("BINARY"), usual)) part.options = text("COLLATE %@", row[7]);
        if (row[6] == "1") part.options += part.options.empty() ? "DESC" : " DESC";
        index.parts.push_back(std::move(part));
    }

    void readForeignKeys() {
        std::string lastKey;
        for (const auto& row :
             rows("m.name, k.id, k.\"table\", k.\"from\", k.\"to\", k.on_delete, k.on_update, k.match",
                  "JOIN pragma_foreign_key_list(m.name) k ORDER BY m.name, k.id DESC, k.seq")) {
            CatalogTable& table = this->table(*row[0]);
            if (std::string key = *row[0] + "\t" + *row[1]; key != lastKey) {
                lastKey = std::move(key);
                CatalogForeignKey facts;
                facts.targetTable = *row[2];
                facts.deleteAction = sqliteActionOf(*row[5]);
                facts.updateAction = sqliteActionOf(*row[6]);
                table.foreignKeys.push_back(std::move(facts));
            }
            CatalogForeignKey& key = table.foreignKeys.back();
            key.columns.push_back(row[3].value_or(""));
            if (row[4]) key.targetColumns.push_back(*row[4]);
        }
    }

    /// What no pragma tells.
    void addTextFacts(CatalogTable& table) {
        const SQLiteTableText& text = textOf(table.name);
        for (CatalogColumn& column : table.columns) {
            const auto found = text.columns.find(lowercased(column.name));
            if (found == text.columns.end()) continue;
            if (!equalIgnoringCase(found->second.collation, "BINARY")) column.collation = found->second.collation;
            column.autoIncrement = found->second.autoIncrement;
            column.generated = found->second.generated;
        }
        for (CatalogKey& key : table.uniques)
            for (const auto& written : text.uniques)
                if (std::ranges::equal(key.columns, written.columns, equalIgnoringCase)) key.name = written.name;
        if (text.foreignKeys.size() == table.foreignKeys.size()) {
            for (std::size_t i = 0; i < table.foreignKeys.size(); ++i) {
                table.foreignKeys[i].name = text.foreignKeys[i].name;
                table.foreignKeys[i].deferrable = text.foreignKeys[i].deferrable;
                table.foreignKeys[i].initiallyDeferred = text.foreignKeys[i].initiallyDeferred;
            }
        }
        for (const auto& check : text.checks) table.checks.push_back({check.name, check.expression, {}});
        if (text.hasConflictClauses) omit(vellicor::text("ON CONFLICT clauses of table %@", table.name));
        if (text.sortsPrimaryKey)
            omit(vellicor::text("direction or collation inside the primary key of %@", table.name));
    }

    void omit(std::string line) { _catalog.omissions.push_back(std::move(line)); }

    DatabaseConnection& _connection;
    Catalog _catalog;
    std::unordered_map<std::string, std::size_t> _places;
    std::unordered_map<std::string, SQLiteTableText> _texts;
    std::vector<std::string> _indexParts;  // of the index being read
};

}  // namespace

Catalog readSQLiteCatalog(DatabaseConnection& connection) { return SQLiteCatalogReader(connection).read(); }

}  // namespace vellicor
