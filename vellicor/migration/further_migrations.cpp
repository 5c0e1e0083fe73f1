// vellicor/migration/further_migrations.cpp — the words of the dialects that differ in a few places.
#include "vellicor/migration/further_migrations.h"

#include <algorithm>

#include "vellicor/migration/mysql_migration.h"
#include "vellicor/migration/type_change.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// DEFAULT's value.
std::string defaultValueOf(const ColumnShape& column) {
    const std::string words = column.text(ColumnPart::Default);
    return words.size() > 8 ? words.substr(8) : "NULL";
}

template <class Dialect>
std::unique_ptr<MigrationDialect> makeMigration(GenericSQLExporter& exporter) {
    return std::make_unique<Dialect>(exporter);
}

}  // namespace

std::unique_ptr<MigrationDialect> MigrationDialect::of(GenericSQLExporter& exporter) {
    static constexpr std::pair<std::string_view, std::unique_ptr<MigrationDialect> (*)(GenericSQLExporter&)>
        kDialects[] = {
            {"Postgres", makeMigration<PostgreSQLMigration>}, {"Redshift", makeMigration<RedshiftMigration>},
            {"MySQL (2)", makeMigration<MySQLMigration>},     {"SQLite", makeMigration<SQLiteMigration>},
            {"SQLServer", makeMigration<SQLServerMigration>}, {"Sybase", makeMigration<SybaseMigration>},
            {"Oracle", makeMigration<OracleMigration>},       {"FileMaker", makeMigration<FileMakerMigration>},
        };
    const auto* found = std::ranges::find(kDialects, exporter.getName(), [](const auto& entry) { return entry.first; });
    return found == std::end(kDialects) ? makeMigration<MigrationDialect>(exporter) : found->second(exporter);
}

// === Redshift

void RedshiftMigration::alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const {
    if (change.type) {
        const std::string was = change.before.text(ColumnPart::Type);
        const std::string type = change.after.text(ColumnPart::Type);
        const bool isText = uppercased(was).starts_with("VARCHAR") && uppercased(type).starts_with("VARCHAR");
        const TypeChange effect = typeChange(was, type);
        if (isText)
            steps.add(alterTable(table) + text("ALTER COLUMN %@ TYPE %@", change.after.name.text, type),
                      verdictOf(effect), effect.reason);
        else
            steps.addGap("only the size of a VARCHAR column can change");
    }
    if (change.nullability || change.defaultValue || change.counting)
        steps.addGap("NULL, the default and counting of a column that is there cannot change");
    if (change.comment) steps.add(commentOnColumn(table, change.after));
    if (change.other) steps.addGap("collation and further words of the column have no statement");
}

// === SQLite

void SQLiteMigration::complete(TableShape& table) const {
    // Only INTEGER PRIMARY KEY refuses null by itself, and that is in its type.
    for (ColumnShape& column : table.columns) column.refusesNull = column.has(ColumnPart::NotNull);
}

std::string SQLiteMigration::idempotent(const std::string& sql) const {
    for (const std::string_view words : {"DROP TABLE ", "DROP VIEW ", "DROP INDEX "})
        if (sql.starts_with(words)) return std::string(words) + "IF EXISTS " + sql.substr(words.size());
    for (const std::string_view words :
         {"CREATE TABLE ", "CREATE VIEW ", "CREATE UNIQUE INDEX ", "CREATE INDEX ", "CREATE  INDEX "})
        if (sql.starts_with(words)) return std::string(words) + "IF NOT EXISTS " + sql.substr(words.size());
    return sql;
}

std::string SQLiteMigration::renameTable(const QualifiedName& before, const QualifiedName& after) const {
    return text("ALTER TABLE %@ RENAME TO %@", before.text(), after.text());
}

std::string SQLiteMigration::addColumn(const TableShape& table, const ColumnShape& column, const ColumnShape*) const {
    return alterTable(table) + text("ADD COLUMN %@ %@", column.name.text, column.definition());
}

std::string SQLiteMigration::dropConstraint(const TableShape&, const ConstraintShape& constraint) const {
    return constraint.inTable || constraint.name.isEmpty() ? "" : "DROP INDEX " + constraint.name.text;
}

// === SQL Server

std::string SQLServerMigration::idempotent(const std::string& sql) const {
    for (const std::string_view words : {"DROP TABLE ", "DROP VIEW ", "DROP INDEX ", "DROP SCHEMA "})
        if (sql.starts_with(words)) return std::string(words) + "IF EXISTS " + sql.substr(words.size());
    return sql;
}

