// vellicor/export/generic_exporter_index.cpp — indexes inside CREATE TABLE and as statements behind it.
#include <algorithm>
#include <iterator>

#include "vellicor/export/generic_exporter_create.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string GenericCreateScript::exportSQLIndex(SQLIndex& index) {
    if (!indexesStandInTable()) return {};
    const std::vector<std::string> columns = quoteAllMembers(index.getFieldNameList());
    if (columns.empty()) return text("/* INDEX %@ (empty) */", getCanonicalName(index));
    return text("INDEX %@ (%@)", getCanonicalName(index), joined(columns, ","));
}

std::string GenericCreateScript::exportSQLConstraint(SQLConstraint& constraint) {
    if (!constraint.isCheckConstraint()) return exportSQLIndex(constraint);
    SourceNodePtr clause = inlineCheckConstraint(constraint);
    clause->setSpaceBefore("");
    return clause->string();
}

std::string GenericCreateScript::createFieldIndexOnField(SQLField& field, SQLTable& table) {
    if (!field.getPropertyAsBoolean(keys::indexed)) return {};
    std::string name = getIndexNameForFieldIndexed(field);
    if (shouldPrefixFieldLevelIndexNames()) {
        const std::string prefix = text("%@_", table.getBaseName());
        if (!name.starts_with(prefix)) name.insert(0, prefix);
    }
    return text("%@%@\n", createIndexStatement(field, nameForIndexStatement(table, name)), instructionSeparator());
}

std::string GenericCreateScript::createIndexStatement(SQLField& field, std::string_view indexName) {
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

std::string GenericCreateScript::indexSizeStringForField(SQLField& field, SQLIndex* index) {
    return useIndexPrefixSize() && index ? index->getSizeForIndexEntry(&field) : std::string();
}

std::string GenericCreateScript::createIndexIfNotDuplicate(SQLTable& table, SQLIndex& index) {
    const bool isNew = _indexCache[table.uid()].insert(getNameForIndexWithIndex(table, index)).second;
    return isNew ? addIndex(index, table)
                 : text("/* (prefix indexes:ON) => Index %@ would conflict */", commentText(index.getName()));
}

void GenericCreateScript::clearIndexCache() { _indexCache.clear(); }

std::string GenericCreateScript::indexTypeInScript(SQLIndex& index) {
    return std::string(trimmed(index.getIndexTypeString()));
}

std::string GenericCreateScript::addIndex(SQLIndex& index) {
    SQLTable* table = index.parentTable();
    return table ? addIndex(index, *table) : std::string();
}

std::string GenericCreateScript::addIndex(SQLIndex& index, SQLTable& table) {
    const std::string sql = export_(index);
    return sql.empty() ? sql : text("ALTER TABLE %@ ADD %@%@\n", getCanonicalName(table), sql, instructionSeparator());
}

std::string GenericCreateScript::addConstraint(SQLIndex& constraint) {
    SQLTable* table = constraint.parentTable();
    return table ? addConstraint(constraint, *table) : std::string();
}

std::string GenericCreateScript::addConstraint(SQLIndex& constraint, SQLTable& table) {
    return GenericCreateScript::addIndex(constraint, table);
}

Statements GenericCreateScript::postLoadAsVectorSQLTable(SQLTable& table) {
    Statements statements;
    Statements indexStatements;
    for (const auto& component : table.objectList()) {
        auto& target = as<SQLIndex>(component.get()) ? indexStatements : statements;
        std::ranges::move(postLoadAsVectorSQLTableComponent(*component, table), std::back_inserter(target));
    }
    std::ranges::move(indexStatements, std::back_inserter(statements));
    return statements;
}

Statements GenericCreateScript::postLoadAsVectorSQLTableComponent(SQLTableComponent& component, SQLTable& table) {
    const bool answers = as<SQLIndex>(&component) || as<SQLField>(&component) || as<SQLForeignKey>(&component);
    return answers ? postLoadAsVector(component, table) : Statements();
}

Statements GenericCreateScript::postLoadAsVectorSQLField(SQLField& field, SQLTable& table) {
    Statements statements{createFieldIndexOnField(field, table)};
    if (!keysStandInTable()) statements.push_back(createForeignKey(field, {.asExternalInstruction = true}));
    return statements;
}

Statements GenericCreateScript::postLoadAsVectorSQLIndex(SQLIndex& index, SQLTable& table) {
    if (!supportsIndexPostLoad()) return {};
    return {createIndexIfNotDuplicate(table, index)};
}

Statements GenericCreateScript::postLoadAsVectorSQLConstraint(SQLConstraint& constraint, SQLTable& table) {
    return constraint.isCheckConstraint() ? Statements() : postLoadAsVectorSQLIndex(constraint, table);
}

Statements GenericCreateScript::postLoadAsVectorSQLForeignKey(SQLForeignKey& foreignKey, SQLTable&) {
    if (keysStandInTable() || !supportsForeignKeys()) return {};
    std::string sql = foreignKeyStatement(foreignKey);
    return sql.empty() ? Statements() : Statements{std::move(sql)};
}

}  // namespace vellicor
