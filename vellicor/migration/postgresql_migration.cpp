// vellicor/migration/postgresql_migration.cpp — the words of PostgreSQL.
#include "vellicor/migration/postgresql_migration.h"

#include <algorithm>
#include <array>

#include "vellicor/migration/type_change.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::size_t kNameLimit = 63;  // bytes

/// "t_a_key", cut as the server cuts it.
std::string nameGivenByServer(std::string table, std::string column, std::string_view suffix) {
    const std::size_t overhead = suffix.size() + 1 + (column.empty() ? 0 : 1);
    while (table.size() + column.size() + overhead > kNameLimit)
        (table.size() > column.size() ? table : column).pop_back();
    return table + (column.empty() ? "" : "_" + column) + "_" + std::string(suffix);
}

std::string postgreSQLType(const std::string& type) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 14> kSynonyms{{
        {"INT", "INTEGER"},
        {"INT4", "INTEGER"},
        {"INT8", "BIGINT"},
        {"INT2", "SMALLINT"},
        {"DECIMAL", "NUMERIC"},
        {"DEC", "NUMERIC"},
        {"CHARACTER VARYING", "VARCHAR"},
        {"CHAR VARYING", "VARCHAR"},
        {"CHARACTER", "CHAR"},
        {"BOOL", "BOOLEAN"},
        {"FLOAT8", "DOUBLE PRECISION"},
        {"FLOAT4", "REAL"},
        {"SERIAL", "INTEGER"},
        {"BIGSERIAL", "BIGINT"},
    }};
    const std::string upper = uppercased(type);
    const std::size_t open = upper.find('(');
    const std::string base(trimmed(std::string_view(upper).substr(0, open)));
    for (const auto& [name, meaning] : kSynonyms)
        if (base == name) return std::string(meaning) + (open == std::string::npos ? "" : upper.substr(open));
    return upper;
}

bool isText(const std::string& type) {
    const std::string plain = postgreSQLType(type);
    return plain.starts_with("VARCHAR") || plain.starts_with("CHAR") || plain == "TEXT";
}

}  // namespace

void PostgreSQLMigration::complete(TableShape& table) const {
    for (ColumnShape& column : table.columns)
        for (ColumnShape::Words& words : column.words)
            if (words.part == ColumnPart::Type && (words.normal == "SERIAL" || words.normal == "BIGSERIAL")) {
                column.words.push_back({ColumnPart::Counting, "", "COUNTING"});
                column.refusesNull = true;
                break;
            }
    MigrationDialect::complete(table);
    std::vector<std::string> used;
    for (const ConstraintShape& constraint : table.constraints) used.push_back(constraint.name.key);
    for (ConstraintShape& constraint : table.constraints) {
        if (!constraint.name.isEmpty() || constraint.kind == ConstraintKind::Index) continue;
        std::string columns;
        const bool namesColumns = constraint.kind != ConstraintKind::Check || constraint.columns.size() == 1;
        for (const ConstraintShape::Column& column : constraint.columns)
            if (namesColumns && constraint.kind != ConstraintKind::PrimaryKey)
                columns += (columns.empty() ? "" : "_") + column.name.key;
        const std::string_view suffix = constraint.kind == ConstraintKind::PrimaryKey ? "pkey"
                                        : constraint.kind == ConstraintKind::Unique   ? "key"
                                        : constraint.kind == ConstraintKind::Check    ? "check"
                                                                                      : "fkey";
        std::string name = nameGivenByServer(table.name.name.key, columns, suffix);
        for (int number = 1; std::ranges::find(used, name) != used.end(); ++number)
            name = nameGivenByServer(table.name.name.key, columns, std::string(suffix) + std::to_string(number));
        used.push_back(name);
        constraint.name = {quoted(name), name};
    }
}

std::string PostgreSQLMigration::quoted(const std::string& key) const {
    const std::string spelled = exporter().quoteIdentifier(key);
    const bool isBare = !spelled.starts_with('"');
    return isBare && lowercased(spelled) != key ? "\"" + replacingAll(key, "\"", "\"\"") + "\"" : spelled;
}

bool PostgreSQLMigration::isSameType(const std::string& before, const std::string& after) const {
    return postgreSQLType(before) == postgreSQLType(after);
}

std::string PostgreSQLMigration::idempotent(const std::string& sql) const {
    for (const std::string_view words : {"DROP TABLE ", "DROP VIEW ", "DROP INDEX ", "DROP SCHEMA "})
        if (sql.starts_with(words)) return std::string(words) + "IF EXISTS " + sql.substr(words.size());
    for (const std::string_view words : {" ADD COLUMN ", " DROP COLUMN ", " DROP CONSTRAINT "}) {
        const std::size_t at = sql.find(words);
        if (!sql.starts_with("ALTER TABLE ") || at == std::string::npos) continue;
        const std::string_view more = words == " ADD COLUMN " ? "IF NOT EXISTS " : "IF EXISTS ";
        return sql.substr(0, at + words.size()) + std::string(more) + sql.substr(at + words.size());
    }
    if (sql.starts_with("CREATE TABLE ")) return "CREATE TABLE IF NOT EXISTS " + sql.substr(13);
    if (sql.starts_with("CREATE VIEW ")) return "CREATE OR REPLACE VIEW " + sql.substr(12);
    return sql;
}