std::string SQLServerMigration::renamed(const std::string& object, const SQLName& after, std::string_view kind) {
    return text("EXEC sp_rename %@, %@", quotedText(object), quotedText(after.key)) +
           (kind.empty() ? std::string() : text(", %@", quotedText(kind)));
}

std::string SQLServerMigration::renameTable(const QualifiedName& before, const QualifiedName& after) const {
    return renamed(before.text(), after.name, "");
}

std::string SQLServerMigration::moveTable(const QualifiedName& table, const SQLName& schema) const {
    return text("ALTER SCHEMA %@ TRANSFER %@", schema.isEmpty() ? "dbo" : schema.text, table.text());
}

std::string SQLServerMigration::renameView(const ViewShape& before, const ViewShape& after) const {
    return before.name.schema == after.name.schema ? renamed(before.name.text(), after.name.name, "") : std::string();
}

std::string SQLServerMigration::renameColumn(const TableShape& table, const SQLName& before,
                                             const SQLName& after) const {
    return renamed(table.name.text() + "." + before.text, after, "COLUMN");
}

std::string SQLServerMigration::addColumn(const TableShape& table, const ColumnShape& column,
                                          const ColumnShape*) const {
    const std::string definition =
        column.definition({ColumnPart::Unique, ColumnPart::PrimaryKey, ColumnPart::Check, ColumnPart::Reference});
    return alterTable(table) + text("ADD %@ %@", column.name.text, definition);
}

std::string SQLServerMigration::dropColumn(const TableShape& table, const ColumnShape& column) const {
    const std::string drop = alterTable(table) + "DROP COLUMN " + column.name.text;
    return column.has(ColumnPart::Default) ? dropDefault(table, column) + ";\n" + drop : drop;
}

std::string SQLServerMigration::dropDefault(const TableShape& table, const ColumnShape& column) const {
    // The constraint of a default has a name that the server made up.
    return text(
        "DECLARE @name nvarchar(256), @sql nvarchar(1000)\n"
        "SELECT @name = d.name FROM sys.default_constraints d JOIN sys.columns c ON c.default_object_id = "
        "d.object_id WHERE d.parent_object_id = OBJECT_ID(%@) AND c.name = %@\n"
        "SET @sql = %@ + QUOTENAME(@name)\nEXEC sp_executesql @sql",
        quotedText(table.name.text()), quotedText(column.name.key), quotedText(alterTable(table) + "DROP CONSTRAINT "));
}

std::string SQLServerMigration::setDefault(const TableShape& table, const ColumnShape& column) const {
    return alterTable(table) + text("ADD DEFAULT %@ FOR %@", defaultValueOf(column), column.name.text);
}

void SQLServerMigration::alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const {
    const ColumnShape& after = change.after;
    const bool mustMove = change.type || change.nullability;
    const bool hadDefault = change.before.has(ColumnPart::Default);
    if (hadDefault && (change.defaultValue || change.type)) steps.add(dropDefault(table, change.before));
    if (mustMove) {
        fillNulls(table, change, steps);
        const TypeChange effect = typeChange(change.before.text(ColumnPart::Type), after.text(ColumnPart::Type));
        const std::string sql =
            alterTable(table) + alterWord() +
            text("%@ %@ %@", after.name.text, after.text(ColumnPart::Type), after.refusesNull ? "NOT NULL" : "NULL");
        if (change.nullability && after.refusesNull && verdictOf(effect) != Verdict::LosesData)
            addNotNull(sql, change, steps);
        else
            steps.add(sql, verdictOf(effect), effect.reason);
    }
    if (after.has(ColumnPart::Default) && (change.defaultValue || change.type)) steps.add(setDefault(table, after));
    if (change.counting) steps.addGap("IDENTITY cannot be given to a column that is there, nor taken from it");
    if (change.comment) steps.addGap("its comment has no statement");
    if (change.other) steps.addGap("collation and further words of the column have no statement");
}

std::string SQLServerMigration::dropConstraint(const TableShape& table, const ConstraintShape& constraint) const {
    if (constraint.name.isEmpty()) return {};
    if (constraint.kind == ConstraintKind::Index)
        return text("DROP INDEX %@ ON %@", constraint.name.text, table.name.text());
    return MigrationDialect::dropConstraint(table, constraint);
}

std::string SQLServerMigration::renameConstraint(const TableShape& table, const ConstraintShape& constraint,
                                                 const SQLName& before, const SQLName& after) const {
    if (constraint.kind == ConstraintKind::Index) return renamed(table.name.text() + "." + before.text, after, "INDEX");
    const std::string schema = table.name.schema.isEmpty() ? "" : table.name.schema.text + ".";
    return renamed(schema + before.text, after, "OBJECT");
}

// === Sybase

