// vellicor/database/mysql_catalog.cpp — what databases of MySQL and MariaDB hold: their information schema, each kind
// in one query.
#include <algorithm>
#include <set>
#include <unordered_map>

#include "vellicor/database/catalog_reader.h"
#include "vellicor/database/connection.h"
#include "vellicor/database/sql_scanner.h"
#include "vellicor/model/connectable.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::uint64_t mysqlActionOf(const OptionalText& words) {
    if (words == "CASCADE") return action::cascade;
    if (words == "RESTRICT") return action::restrict_;
    if (words == "SET NULL") return action::setNull;
    if (words == "NO ACTION") return action::noAction;
    if (words == "SET DEFAULT") return action::setDefault;
    return action::none;
}

bool isMySQLText(std::string_view type) {
    for (const std::string_view word : {"char", "varchar", "tinytext", "text", "mediumtext", "longtext", "enum", "set"})
        if (type == word || type.starts_with(std::string(word) + "(")) return true;
    return false;
}

bool isMySQLTime(std::string_view type) { return type.starts_with("timestamp") || type.starts_with("date"); }

/// Names of the connection's own database in front of others are left out: `shop`.`t` is `t`.
std::string withoutDatabase(std::string_view query, const std::string& database) {
    const auto tokens = sqlTokens(query, true);
    std::string rest;
    std::size_t copied = 0;
    for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {
        const bool isQualified = tokens[i].kind == SqlToken::Kind::Name && tokens[i].value == database &&
                                 tokens[i + 1].is(".") && tokens[i + 2].kind == SqlToken::Kind::Name;
        const bool isBehindDot = i > 0 && tokens[i - 1].is(".");
        if (!isQualified || isBehindDot) continue;
        rest += query.substr(copied, tokens[i].start - copied);
        copied = tokens[i + 2].start;
    }
    return rest + std::string(query.substr(copied));
}

class MySQLCatalogReader {
public:
    explicit MySQLCatalogReader(DatabaseConnection& connection)
        : _connection(connection), _isMariaDB(connection.databaseProductName() == "MariaDB") {}

    Catalog read() {
        _catalog.engine = DatabaseEngine::MySQL;
        chooseSchemas();
        readTables();
        readColumns();
        readChecks();
        readForeignKeys();
        readIndexes();
        readViews();
        readOmissions();
        sortCatalog(_catalog);
        return std::move(_catalog);
    }

private:
    using Row = std::vector<OptionalText>;

    DatabaseRows rows(std::string_view query) { return _connection.query(replacingAll(query, "$schemas", _schemas)); }
    /// Tables of several databases all carry their schema: bare names would be looked up in whichever has the key.
    [[nodiscard]] std::string schemaOf(const OptionalText& name) const {
        return _qualifies ? name.value_or("") : std::string();
    }
    static std::string key(const OptionalText& schema, const OptionalText& name) {
        return schema.value_or("") + "\n" + name.value_or("");
    }
    CatalogTable* table(const OptionalText& schema, const OptionalText& name) {
        const auto found = _places.find(key(schema, name));
        return found == _places.end() ? nullptr : &_catalog.tables[found->second];
    }
    void omit(std::string line) { _catalog.omissions.push_back(std::move(line)); }

    void chooseSchemas() {
        const DatabaseUrl& url = _connection.url();
        std::vector<std::string> names = url.schemas;
        if (names.empty()) names.push_back(url.database);
        std::vector<std::string> literals;
        for (const std::string& name : names) literals.push_back(_connection.literal(name));
        _schemas = "(" + joined(literals, ", ") + ")";
        _qualifies = names.size() > 1 || names.front() != url.database;
        std::set<std::string> there;
        for (const Row& row : rows("SELECT schema_name FROM information_schema.schemata WHERE schema_name IN $schemas"))
            there.insert(lowercased(*row[0]));
        for (const std::string& name : names)
            if (!there.contains(lowercased(name)))
                throw DatabaseError(DatabaseError::Kind::NotThere,
                                    text("%@: there is no database %@, or it may not be read", url.text(), name));
    }

