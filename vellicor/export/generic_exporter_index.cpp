// vellicor/export/generic_exporter_index.cpp — indexes inside CREATE TABLE and as statements behind it.
#include <algorithm>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string GenericSQLExporter::exportSQLIndex(SQLIndex& index) {
    const std::vector<std::string> columns = quoteAllMembers(index.getFieldNameList());
    if (columns.empty()) return text("/* INDEX %@ (empty) */", getCanonicalName(index));
    return text("INDEX %@ (%@)", getCanonicalName(index), joined(columns, ","));
}

std::string GenericSQLExporter::exportSQLConstraint(SQLConstraint& constraint) {
    if (!constraint.isCheckConstraint()) return exportSQLIndex(constraint);
    SourceNodePtr clause = inlineCheckConstraint(constraint);
    clause->setSpaceBefore("");
    return clause->string();
}

std::string GenericSQLExporter::getIndexNameForFieldIndexed(SQLField& field) {
    return replacingAll(field.getName(), " ", "_") + "_idx";
}

std::string GenericSQLExporter::createFieldIndexOnField(SQLField& field, SQLTable& table) {
    if (!field.getPropertyAsBoolean(keys::indexed)) return {};
    std::string name = getIndexNameForFieldIndexed(field);
    if (shouldPrefixFieldLevelIndexNames()) {
        const std::string prefix = text("%@_", table.getBaseName());
        if (!name.starts_with(prefix)) name.insert(0, prefix);
    }
    return text("%@%@\n", createIndexStatement(field, nameForIndexStatement(table, name)), instructionSeparator());
}

std::string GenericSQLExporter::createIndexStatement(SQLField& field, std::string_view indexName) {
    std::string sql = "CREATE INDEX ";
    if (!indexName.empty()) sql += text("%@ ", indexName);
    sql += text("ON %@", canonicalTableName(field));
    sql += text("(%@", getCanonicalName(field));
    const std::string type = uppercased(field.getDataType());
    if (supportsIndexPrefixSize() && isStringType(type)) {
        std::string size = field.getProperty(keys::indexSize);
        if (size.empty() && (type == "BLOB" || type == "TEXT")) size = "50";
        if (!size.empty()) sql += text("(%@)", size);
    }
    return sql + ")";
}

std::string GenericSQLExporter::indexSizeStringForField(SQLField& field, SQLIndex* index) {
    return useIndexPrefixSize() && index ? index->getSizeForIndexEntry(&field) : std::string();
}

std::string GenericSQLExporter::createIndexIfNotDuplicate(SQLTable& table, SQLIndex& index) {
    const bool isNew = _indexCache[table.uid()].insert(getNameForIndexWithIndex(table, index)).second;
    return isNew ? addIndex(index, table)
                 : text("/* (prefix indexes:ON) => Index %@ would conflict */", commentText(index.getName()));
}

std::string GenericSQLExporter::addIndex(SQLIndex& index) {
    SQLTable* table = index.parentTable();
    return table ? addIndex(index, *table) : std::string();
}

std::string GenericSQLExporter::addIndex(SQLIndex& index, SQLTable& table) {
    const std::string sql = export_(index);
    return sql.empty() ? sql : text("ALTER TABLE %@ ADD %@%@\n", getCanonicalName(table), sql, instructionSeparator());
}

std::string GenericSQLExporter::addConstraint(SQLIndex& constraint) {
    SQLTable* table = constraint.parentTable();
    return table ? addConstraint(constraint, *table) : std::string();
}

std::string GenericSQLExporter::addConstraint(SQLIndex& constraint, SQLTable& table) {
    return GenericSQLExporter::addIndex(constraint, table);
}

Statements GenericSQLExporter::postLoadAsVectorSQLTable(SQLTable& table) {
    Statements statements;
    Statements indexStatements;
    for (const auto& component : table.objectList()) {
        auto& target = as<SQLIndex>(component.get()) ? indexStatements : statements;
        std::ranges::move(postLoadAsVectorSQLTableComponent(*component, table), std::back_inserter(target));
    }
    std::ranges::move(indexStatements, std::back_inserter(statements));
    return statements;
}

Statements GenericSQLExporter::postLoadAsVectorSQLTableComponent(SQLTableComponent& component, SQLTable& table) {
    const bool answers = as<SQLIndex>(&component) || as<SQLField>(&component) || as<SQLForeignKey>(&component);
    return answers ? postLoadAsVector(component, table) : Statements();
}

Statements GenericSQLExporter::postLoadAsVectorSQLField(SQLField& field, SQLTable& table) {
    return {createFieldIndexOnField(field, table), createForeignKey(field, {.asExternalInstruction = true})};
}

Statements GenericSQLExporter::postLoadAsVectorSQLIndex(SQLIndex& index, SQLTable& table) {
    if (!supportsIndexPostLoad()) return {};
    return {createIndexIfNotDuplicate(table, index)};
}

Statements GenericSQLExporter::postLoadAsVectorSQLConstraint(SQLConstraint& constraint, SQLTable& table) {
    return constraint.isCheckConstraint() ? Statements() : postLoadAsVectorSQLIndex(constraint, table);
}

Statements GenericSQLExporter::postLoadAsVectorSQLForeignKey(SQLForeignKey& foreignKey, SQLTable&) {
    std::string sql = foreignKeyStatement(foreignKey);
    return sql.empty() ? Statements() : Statements{std::move(sql)};
}

}  // namespace vellicor
