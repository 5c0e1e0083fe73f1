// vellicor/migration/mysql_migration.cpp — the words of MySQL.
#include "vellicor/migration/mysql_migration.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "vellicor/migration/type_change.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string mySQLType(const std::string& type) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 7> kSynonyms{{
        {"INTEGER", "INT"},
        {"NUMERIC", "DECIMAL"},
        {"DEC", "DECIMAL"},
        {"BOOLEAN", "TINYINT(1)"},
        {"BOOL", "TINYINT(1)"},
        {"DOUBLE PRECISION", "DOUBLE"},
        {"CHARACTER VARYING", "VARCHAR"},
    }};
    const std::size_t end = std::min(type.find('('), type.find(" UNSIGNED"));
    const std::string base(trimmed(std::string_view(type).substr(0, end)));
    for (const auto& [name, meaning] : kSynonyms)
        if (uppercased(base) == name) return std::string(meaning) + (end == std::string::npos ? "" : type.substr(end));
    return base + (end == std::string::npos ? "" : type.substr(end));
}

/// "ENGINE=InnoDB COMMENT='x'" as its parts.
std::map<std::string, std::string> options(const std::string& words) {
    std::map<std::string, std::string> parts;
    const SQLTokens tokens = sqlTokens(words, {.bracketsQuoteNames = false, .backslashEscapes = true});
    const SQLToken* const end = tokens.data() + tokens.size();
    for (const SQLToken* at = tokens.data(); at != end;) {
        const SQLToken* const equals = std::find_if(at, end, [](const SQLToken& token) { return token.isSymbol('='); });
        if (equals == end || equals + 1 == end) break;
        parts[normalText(at, equals)] = std::string(equals[1].text);
        at = equals + 2;
    }
    return parts;
}

}  // namespace

void MySQLMigration::complete(TableShape& table) const {
    MigrationDialect::complete(table);
    std::set<std::string> used;
    for (const ConstraintShape& constraint : table.constraints)
        if (constraint.kind != ConstraintKind::ForeignKey) used.insert(caseFolded(constraint.name.key));
    for (ConstraintShape& constraint : table.constraints) {
        if (constraint.kind == ConstraintKind::PrimaryKey) constraint.name = {"PRIMARY", "PRIMARY"};
        if (constraint.kind != ConstraintKind::Unique && constraint.kind != ConstraintKind::Index) continue;
        if (!constraint.name.isEmpty() || constraint.columns.empty()) continue;
        // The server calls it after its first column.
        SQLName name = constraint.columns.front().name;
        for (int number = 2; used.contains(caseFolded(name.key)); ++number) {
            name.key = constraint.columns.front().name.key + "_" + std::to_string(number);
            name.text = exporter().quoteIdentifier(name.key);
        }
        used.insert(caseFolded(name.key));
        constraint.name = name;
    }
    for (ConstraintShape& constraint : table.constraints) {
        if (constraint.kind != ConstraintKind::Unique) continue;
        // A unique column is a unique index.
        constraint.kind = ConstraintKind::Index;
        constraint.words = "UNIQUE " + constraint.words;
        constraint.statement =
            text("CREATE UNIQUE INDEX %@ ON %@ (%@)", constraint.name.text, table.name.text(), columnNames(constraint));
    }
}

bool MySQLMigration::isSameType(const std::string& before, const std::string& after) const {
    return mySQLType(before) == mySQLType(after);
}

std::string MySQLMigration::idempotent(const std::string& sql) const {
    for (const std::string_view words : {"DROP TABLE ", "DROP VIEW "})
        if (sql.starts_with(words)) return std::string(words) + "IF EXISTS " + sql.substr(words.size());
    if (sql.starts_with("CREATE TABLE ")) return "CREATE TABLE IF NOT EXISTS " + sql.substr(13);
    return sql;
}

std::string MySQLMigration::createSchema(const SQLName& schema) const {
    return "CREATE SCHEMA IF NOT EXISTS " + schema.text;
}

std::string MySQLMigration::renameTable(const QualifiedName& before, const QualifiedName& after) const {
    return text("RENAME TABLE %@ TO %@", before.text(), after.text());
}

std::string MySQLMigration::renameView(const ViewShape& before, const ViewShape& after) const {
    return before.name.schema == after.name.schema
               ? text("RENAME TABLE %@ TO %@", before.name.text(), after.name.text())
               : std::string();
}

std::string MySQLMigration::alterOptions(const TableShape& before, const TableShape& after) const {
    const auto was = options(before.options);
    const auto is = options(after.options);
    std::string words;
    for (const auto& [key, value] : is)
        if (const auto found = was.find(key); found == was.end() || found->second != value)
            words += (words.empty() ? "" : " ") + key + "=" + value;
    for (const auto& [key, value] : was) {
        if (is.contains(key)) continue;
        if (key != "COMMENT") return {};  // what the server would choose by itself, nobody knows
        words += (words.empty() ? "" : " ") + std::string("COMMENT=''");
    }
    return words.empty() ? words : alterTable(after) + words;
}

std::string MySQLMigration::addColumn(const TableShape& table, const ColumnShape& column,
                                      const ColumnShape* previous) const {
    return MigrationDialect::addColumn(table, column, previous) +
           (previous ? " AFTER " + previous->name.text : " FIRST");
}

void MySQLMigration::alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const {
    TypeChange effect;
    if (change.type) effect = typeChange(change.before.text(ColumnPart::Type), change.after.text(ColumnPart::Type));
    if (change.nullability) fillNulls(table, change, steps);
    const std::string sql = alterTable(table) + text("MODIFY COLUMN %@ %@", change.after.name.text,
                                                     change.after.definition({ColumnPart::Unique}));
    const bool refuses = change.nullability && change.after.refusesNull && !change.after.has(ColumnPart::Default);
    if (refuses && verdictOf(effect) != Verdict::LosesData)
        addNotNull(sql, change, steps);
    else
        steps.add(sql,
                  change.type          ? verdictOf(effect)
                  : change.nullability ? Verdict::Rewrites
                                       : Verdict::Safe,
                  effect.reason);
}

std::string MySQLMigration::dropConstraint(const TableShape& table, const ConstraintShape& constraint) const {
    switch (constraint.kind) {
        case ConstraintKind::PrimaryKey: return alterTable(table) + "DROP PRIMARY KEY";
        case ConstraintKind::ForeignKey:
            return constraint.name.isEmpty() ? "" : alterTable(table) + "DROP FOREIGN KEY " + constraint.name.text;
        case ConstraintKind::Check: return MigrationDialect::dropConstraint(table, constraint);
        default: return constraint.name.isEmpty() ? "" : alterTable(table) + "DROP INDEX " + constraint.name.text;
    }
}

std::string MySQLMigration::renameConstraint(const TableShape& table, const ConstraintShape& constraint,
                                             const SQLName& before, const SQLName& after) const {
    if (constraint.kind != ConstraintKind::Index) return {};
    return alterTable(table) + text("RENAME INDEX %@ TO %@", before.text, after.text);
}

}  // namespace vellicor