    void readTables() {
        for (const Row& row :
             rows("SELECT t.table_schema, t.table_name, t.table_type, t.engine, t.table_collation, t.table_comment,"
                  " t.create_options, c.character_set_name FROM information_schema.tables t"
                  " LEFT JOIN information_schema.collations c ON c.collation_name = t.table_collation"
                  " WHERE t.table_schema IN $schemas ORDER BY 1, 2")) {
            if (row[2] == "VIEW" || row[2] == "SYSTEM VIEW") continue;
            if (row[2] == "SEQUENCE") {
                omit(text("sequence %@", row[1]));
                continue;
            }
            if (row[2] == "SYSTEM VERSIONED") omit(text("system versioning of table %@", row[1]));
            if (row[6].value_or("").find("partitioned") != std::string::npos)
                omit(text("partitioning of table %@", row[1]));
            _places.emplace(key(row[0], row[1]), _catalog.tables.size());
            CatalogTable table;
            table.schema = schemaOf(row[0]);
            table.name = *row[1];
            table.engine = row[3].value_or("");
            table.collation = row[4].value_or("");
            table.characterSet = row[7].value_or("");
            table.comment = row[5].value_or("");
            _catalog.tables.push_back(std::move(table));
        }
    }

    void readColumns() {
        for (const Row& row :
             rows("SELECT table_schema, table_name, column_name, column_type, is_nullable, column_default, extra,"
                  " character_set_name, collation_name, column_comment, generation_expression, data_type"
                  " FROM information_schema.columns WHERE table_schema IN $schemas ORDER BY 1, 2, ordinal_position")) {
            CatalogTable* table = this->table(row[0], row[1]);
            if (!table) continue;
            CatalogColumn column;
            column.name = *row[2];
            column.type = *row[3];
            column.notNull = row[4] == "NO";
            column.comment = row[9].value_or("");
            const std::string extra = lowercased(row[6].value_or(""));
            const auto has = [&](std::string_view word) { return extra.find(word) != std::string::npos; };
            column.autoIncrement = has("auto_increment");
            if (row[8] && *row[8] != table->collation) {
                column.collation = *row[8];
                if (row[7] && *row[7] != table->characterSet) column.characterSet = *row[7];
            }
            if (has("generated") && !has("default_generated")) {
                column.generatedKind = has("stored") || has("persistent") ? "STORED" : "VIRTUAL";
                column.generated = row[10].value_or("");
            } else if (row[5]) {
                setDefault(column, *row[5], has("default_generated"));
            }
            if (const auto place = extra.find("on update "); place != std::string::npos)
                column.onUpdate = trimmed(std::string_view(extra).substr(place + 10));
            table->columns.push_back(std::move(column));
        }
    }

    void setDefault(CatalogColumn& column, const std::string& written, bool isExpression) {
        if (_isMariaDB) {  // an expression, whatever it is
            const bool isNullable = !column.notNull;
            if (written == "NULL") {
                if (isNullable && column.type.starts_with("timestamp")) column.defaultValue = {"NULL", false};
                return;
            }
            std::string content;
            if (isMySQLText(column.type) && contentOfSqlText(written, content, true))
                column.defaultValue = catalogDefaultOf(std::move(content), written);
            else
                column.defaultValue = {written, true};
        } else if (isExpression || isSqlNumber(written) ||
                   (isMySQLTime(column.type) && written.starts_with("CURRENT"))) {
            column.defaultValue = {written, true};
        } else {
            column.defaultValue = catalogDefaultOf(written, _connection.literal(written));
        }
    }

