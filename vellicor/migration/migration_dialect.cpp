// vellicor/migration/migration_dialect.cpp — the words that most servers share.
#include "vellicor/migration/migration_dialect.h"

#include <algorithm>

#include "vellicor/export/runnable/runnable_dialect.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string_view wordsFor(Verdict verdict) {
    switch (verdict) {
        case Verdict::Safe: return "safe";
        case Verdict::Rewrites: return "rewrites or locks the table";
        case Verdict::MayFail: return "may fail on existing data";
        case Verdict::LosesData: return "loses data";
    }
    return {};
}

// === reading

SQLWordRules MigrationDialect::wordRules() const {
    return {.bracketsQuoteNames = _exporter.getStartingQuoteIdentifierString() == "[",
            .backslashEscapes = !as<const RunnableDialect>(&_exporter)};
}

void MigrationDialect::complete(TableShape& table) const {
    if (const ConstraintShape* key = table.primaryKey())
        for (ColumnShape& column : table.columns)
            if (key->mentions(column.name)) column.refusesNull = true;
}

bool MigrationDialect::isSameType(const std::string& before, const std::string& after) const { return before == after; }

// === schemas, tables, views

std::string MigrationDialect::createSchema(const SQLName& schema) const { return "CREATE SCHEMA " + schema.text; }
std::string MigrationDialect::dropSchema(const SQLName& schema) const { return "DROP SCHEMA " + schema.text; }

std::string MigrationDialect::renameTable(const QualifiedName& before, const QualifiedName& after) const {
    return text("ALTER TABLE %@ RENAME TO %@", before.text(), after.name.text);
}

std::string MigrationDialect::moveTable(const QualifiedName&, const SQLName&) const { return {}; }
std::string MigrationDialect::dropTable(const TableShape& table) const { return "DROP TABLE " + table.name.text(); }
std::string MigrationDialect::renameView(const ViewShape&, const ViewShape&) const { return {}; }
std::string MigrationDialect::dropView(const ViewShape& view) const { return "DROP VIEW " + view.name.text(); }
std::string MigrationDialect::alterOptions(const TableShape&, const TableShape&) const { return {}; }
std::string MigrationDialect::commentOnTable(const TableShape&) const { return {}; }
std::string MigrationDialect::commentOnColumn(const TableShape&, const ColumnShape&) const { return {}; }

// === columns

std::string MigrationDialect::renameColumn(const TableShape& table, const SQLName& before, const SQLName& after) const {
    return alterTable(table) + text("RENAME COLUMN %@ TO %@", before.text, after.text);
}

std::string MigrationDialect::addColumn(const TableShape& table, const ColumnShape& column, const ColumnShape*) const {
    const std::string definition =
        column.definition({ColumnPart::Unique, ColumnPart::PrimaryKey, ColumnPart::Check, ColumnPart::Reference});
    return alterTable(table) + text("ADD COLUMN %@ %@", column.name.text, definition);
}

std::string MigrationDialect::dropColumn(const TableShape& table, const ColumnShape& column) const {
    return alterTable(table) + "DROP COLUMN " + column.name.text;
}

Verdict MigrationDialect::verdictOf(const TypeChange& change, Verdict atLeast) {
    switch (change.effect) {
        case TypeChange::Effect::None:
        case TypeChange::Effect::Widens: return atLeast;
        case TypeChange::Effect::MayFail: return Verdict::MayFail;
        case TypeChange::Effect::LosesData: return Verdict::LosesData;
    }
    return atLeast;
}

void MigrationDialect::addNotNull(std::string sql, const ColumnChange& change, MigrationSteps& steps) {
    const bool isFilled = change.after.has(ColumnPart::Default);
    steps.add(std::move(sql), isFilled ? Verdict::Rewrites : Verdict::MayFail,
              isFilled ? "the server reads every row" : "rows without a value are refused, and there is no default");
}

void MigrationDialect::fillNulls(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) {
    const std::string value = change.after.text(ColumnPart::Default);
    if (!change.after.refusesNull || change.before.refusesNull || value.size() < 9) return;
    steps.add(text("UPDATE %@ SET %@ = %@ WHERE %@ IS NULL", table.name.text(), change.after.name.text, value.substr(8),
                   change.after.name.text),
              Verdict::Rewrites, "rows without a value take the default");
}

void MigrationDialect::alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const {
    const std::string alter = alterTable(table) + text("ALTER COLUMN %@ ", change.after.name.text);
    if (change.type) {
        const TypeChange effect = typeChange(change.before.text(ColumnPart::Type), change.after.text(ColumnPart::Type));
        steps.add(alter + "TYPE " + change.after.text(ColumnPart::Type), verdictOf(effect), effect.reason);
    }
    if (change.defaultValue)
        steps.add(alter + (change.after.has(ColumnPart::Default) ? "SET " + change.after.text(ColumnPart::Default)
                                                                 : "DROP DEFAULT"));
    if (change.nullability) {
        fillNulls(table, change, steps);
        if (change.after.refusesNull)
            addNotNull(alter + "SET NOT NULL", change, steps);
        else
            steps.add(alter + "DROP NOT NULL");
    }
    if (change.counting) steps.addGap("that the column counts has no statement in this dialect");
    if (change.comment) steps.addOrGap(commentOnColumn(table, change.after), "its comment");
    if (change.other) steps.addGap("collation and further words of the column have no statement in this dialect");
}

// === constraints and indexes

std::string MigrationDialect::addConstraint(const TableShape&, const ConstraintShape& constraint) const {
    return constraint.statement;
}

std::string MigrationDialect::dropConstraint(const TableShape& table, const ConstraintShape& constraint) const {
    if (constraint.name.isEmpty()) return {};
    if (constraint.kind == ConstraintKind::Index) return "DROP INDEX " + constraint.name.text;
    return alterTable(table) + "DROP CONSTRAINT " + constraint.name.text;
}

std::string MigrationDialect::renameConstraint(const TableShape&, const ConstraintShape&, const SQLName&,
                                               const SQLName&) const {
    return {};
}

std::string MigrationDialect::quotedText(std::string_view content) {
    return "'" + replacingAll(content, "'", "''") + "'";
}

std::string MigrationDialect::columnNames(const ConstraintShape& constraint) {
    std::vector<std::string> names;
    for (const ConstraintShape::Column& column : constraint.columns) names.push_back(column.name.text + column.more);
    return joined(names, ", ");
}

}  // namespace vellicor
