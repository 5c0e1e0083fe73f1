// vellicor/dialects/sqlite_exporter.cpp — SQLite.
#include "vellicor/dialects/sqlite_exporter.h"

#include <algorithm>
#include <array>

#include "vellicor/export/exporter_common.h"
#include "vellicor/export/sql_block_splitter.h"
#include "vellicor/export/sql_identifiers.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string SQLiteExporter::exportSQLContainer(SQLContainer& container) {
    container.reorderByForeignKeys();
    configureForExport();
    _canonicalNames.clear();
    if (writesRunnableScripts())
        for (const auto& object : container.objectList())
            if (auto* table = as<SQLTable>(object.get()); table && !table->getSchemaName().empty())
                _canonicalNames.emplace(lowercased(table->getName()), getCanonicalName(*table));
    return GenericSQLExporter::exportSQLContainer(container);
}

std::string SQLiteExporter::getCanonicalNameWithLinkString(SQLTable& table, std::string_view linkString) {
    const std::string schema = schemaNameForTable(table);
    if (!writesRunnableScripts() || schema.empty())
        return GenericSQLExporter::getCanonicalNameWithLinkString(table, linkString);
    return quoteIdentifier(text("%@_%@", trimmed(schema), trimmed(table.getBaseName())));
}

std::string SQLiteExporter::viewQuery(SQLView& view) {
    // A qualified name, not inside a longer one; texts in quotes stand for themselves.
    static const RegularExpression name(R"('[^']*'|"[^"]*"|\b\w+\.\w+\b)");
    std::string query = view.queryString();
    if (!writesRunnableScripts() || _canonicalNames.empty()) return query;
    std::string rewritten;
    std::size_t copied = 0;
    for (const auto& match : name.allMatches(query)) {
        const auto found = _canonicalNames.find(lowercased(match.group(0, query)));
        if (found == _canonicalNames.end()) continue;
        rewritten += query.substr(copied, match.groups[0]->position - copied) + found->second;
        copied = match.groups[0]->position + match.groups[0]->length;
    }
    return rewritten + query.substr(copied);
}

SQLTable::Components SQLiteExporter::fieldListForTable(SQLTable& table) {
    const auto group = [](const auto& component) {
        if (as<SQLForeignKey>(component.get())) return 2;
        return as<SQLIndex>(component.get()) ? 1 : 0;
    };
    SQLTable::Components components = table.objectList();
    std::ranges::stable_sort(components, {}, group);
    return components;
}

std::string SQLiteExporter::exportSQLField(SQLField& field) {
    const bool isOnlyKey =
        field.getPrimaryKey() && field.parentTable() && field.parentTable()->primaryKeyObjectList().size() == 1;
    // Kept: in classic text the type must be spelt exactly so, unlike in `fieldIsIntegerType`. SQLite numbers no rows
    // of a key of another type.
    const bool numbersRows = field.getAutoIncrement() && (field.getType() == "INTEGER" || writesRunnableScripts());
    const std::string type = isOnlyKey && numbersRows ? "INTEGER" : fieldType(field);
    std::string sql = text("%@ %@", quoteIdentifier(field.getName()), type);
    if (const std::string value = field.getDefaultValue(); !value.empty())
        sql += text(" DEFAULT %@", quoteDefaultValue(value, field));
    if (field.getNotNull()) sql += " NOT NULL";
    if (isOnlyKey) sql += " PRIMARY KEY";
    if (isOnlyKey && numbersRows) sql += text(" %@", autoIncrementKeyword());
    if (field.isUnique()) sql += " UNIQUE";
    sql += nodeText(inlineCheckConstraint(field));
    if (SQLField* target = field.getFkField()) {
        sql += text(" REFERENCES %@ (%@)", canonicalTableName(*target), quoteIdentifier(target->getName()));
        sql += getDeleteActionStringForCode(field.deleteAction());
        sql += getUpdateActionStringForCode(field.updateAction());
    }
    return sql;
}

SourceNodePtr SQLiteExporter::primaryKeyBlock(SQLTable& table) {
    return table.primaryKeyObjectList().size() < 2 ? QVSourceNode::node() : GenericSQLExporter::primaryKeyBlock(table);
}

std::string SQLiteExporter::quoteDefaultValue(std::string_view value, SQLField& field) {
    static constexpr std::array<std::string_view, 3> kTimes{"CURRENT_TIME", "CURRENT_DATE", "CURRENT_TIMESTAMP"};
    const bool isTime =
        std::ranges::any_of(kTimes, [&](std::string_view word) { return equalIgnoringCase(word, value); });
    if (isTime) return std::string(value);
    if (writesRunnableScripts()) {
        const std::string type = uppercased(field.getDataType());
        const bool isFlag = equalIgnoringCase(value, "TRUE") || equalIgnoringCase(value, "FALSE");
        if (isFlag && (type == "BOOLEAN" || type == "BOOL")) return std::string(value);
        if (field.getPropertyAsBoolean(keys::noQuoteDefault)) return runnableExpression(value);
    }
    return GenericSQLExporter::quoteDefaultValue(value, field);
}

std::string SQLiteExporter::withoutForeignKeyChecks(std::string_view statements) {
    return text("PRAGMA foreign_keys = OFF%@\n%@PRAGMA foreign_keys = ON%@\n", instructionSeparator(), statements,
                instructionSeparator());
}

std::string SQLiteExporter::userBlock(std::string_view block) {
    // A document for several servers makes its schemas here; the tables of SQLite stand in none.
    std::string statements;
    for (const std::string& statement : GenericSQLExporterAppender::SQLBlockArrayFromString(trimmed(block))) {
        const bool makesSchema = uppercased(trimmed(statement)).starts_with("CREATE SCHEMA ");
        statements += makesSchema ? text("/*%@*/", commentText(trimmed(statement))) : statement;
    }
    return GenericSQLExporter::userBlock(statements);
}

bool SQLiteExporter::fieldIsIntegerType(const SQLField& field) const {
    return uppercased(field.getType()) == "INTEGER";
}

bool SQLiteExporter::fieldIsFirstIntegerPK(const SQLField& field) const {
    const SQLTable* table = field.parentTable();
    if (!table) return false;
    for (const SQLField* column : table->primaryKeyObjectList())
        if (fieldIsIntegerType(*column)) return column == &field;
    return false;
}

std::string SQLiteExporter::exportSQLForeignKey(SQLForeignKey& key) { return getSQLForForeignKeyField(key); }

std::string SQLiteExporter::addIndex(SQLIndex& index, SQLTable& table) {
    return ExporterCommon::addIndex(index, table, *this);
}

Statements SQLiteExporter::postLoadAsVectorSQLField(SQLField& field, SQLTable& table) {
    return {createFieldIndexOnField(field, table)};
}

std::string SQLiteExporter::prefixForIndexedProperty(SQLField& field) {
    const SQLTable* table = field.parentTable();
    return table && shouldPrefixFieldLevelIndexNames() ? text("%@_", table->getBaseName()) : std::string();
}

std::string SQLiteExporter::dropIndex(SQLField& field, SQLTable& table) {
    if (!field.getPropertyAsBoolean(keys::indexed)) return {};
    if (writesRunnableScripts())
        return text("DROP INDEX %@%@\n", nameOfExistingIndex(field, table), instructionSeparator());
    // Kept: the name is not the one that the create script gives, and no separator follows.
    const std::string name = field.hasProperty(keys::indexedKeyName)
                                 ? quoteIdentifier(field.getProperty(keys::indexedKeyName))
                                 : getNameForIndex(table, getIndexNameForFieldIndexed(field));
    logDropIndexName(name, field);
    return text("DROP INDEX %@\n", name);
}

std::string SQLiteExporter::alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) {
    SQLTable* table = index.parentTable() ? index.parentTable() : oldIndex.parentTable();
    if (writesRunnableScripts()) {
        if (!table) return {};
        const std::string name = nameOfExistingIndex(oldIndex);
        return text("DROP INDEX %@%@%@\n%@", ifExists(), name, instructionSeparator(), addIndex(index, *table));
    }
    std::string sql = text("DROP INDEX %@;", quoteIdentifier(oldIndex.getName()));
    const IndexStatementForm bare{.addSeparator = false, .addCreateInstruction = false, .withTableName = false};
    const std::string statement = table ? ExporterCommon::addIndex(index, *table, *this, bare) : std::string();
    if (!statement.empty()) {
        sql += ";\n";  // Kept: the separator is doubled
        sql += text("ADD %@", statement);
    }
    return sql + text("%@\n", instructionSeparator());
}

std::string SQLiteExporter::dropSQLField(SQLField& field) {
    return text("/* SQLite cannot drop column %@(%@)*/", commentText(canonicalTableName(field)),
                commentText(quoteIdentifier(field.getName())));
}

std::string SQLiteExporter::dropSQLConstraint(SQLConstraint& constraint) {
    // The create script makes an index of what is unique.
    if (writesRunnableScripts() && !constraint.isCheckConstraint()) return dropSQLIndex(constraint);
    return text("/* SQLite cannot drop constraint %@(%@)*/", commentText(canonicalTableName(constraint)),
                commentText(quoteIdentifier(constraint.getName())));
}

std::string SQLiteExporter::addSQLConstraint(SQLConstraint& constraint) {
    if (!writesRunnableScripts()) return GenericSQLExporter::addSQLConstraint(constraint);
    if (!constraint.isCheckConstraint()) return GenericSQLExporter::addIndex(constraint);
    return text("/* SQLite cannot add constraint %@(%@)*/", commentText(canonicalTableName(constraint)),
                commentText(quoteIdentifier(constraint.getName())));
}

}  // namespace vellicor
