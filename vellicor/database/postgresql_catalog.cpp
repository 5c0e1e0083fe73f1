// vellicor/database/postgresql_catalog.cpp — what a database of PostgreSQL holds: its own catalog, each kind in one
// query.
#include <algorithm>
#include <unordered_map>

#include "vellicor/database/catalog_reader.h"
#include "vellicor/database/connection.h"
#include "vellicor/database/postgresql_queries.h"
#include "vellicor/database/sql_scanner.h"
#include "vellicor/model/connectable.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::uint64_t postgresActionOf(const OptionalText& letter) {
    if (letter == "c") return action::cascade;
    if (letter == "r") return action::restrict_;
    if (letter == "n") return action::setNull;
    if (letter == "d") return action::setDefault;
    return action::none;
}

bool isSet(const OptionalText& flag) { return flag == "t"; }

std::vector<std::string> linesIn(const OptionalText& text) {
    std::vector<std::string> lines;
    if (!text || text->empty()) return lines;
    std::size_t start = 0;
    for (std::size_t end = 0; end != std::string::npos; start = end + 1) {
        end = text->find('\n', start);
        lines.push_back(text->substr(start, end == std::string::npos ? end : end - start));
    }
    return lines;
}

/// A text that is cast to the column's own type is a value; numbers of any type of numbers stay as they are.
CatalogDefault postgresDefaultOf(const std::string& expression, std::string_view type) {
    const auto tokens = sqlTokens(expression);
    const std::string_view base = type.substr(0, type.find('('));
    const bool isText = base == "text" || base == "character varying" || base == "character" || base == "bpchar";
    const auto is = [&](std::size_t i, std::string_view mark) { return i < tokens.size() && tokens[i].is(mark); };
    if (isText && tokens[0].kind == SqlToken::Kind::Text && is(1, ":") && is(2, ":")) {
        const std::string_view cast = trimmed(std::string_view(expression).substr(tokens[3].start));
        const std::string literal = expression.substr(0, tokens[0].end);
        if (cast.find('\'') == cast.npos && cast.find('|') == cast.npos) {
            CatalogDefault value = catalogDefaultOf(tokens[0].value, literal);
            return value.isExpression ? CatalogDefault{expression, true} : value;
        }
    }
    return {expression, true};
}

class PostgreSQLCatalogReader {
public:
    explicit PostgreSQLCatalogReader(DatabaseConnection& connection) : _connection(connection) {}