    void readChecks() {
        const char* const query =
            _isMariaDB ? "SELECT constraint_schema, table_name, constraint_name, check_clause, level FROM"
                         " information_schema.check_constraints WHERE constraint_schema IN $schemas ORDER BY 1, 2, 3"
                       : "SELECT t.constraint_schema, t.table_name, t.constraint_name, c.check_clause, 'Table' FROM"
                         " information_schema.table_constraints t JOIN information_schema.check_constraints c ON"
                         " c.constraint_schema = t.constraint_schema AND c.constraint_name = t.constraint_name WHERE"
                         " t.constraint_type = 'CHECK' AND t.constraint_schema IN $schemas ORDER BY 1, 2, 3";
        if (!_isMariaDB && _connection
                               .query("SELECT 1 FROM information_schema.tables WHERE table_schema ="
                                      " 'information_schema' AND table_name = 'CHECK_CONSTRAINTS'")
                               .empty())
            return;  // a server that keeps none
        for (const Row& row : rows(query)) {
            CatalogTable* table = this->table(row[0], row[1]);
            if (!table) continue;
            const std::string expression(withoutOuterParentheses(row[3].value_or("")));
            const bool isOfColumn = row[4] == "Column";
            const auto column = std::ranges::find(table->columns, *row[2], &CatalogColumn::name);
            if (isOfColumn && column != table->columns.end() && column->type == "longtext" &&
                lowercased(expression) == lowercased(text("json_valid(`%@`)", column->name))) {
                column->type = "json";  // how MariaDB keeps it
                column->collation.clear();
                column->characterSet.clear();
                continue;
            }
            table->checks.push_back({isOfColumn ? std::string() : *row[2], expression, {}});
        }
    }

    void readForeignKeys() {
        for (const Row& row :
             rows("SELECT k.table_schema, k.table_name, k.constraint_name, k.column_name, k.referenced_table_schema,"
                  " k.referenced_table_name, k.referenced_column_name, r.delete_rule, r.update_rule"
                  " FROM information_schema.key_column_usage k JOIN information_schema.referential_constraints r"
                  " ON r.constraint_schema = k.constraint_schema AND r.constraint_name = k.constraint_name"
                  " AND r.table_name = k.table_name WHERE k.table_schema IN $schemas"
                  " AND r.constraint_schema IN $schemas ORDER BY 1, 2, 3, k.ordinal_position")) {
            CatalogTable* table = this->table(row[0], row[1]);
            if (!table) continue;
            if (table->foreignKeys.empty() || table->foreignKeys.back().name != *row[2]) {
                CatalogForeignKey key;
                key.name = *row[2];
                key.targetSchema = schemaOf(row[4]);
                if (!_qualifies && row[4] != row[0]) key.targetSchema = row[4].value_or("");
                key.targetTable = row[5].value_or("");
                key.deleteAction = mysqlActionOf(row[7]);
                key.updateAction = mysqlActionOf(row[8]);
                table->foreignKeys.push_back(std::move(key));
            }
            table->foreignKeys.back().columns.push_back(row[3].value_or(""));
            table->foreignKeys.back().targetColumns.push_back(row[6].value_or(""));
        }
    }

    void readIndexes() {
        const std::string expression = _isMariaDB ? "NULL" : hasExpressions() ? "expression" : "NULL";
        CatalogTable* last = nullptr;
        std::string lastName;
        std::vector<std::pair<CatalogTable*, CatalogIndex>> indexes;
        for (const Row& row : rows("SELECT table_schema, table_name, index_name, non_unique, column_name, sub_part, "
                                   "index_type, collation,"
                                   " index_comment, " +
                                   expression +
                                   " FROM information_schema.statistics WHERE table_schema IN $schemas"
                                   " ORDER BY 1, 2, 3, seq_in_index")) {
            CatalogTable* table = this->table(row[0], row[1]);
            if (!table) continue;
            if (table != last || *row[2] != lastName) {
                last = table;
                lastName = *row[2];
                CatalogIndex index;
                index.name = lastName;
                const std::string type = row[6].value_or("");
                if (type == "FULLTEXT" || type == "SPATIAL")
                    index.type = type;
                else if (type != "BTREE")
                    index.method = type;
                if (row[3] == "0") index.type = "UNIQUE";
                index.comment = row[8].value_or("");
                indexes.emplace_back(table, std::move(index));
            }
            CatalogIndexPart part;
            part.column = row[4].value_or("");
            if (!row[4]) part.expression = withoutOuterParentheses(row[9].value_or(""));
            if (indexes.back().second.type != "SPATIAL") part.size = row[5].value_or("");
            if (row[7] == "D") part.options = "DESC";
            indexes.back().second.parts.push_back(std::move(part));
        }
        for (auto& [table, index] : indexes) addIndex(*table, std::move(index));
    }
    bool hasExpressions() {
        return !_connection
                    .query(
                        "SELECT 1 FROM information_schema.columns WHERE table_schema = 'information_schema' AND"
                        " table_name = 'STATISTICS' AND column_name = 'EXPRESSION'")
                    .empty();
    }