std::string SybaseMigration::dropDefault(const TableShape& table, const ColumnShape& column) const {
    return alterTable(table) + text("REPLACE %@ DEFAULT NULL", column.name.text);
}

std::string SybaseMigration::setDefault(const TableShape& table, const ColumnShape& column) const {
    return alterTable(table) + text("REPLACE %@ %@", column.name.text, column.text(ColumnPart::Default));
}

std::string SybaseMigration::dropConstraint(const TableShape& table, const ConstraintShape& constraint) const {
    if (constraint.kind == ConstraintKind::Index && !constraint.name.isEmpty())
        return text("DROP INDEX %@.%@", table.name.text(), constraint.name.text);
    return SQLServerMigration::dropConstraint(table, constraint);
}

// === Oracle

std::string OracleMigration::renameView(const ViewShape& before, const ViewShape& after) const {
    return before.name.schema.isEmpty() && after.name.schema.isEmpty()
               ? text("RENAME %@ TO %@", before.name.text(), after.name.text())
               : std::string();
}

std::string OracleMigration::addColumn(const TableShape& table, const ColumnShape& column, const ColumnShape*) const {
    const std::string definition =
        column.definition({ColumnPart::Unique, ColumnPart::PrimaryKey, ColumnPart::Check, ColumnPart::Reference});
    return alterTable(table) + text("ADD %@ %@", column.name.text, definition);
}

void OracleMigration::alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const {
    const ColumnShape& after = change.after;
    const std::string modify = alterTable(table) + text("MODIFY %@", after.name.text);
    if (change.type) {
        const TypeChange effect = typeChange(change.before.text(ColumnPart::Type), after.text(ColumnPart::Type));
        steps.add(modify + " " + after.text(ColumnPart::Type), verdictOf(effect), effect.reason);
    }
    if (change.defaultValue) steps.add(modify + " DEFAULT " + defaultValueOf(after));
    if (change.nullability) {
        fillNulls(table, change, steps);
        if (after.refusesNull)
            addNotNull(modify + " NOT NULL", change, steps);
        else
            steps.add(modify + " NULL");
    }
    if (change.counting) steps.addGap("that the column counts has no statement");
    if (change.comment) steps.addGap("its comment has no statement");
    if (change.other) steps.addGap("further words of the column have no statement");
}

std::string OracleMigration::dropConstraint(const TableShape& table, const ConstraintShape& constraint) const {
    if (constraint.kind == ConstraintKind::Index) {
        const std::string schema = table.name.schema.isEmpty() ? "" : table.name.schema.text + ".";
        return constraint.name.isEmpty() ? "" : "DROP INDEX " + schema + constraint.name.text;
    }
    if (!constraint.name.isEmpty()) return MigrationDialect::dropConstraint(table, constraint);
    if (constraint.kind == ConstraintKind::PrimaryKey) return alterTable(table) + "DROP PRIMARY KEY";
    return constraint.kind == ConstraintKind::Unique
               ? alterTable(table) + text("DROP UNIQUE (%@)", columnNames(constraint))
               : std::string();
}

std::string OracleMigration::renameConstraint(const TableShape& table, const ConstraintShape& constraint,
                                              const SQLName& before, const SQLName& after) const {
    if (constraint.kind != ConstraintKind::Index)
        return alterTable(table) + text("RENAME CONSTRAINT %@ TO %@", before.text, after.text);
    const std::string schema = table.name.schema.isEmpty() ? "" : table.name.schema.text + ".";
    return text("ALTER INDEX %@%@ RENAME TO %@", schema, before.text, after.text);
}

// === FileMaker

void FileMakerMigration::alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const {
    const std::string alter = alterTable(table) + text("ALTER %@ ", change.after.name.text);
    if (change.defaultValue)
        steps.add(alter + (change.after.has(ColumnPart::Default) ? "SET " + change.after.text(ColumnPart::Default)
                                                                 : "DROP DEFAULT"));
    if (change.type) steps.addGap("the type of a column that is there cannot change");
    if (change.nullability) steps.addGap("whether a column that is there takes null cannot change");
    if (change.counting || change.comment || change.other)
        steps.addGap("further words of the column have no statement");
}

std::string FileMakerMigration::addConstraint(const TableShape&, const ConstraintShape& constraint) const {
    return constraint.inColumn ? "" : constraint.statement;
}

std::string FileMakerMigration::dropConstraint(const TableShape& table, const ConstraintShape& constraint) const {
    if (constraint.kind != ConstraintKind::Index) return {};
    return text("DROP INDEX ON %@(%@)", table.name.text(), columnNames(constraint));
}

}  // namespace vellicor