    Catalog read() {
        _catalog.engine = DatabaseEngine::PostgreSQL;
        _connection.execute("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
        // Names outside the tables' usual schema come qualified, and only those.
        _connection.execute("SET LOCAL search_path TO public");
        chooseSchemas();
        readRelations();
        readColumns();
        readConstraints();
        readIndexes();
        readTypes();
        readOmissions();
        _connection.execute("COMMIT");
        sortCatalog(_catalog);
        return std::move(_catalog);
    }

private:
    using Row = std::vector<OptionalText>;

    DatabaseRows rows(std::string_view query) { return _connection.query(replacingAll(query, "$schemas", _schemas)); }
    static std::string schemaOf(const OptionalText& name) {
        return name == "public" ? std::string() : name.value_or("");
    }
    static std::string shown(const OptionalText& schema, const OptionalText& name) {
        const std::string known = schemaOf(schema);
        return known.empty() ? name.value_or("") : known + "." + name.value_or("");
    }
    void omit(std::string line) { _catalog.omissions.push_back(std::move(line)); }
    /// Null for what is not read: parts of partitioned tables and what belongs to extensions.
    CatalogTable* table(const OptionalText& oid) {
        const auto found = _places.find(oid.value_or(""));
        return found == _places.end() ? nullptr : &_catalog.tables[found->second];
    }

    void chooseSchemas() {
        std::vector<std::string> there;
        for (const Row& row : _connection.query(postgresql::kSchemas)) there.push_back(*row[0]);
        const std::vector<std::string>& asked = _connection.url().schemas;
        for (const std::string& name : asked)
            if (std::find(there.begin(), there.end(), name) == there.end())
                throw DatabaseError(DatabaseError::Kind::NotThere,
                                    text("%@: there is no schema %@; there are %@", _connection.url().text(), name,
                                         joined(there, ", ")));
        std::vector<std::string> literals{"''"};
        for (const std::string& name : asked.empty() ? there : asked) literals.push_back(_connection.literal(name));
        _schemas = "(" + joined(literals, ", ") + ")";
    }

    void readRelations() {
        for (const Row& row : rows(postgresql::kRelations)) {
            const std::string kind = *row[3];
            if (kind == "v" || kind == "m") {
                CatalogView view;
                view.schema = schemaOf(row[1]);
                view.name = *row[2];
                view.comment = row[4].value_or("");
                view.query = trimmed(row[7].value_or(""));
                view.isMaterialized = kind == "m";
                view.columns = linesIn(row[8]);
                _catalog.views.push_back(std::move(view));
                continue;
            }
            if (kind == "f") {
                omit(text("foreign table %@", shown(row[1], row[2])));
                continue;
            }
            if (isSet(row[9])) {
                omit(text("partition %@ of table %@", shown(row[1], row[2]), row[10]));
                continue;
            }
            if (row[10]) omit(text("inheritance of table %@ from %@", shown(row[1], row[2]), row[10]));
            if (kind == "p") omit(text("partitioning of table %@ %@", shown(row[1], row[2]), row[11]));
            if (row[12]) omit(text("storage parameters of table %@ (%@)", shown(row[1], row[2]), row[12]));
            _places.emplace(*row[0], _catalog.tables.size());
            CatalogTable table;
            table.schema = schemaOf(row[1]);
            table.name = *row[2];
            table.comment = row[4].value_or("");
            table.tablespace = row[5].value_or("");
            if (row[6] == "u") table.options = "UNLOGGED";
            _catalog.tables.push_back(std::move(table));
        }
    }

    void readColumns() {
        for (const Row& row : rows(postgresql::kColumns)) {
            CatalogTable* table = this->table(row[0]);
            if (!table) continue;
            CatalogColumn column;
            column.name = *row[1];
            column.type = *row[2];
            column.notNull = isSet(row[3]);
            column.comment = row[8].value_or("");
            column.collation = row[7].value_or("");
            if (row[5] == "a") column.identity = "ALWAYS";
            if (row[5] == "d") column.identity = "BY DEFAULT";
            column.autoIncrement = !column.identity.empty() || isSet(row[9]);
            if (row[6] == "s") {
                column.generated = withoutOuterParentheses(row[4].value_or(""));
                column.generatedKind = "STORED";
            } else if (row[4] && !column.autoIncrement) {
                column.defaultValue = postgresDefaultOf(*row[4], column.type);
            }
            table->columns.push_back(std::move(column));
        }
    }

    void readConstraints() {
        for (const Row& row : rows(postgresql::kConstraints)) {
            CatalogTable* table = this->table(row[0]);
            if (!table) continue;
            const std::string& kind = *row[2];
            if (kind == "c") {
                table->checks.push_back(
                    {*row[1], std::string(withoutOuterParentheses(row[11].value_or(""))), row[12].value_or("")});
                if (!isSet(row[13])) omit(text("NOT VALID of check %@ of table %@", row[1], table->name));
                if (isSet(row[14])) omit(text("NO INHERIT of check %@ of table %@", row[1], table->name));
            } else if (kind == "f") {
                CatalogForeignKey key;
                key.name = *row[1];
                key.columns = linesIn(row[3]);
                key.targetSchema = schemaOf(row[4]);
                key.targetTable = row[5].value_or("");
                key.targetColumns = linesIn(row[6]);
                key.deleteAction = postgresActionOf(row[7]);
                key.updateAction = postgresActionOf(row[8]);
                key.deferrable = isSet(row[9]);
                key.initiallyDeferred = isSet(row[10]);
                if (row[15] == "f") key.match = "FULL";
                key.comment = row[12].value_or("");
                if (!isSet(row[13])) omit(text("NOT VALID of foreign key %@ of table %@", row[1], table->name));
                table->foreignKeys.push_back(std::move(key));
            } else if (kind == "p" || kind == "u") {
                CatalogKey key;
                key.name = *row[1];
                key.columns = linesIn(row[3]);
                key.deferrable = isSet(row[9]);
                key.initiallyDeferred = isSet(row[10]);
                key.comment = row[12].value_or("");
                key.included = linesIn(row[16]);
                key.nullsNotDistinct = row[17].value_or("").find("NULLS NOT DISTINCT") != std::string::npos;
                if (kind == "u") {
                    table->uniques.push_back(std::move(key));
                    continue;
                }
                if (!key.included.empty()) omit(text("columns that primary key %@ includes", key.name));
                if (!key.comment.empty()) omit(text("the comment on primary key %@", key.name));
                key.included.clear();
                key.comment.clear();
                table->primaryKey = std::move(key);
            } else {
                omit(text("constraint %@ of table %@: %@", row[1], table->name, row[17]));
            }
        }
    }

    void readIndexes() {
        std::string last;
        for (const Row& row : rows(postgresql::kIndexes)) {
            CatalogTable* table = this->table(row[0]);
            if (!table) continue;
            if (*row[1] != last) {
                last = *row[1];
                CatalogIndex index;
                index.name = *row[2];
                if (isSet(row[3])) index.type = "UNIQUE";
                if (row[4] != "btree") index.method = *row[4];
                index.condition = withoutOuterParentheses(row[5].value_or(""));
                index.comment = row[6].value_or("");
                index.nullsNotDistinct = isSet(row[13]);
                if (row[14]) omit(text("storage parameters of index %@ (%@)", index.name, row[14]));
                table->indexes.push_back(std::move(index));
            }
            CatalogIndex& index = table->indexes.back();
            if (isSet(row[7])) {
                index.included.push_back(row[8].value_or(""));
                continue;
            }
            CatalogIndexPart part;
            part.column = row[8].value_or("");
            if (!row[8]) part.expression = withoutOuterParentheses(row[9].value_or(""));
            for (const std::size_t option : {10u, 11u, 12u})
                if (row[option]) part.options += (part.options.empty() ? "" : " ") + *row[option];
            index.parts.push_back(std::move(part));
        }
    }

    /// Statements that make what columns are typed with.
    void readTypes() {
        for (const Row& row : rows(postgresql::kTypes)) _catalog.prologue.push_back(*row[0]);
    }

    void readOmissions() {
        for (const Row& row : rows(postgresql::kOmissions)) omit(*row[0]);
    }

    DatabaseConnection& _connection;
    Catalog _catalog;
    std::string _schemas;                                  // the list behind IN
    std::unordered_map<std::string, std::size_t> _places;  // of tables, by oid
};

}  // namespace

Catalog readPostgreSQLCatalog(DatabaseConnection& connection) { return PostgreSQLCatalogReader(connection).read(); }

}  // namespace vellicor
