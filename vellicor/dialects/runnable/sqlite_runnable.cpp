// vellicor/dialects/runnable/sqlite_runnable.cpp — what SQLite's scripts need, beyond the classic text, to run.
#include "vellicor/dialects/runnable/sqlite_runnable.h"

#include <unordered_map>

#include "vellicor/export/generic_exporter_appender.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/regular_expression.h"

namespace vellicor {

namespace {

/// Reserved by the library of today too.
constexpr std::string_view kFurtherSqliteWords[] = {"NOTHING", "RETURNING"};

struct SQLiteRun : RunnableRun {
    using RunnableRun::RunnableRun;
    std::unordered_map<std::string, std::string> canonicalNames;  // by lower-cased qualified name
};

}  // namespace

std::unique_ptr<ExportRun> RunnableSQLiteExporter::newRun(SQLContainer& container) {
    auto run = std::make_unique<SQLiteRun>(container, newLosses());
    reserveTableNames(*run);
    for (const auto& object : container.objectList())
        if (auto* table = as<SQLTable>(object.get()); table && !table->getSchemaName().empty())
            run->canonicalNames.emplace(lowercased(table->getName()), getCanonicalName(*table));
    return run;
}

void RunnableSQLiteExporter::reserveTableName(RunnableRun& run, SQLTable& table) {
    (void)run.freeName("", table.fullyQualifiedNameForIndexNames());
}

// === names and values

bool RunnableSQLiteExporter::runsOnlyQuoted(std::string_view name) const {
    return isRefusedBare(name, containsWord(reservedWords(), name) || containsWord(kFurtherSqliteWords, name));
}

std::string RunnableSQLiteExporter::getCanonicalNameWithLinkString(SQLTable& table, std::string_view linkString) {
    const std::string schema = schemaNameForTable(table);
    if (schema.empty()) return RunnableExporter::getCanonicalNameWithLinkString(table, linkString);
    return quoteIdentifier(text("%@_%@", trimmed(schema), trimmed(table.getBaseName())));
}

std::string RunnableSQLiteExporter::viewQuery(SQLView& view) {
    // A qualified name, not inside a longer one; texts in quotes stand for themselves.
    static const RegularExpression name(R"('[^']*'|"[^"]*"|\b\w+\.\w+\b)");
    std::string query = RunnableExporter::viewQuery(view);
    const auto* run = static_cast<SQLiteRun*>(runnableRun());
    if (!run || run->canonicalNames.empty()) return query;
    std::string rewritten;
    std::size_t copied = 0;
    for (const auto& match : name.allMatches(query)) {
        const auto found = run->canonicalNames.find(lowercased(match.group(0, query)));
        if (found == run->canonicalNames.end()) continue;
        rewritten += query.substr(copied, match.groups[0]->position - copied) + found->second;
        copied = match.groups[0]->position + match.groups[0]->length;
    }
    return rewritten + query.substr(copied);
}

std::string RunnableSQLiteExporter::userBlock(std::string_view block) {
    // A document for several servers makes its schemas here; the tables of SQLite stand in none.
    std::string statements;
    for (const std::string& statement : GenericSQLExporterAppender::SQLBlockArrayFromString(trimmed(block))) {
        const bool makesSchema = uppercased(trimmed(statement)).starts_with("CREATE SCHEMA ");
        statements += makesSchema ? text("/*%@*/", commentText(trimmed(statement))) : statement;
    }
    return RunnableExporter::userBlock(statements);
}

std::string RunnableSQLiteExporter::indexNameInScript(SQLTable&, std::string_view name) {
    return nameInScript("", name);
}

std::string RunnableSQLiteExporter::quoteDefaultValue(std::string_view value, SQLField& field) {
    const std::string type = uppercased(field.getDataType());
    const bool isFlag = equalIgnoringCase(value, "TRUE") || equalIgnoringCase(value, "FALSE");
    if (isFlag && (type == "BOOLEAN" || type == "BOOL")) return std::string(value);
    return field.getPropertyAsBoolean(keys::noQuoteDefault) ? runnableExpression(value)
                                                            : RunnableExporter::quoteDefaultValue(value, field);
}

// === statements

std::string RunnableSQLiteExporter::withoutForeignKeyChecks(std::string_view statements) {
    return text("PRAGMA foreign_keys = OFF%@\n%@PRAGMA foreign_keys = ON%@\n", instructionSeparator(), statements,
                instructionSeparator());
}

std::string RunnableSQLiteExporter::dropTableInstruction(SQLTable& table) {
    return text("DROP TABLE %@%@%@\n", ifExists(), getCanonicalName(table), instructionSeparator());
}

std::string RunnableSQLiteExporter::dropIndex(SQLField& field, SQLTable& table) {
    if (!field.getPropertyAsBoolean(keys::indexed)) return {};
    return text("DROP INDEX %@%@\n", nameOfExistingIndex(field, table), instructionSeparator());
}

std::string RunnableSQLiteExporter::alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) {
    SQLTable* table = index.parentTable() ? index.parentTable() : oldIndex.parentTable();
    if (!table) return {};
    const std::string name = nameOfExistingIndex(oldIndex);
    return text("DROP INDEX %@%@%@\n%@", ifExists(), name, instructionSeparator(), addIndex(index, *table));
}

// The create script makes an index of what is unique.

std::string RunnableSQLiteExporter::dropSQLConstraint(SQLConstraint& constraint) {
    return constraint.isCheckConstraint() ? RunnableExporter::dropSQLConstraint(constraint) : dropSQLIndex(constraint);
}

std::string RunnableSQLiteExporter::addSQLConstraint(SQLConstraint& constraint) {
    if (!constraint.isCheckConstraint()) return RunnableExporter::addIndex(constraint);
    return text("/* SQLite cannot add constraint %@(%@)*/", commentText(canonicalTableName(constraint)),
                commentText(quoteIdentifier(constraint.getName())));
}

}  // namespace vellicor