    void addIndex(CatalogTable& table, CatalogIndex index) {
        std::vector<std::string> columns;
        bool isPlain = index.method.empty() && index.comment.empty();
        for (const CatalogIndexPart& part : index.parts) {
            columns.push_back(part.column);
            isPlain = isPlain && !part.column.empty() && part.size.empty() && part.options.empty();
        }
        if (index.name == "PRIMARY") {
            CatalogKey key;
            key.columns = std::move(columns);
            table.primaryKey = std::move(key);
            return;
        }
        // One that a foreign key brought along.
        const bool isOfKey =
            isPlain && index.type.empty() && std::ranges::any_of(table.foreignKeys, [&](const CatalogForeignKey& key) {
                return key.name == index.name && key.columns == columns;
            });
        if (isOfKey) return;
        if (isPlain && index.type == "UNIQUE" && columns.size() == 1 && columns.front() == index.name) {
            CatalogKey key;
            key.name = index.name;
            key.columns = std::move(columns);
            table.uniques.push_back(std::move(key));
            return;
        }
        table.indexes.push_back(std::move(index));
    }

    void readViews() {
        for (const Row& row : rows("SELECT table_schema, table_name, view_definition, check_option, security_type FROM"
                                   " information_schema.views WHERE table_schema IN $schemas ORDER BY 1, 2")) {
            CatalogView view;
            view.schema = schemaOf(row[0]);
            view.name = *row[1];
            view.query = _qualifies ? row[2].value_or("") : withoutDatabase(row[2].value_or(""), row[0].value_or(""));
            if (view.query.empty()) omit(text("the query of view %@, which needs the right SHOW VIEW", view.name));
            if (row[3] != "NONE") omit(text("WITH %@ CHECK OPTION of view %@", row[3], view.name));
            if (row[4] == "INVOKER") omit(text("SQL SECURITY INVOKER of view %@", view.name));
            _views.emplace(key(row[0], row[1]), _catalog.views.size());
            _catalog.views.push_back(std::move(view));
        }
        for (const Row& row : rows("SELECT table_schema, table_name, column_name FROM information_schema.columns"
                                   " WHERE table_schema IN $schemas ORDER BY 1, 2, ordinal_position"))
            if (const auto found = _views.find(key(row[0], row[1])); found != _views.end())
                _catalog.views[found->second].columns.push_back(*row[2]);
    }

    void readOmissions() {
        for (const Row& row : rows("SELECT CONCAT('trigger ', trigger_name, ' of table ', event_object_table) FROM"
                                   " information_schema.triggers WHERE trigger_schema IN $schemas UNION ALL"
                                   " SELECT CONCAT(LOWER(routine_type), ' ', routine_name) FROM"
                                   " information_schema.routines WHERE routine_schema IN $schemas UNION ALL"
                                   " SELECT CONCAT('event ', event_name) FROM information_schema.events WHERE"
                                   " event_schema IN $schemas ORDER BY 1"))
            omit(row[0].value_or(""));
    }

    DatabaseConnection& _connection;
    bool _isMariaDB;
    bool _qualifies = false;
    Catalog _catalog;
    std::string _schemas;  // the list behind IN
    std::unordered_map<std::string, std::size_t> _places;
    std::unordered_map<std::string, std::size_t> _views;
};

}  // namespace

Catalog readMySQLCatalog(DatabaseConnection& connection) { return MySQLCatalogReader(connection).read(); }

}  // namespace vellicor