std::string PostgreSQLMigration::createSchema(const SQLName& schema) const {
    return "CREATE SCHEMA IF NOT EXISTS " + schema.text;
}

std::string PostgreSQLMigration::moveTable(const QualifiedName& table, const SQLName& schema) const {
    return text("ALTER TABLE %@ SET SCHEMA %@", table.text(), schema.isEmpty() ? "public" : schema.text);
}

std::string PostgreSQLMigration::renameView(const ViewShape& before, const ViewShape& after) const {
    return text("ALTER VIEW %@ RENAME TO %@", before.name.text(), after.name.name.text);
}

std::string PostgreSQLMigration::alterOptions(const TableShape& before, const TableShape& after) const {
    if (after.options.empty()) return before.options.empty() ? "" : alterTable(after) + "SET TABLESPACE pg_default";
    return after.options.starts_with("TABLESPACE ") ? alterTable(after) + "SET " + after.options : std::string();
}

std::string PostgreSQLMigration::commentOnTable(const TableShape& table) const {
    return text("COMMENT ON TABLE %@ IS %@", table.name.text(), table.comment.empty() ? "NULL" : table.comment);
}

std::string PostgreSQLMigration::commentOnColumn(const TableShape& table, const ColumnShape& column) const {
    return text("COMMENT ON COLUMN %@.%@ IS %@", table.name.text(), column.name.text,
                column.comment.empty() ? "NULL" : column.comment);
}

void PostgreSQLMigration::alterColumn(const TableShape& table, const ColumnChange& change,
                                      MigrationSteps& steps) const {
    const std::string& name = change.after.name.text;
    const std::string alter = alterTable(table) + text("ALTER COLUMN %@ ", name);
    const bool counts = change.after.has(ColumnPart::Counting);
    const bool countsBoth = counts && change.before.has(ColumnPart::Counting);
    if (change.counting && !counts) {
        steps.add(alter + "DROP DEFAULT");
        steps.add(text("DO $$ BEGIN EXECUTE 'DROP SEQUENCE ' || pg_get_serial_sequence(%@, %@); END $$",
                       quotedText(table.name.text()), quotedText(change.after.name.key)));
    }
    std::string type = change.after.text(ColumnPart::Type);
    if (counts) type = postgreSQLType(type);
    const bool hadDefault = change.before.has(ColumnPart::Default) && !change.before.has(ColumnPart::Counting);
    if (change.type) {
        const std::string was = change.before.text(ColumnPart::Type);
        const TypeChange effect = typeChange(was, type);
        if (hadDefault) steps.add(alter + "DROP DEFAULT");
        const std::string cast = isText(was) && isText(type) ? std::string() : text(" USING %@::%@", name, type);
        steps.add(alter + "TYPE " + type + cast, verdictOf(effect), effect.reason);
    }
    const bool mustSetDefault = change.defaultValue || (change.type && hadDefault) || (change.counting && !counts);
    if (mustSetDefault && !counts) {
        if (change.after.has(ColumnPart::Default))
            steps.add(alter + "SET " + change.after.text(ColumnPart::Default));
        else if (hadDefault && !change.type)
            steps.add(alter + "DROP DEFAULT");
    }
    if (change.counting && counts) {
        if (hadDefault && !change.type) steps.add(alter + "DROP DEFAULT");
        const std::string sequence = quoted(nameGivenByServer(table.name.name.key, change.after.name.key, "seq"));
        const std::string qualified = table.name.schema.isEmpty() ? sequence : table.name.schema.text + "." + sequence;
        steps.add(text("CREATE SEQUENCE %@ OWNED BY %@.%@", qualified, table.name.text(), name));
        steps.add(text("SELECT setval(%@, COALESCE((SELECT max(%@) FROM %@), 0) + 1, false)", quotedText(qualified),
                       name, table.name.text()));
        steps.add(alter + text("SET DEFAULT nextval(%@)", quotedText(qualified)));
        steps.add(text("UPDATE %@ SET %@ = DEFAULT WHERE %@ IS NULL", table.name.text(), name, name), Verdict::Rewrites,
                  "rows without a number get one");
    }
    if (change.nullability && !countsBoth) {
        fillNulls(table, change, steps);
        if (change.after.refusesNull)
            addNotNull(alter + "SET NOT NULL", change, steps);
        else
            steps.add(alter + "DROP NOT NULL");
    }
    if (change.comment) steps.add(commentOnColumn(table, change.after));
    if (change.other) steps.addGap("collation and further words of the column have no statement");
}

std::string PostgreSQLMigration::dropConstraint(const TableShape& table, const ConstraintShape& constraint) const {
    if (constraint.kind != ConstraintKind::Index) return MigrationDialect::dropConstraint(table, constraint);
    const std::string schema = table.name.schema.isEmpty() ? "" : table.name.schema.text + ".";
    return "DROP INDEX " + schema + constraint.name.text;
}

std::string PostgreSQLMigration::renameConstraint(const TableShape& table, const ConstraintShape& constraint,
                                                  const SQLName& before, const SQLName& after) const {
    if (constraint.kind != ConstraintKind::Index)
        return alterTable(table) + text("RENAME CONSTRAINT %@ TO %@", before.text, after.text);
    const std::string schema = table.name.schema.isEmpty() ? "" : table.name.schema.text + ".";
    return text("ALTER INDEX %@%@ RENAME TO %@", schema, before.text, after.text);
}

}  // namespace vellicor
