// vellicor/export/generic_exporter_alter.cpp — from an old table to a new one: columns, indexes, constraints.
#include "vellicor/export/generic_exporter_alter.h"

#include "vellicor/export/exporter_common.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// "{key = value; key = value}", for the log.
std::string propertiesText(const SQLObject& object) {
    std::string list;
    for (const auto& [key, value] : object.propertiesAsDictionary())
        list += text("%@%@ = %@", list.empty() ? "" : "; ", key, value.text());
    return text("{%@}", list);
}

SQLTable& tableOf(SQLTableComponent& component) {
    if (SQLTable* table = component.parentTable()) return *table;
    throw AssertionFailure("component should stand in a table");
}

}  // namespace

std::string GenericAlterScript::alter(SQLObject& object, SQLObject& oldObject) {
    auto* table = as<SQLTable>(&object);
    auto* oldTable = as<SQLTable>(&oldObject);
    if (!table || !oldTable) return {};
    Statements statements = alterSQLTableAsVector(*table, *oldTable, nullptr);
    std::erase(statements, "");
    return joined(statements, ";\n");
}

Statements GenericAlterScript::alterSQLTableAsVector(SQLTable&, SQLTable&, SQLObject*) { return {}; }

Statements GenericAlterScript::alterSQLFieldAsVector(SQLField& field, SQLField& oldField, SQLObject*) {
    return {alterType(field, oldField)};
}

std::string GenericAlterScript::alterType(SQLField& field, SQLField& oldField) {
    const std::string type = field.getType();
    if (type == oldField.getType()) return {};
    const std::string column = quoteIdentifier(field.getName());
    return text("ALTER TABLE %@ ALTER COLUMN %@ TYPE %@", canonicalTableName(field), column, type);
}

std::string GenericAlterScript::addColumn(SQLField& field) {
    return text("ALTER TABLE %@ ADD COLUMN %@", canonicalTableName(field), export_(field));
}

std::string GenericAlterScript::addField(SQLField& field, SQLTable& table) {
    return text("ALTER TABLE %@ ADD COLUMN %@ %@\n", getCanonicalName(table), export_(field), instructionSeparator());
}

std::string GenericAlterScript::dropSQLField(SQLField& field) {
    return text("ALTER TABLE %@ DROP COLUMN %@", canonicalTableName(field), quoteIdentifier(field.getName()));
}

std::string GenericAlterScript::dropSQLIndex(SQLIndex& index) {
    return text("DROP INDEX %@", nameOfExistingIndex(index));
}

std::string GenericAlterScript::nameOfExistingIndex(SQLIndex& index) { return quoteIdentifier(index.getName()); }

std::string GenericAlterScript::alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) {
    log("alter index called");
    std::string sql = text("ALTER TABLE %@", canonicalTableName(oldIndex));
    sql += text(" DROP %@ %@", getIndexKeyword(oldIndex), nameOfExistingIndex(oldIndex));
    if (SQLTable* table = index.parentTable() ? index.parentTable() : oldIndex.parentTable()) {
        const IndexStatementForm form{.addSeparator = false, .addCreateInstruction = false, .withTableName = false};
        const std::string added = ExporterCommon::addIndex(index, *table, *this, form);
        if (!added.empty()) sql += text(", ADD %@", added);
    }
    return sql + text("%@\n", instructionSeparator());
}

std::string GenericAlterScript::alterSQLConstraint(SQLConstraint&, SQLConstraint&) {
    log(text("unsupported alterSQLConstraint for exporter %@", getName()));
    return {};
}

SourceNodePtr GenericAlterScript::dropSQLConstraintAsNode(SQLConstraint& constraint) {
    auto node = QVSourceNode::node();
    node->addChildWithValue("ALTER TABLE");
    node->addChildWithValue(canonicalTableName(constraint));
    node->addChildWithValue("DROP CONSTRAINT");
    node->addChildWithValue(quoteIdentifier(constraint.getName()));
    return node;
}

std::string GenericAlterScript::dropSQLConstraint(SQLConstraint& constraint) {
    return nodeText(dropSQLConstraintAsNode(constraint));
}

SourceNodePtr GenericAlterScript::addSQLConstraintAsNode(SQLConstraint& constraint) {
    auto node = QVSourceNode::node();
    node->addChildWithValue("ALTER TABLE");
    node->addChildWithValue(canonicalTableName(constraint));
    node->addChildWithValue("ADD");
    if (constraint.isCheckConstraint()) {
        node->addChild(inlineCheckConstraint(constraint));  // Kept: it begins with a blank of its own
        return node;
    }
    if (const std::string name = constraint.getName(); !name.empty()) {
        node->addChildWithValue("CONSTRAINT");
        node->addChildWithValue(quoteIdentifier(name));
    }
    node->addChildWithValue("UNIQUE");
    node->addChild(quotedNameList(constraint.getFieldNameList()));
    return node;
}

std::string GenericAlterScript::addSQLConstraint(SQLConstraint& constraint) {
    return nodeText(addSQLConstraintAsNode(constraint));
}

Statements GenericAlterScript::postLoadAlterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject*) {
    return alterIndexedProperty(field, curField);
}

Statements GenericAlterScript::alterIndexedProperty(SQLField& field, SQLField& curField) {
    const bool indexed = field.getPropertyAsBoolean(keys::indexed);
    if (indexed == curField.getPropertyAsBoolean(keys::indexed)) return {};
    try {
        SQLTable& curTable = tableOf(curField);
        if (!indexed) {
            if (!canDropIndexedProperty(curField, field)) return {};
            log(text("|| DROPPING indexed property %@ ", field.getName()));
            return {dropIndex(curField, curTable)};
        }
        log("[INDEXED FIELD] checking for index existance");
        SQLTable& table = tableOf(field);
        std::string name = prefixForIndexedProperty(field);
        name += getNameForIndex(table, field.getName(), "_idx", false);
        if (curTable.getFieldByTypeAndName(isKindOf<SQLIndex>, name)) return {};
        log(text("[INDEXED FIELD] Adding Index %@", name));
        return {createFieldIndexOnField(field, table)};
    } catch (const std::exception&) {
        log("Export Error: missing index object");
        return {};
    }
}

bool GenericAlterScript::canDropIndexedProperty(SQLField& curField, SQLField&) {
    const std::string name = curField.getProperty(keys::indexedKeyName);
    const SQLIndex* index = nullptr;
    if (const SQLTable* table = curField.parentTable(); table && !name.empty())
        index = as<SQLIndex>(table->getFieldByTypeAndName(isKindOf<SQLIndex>, name));
    const bool canDrop = !index || !index->indexContainsField(curField);
    log(text("canDropIndex = %@", canDrop ? "YES" : "NO"));
    return canDrop;
}

std::string GenericAlterScript::dropIndex(SQLField& field, SQLTable& table) {
    const std::string name = nameOfExistingIndex(field, table);
    return text("ALTER TABLE %@ DROP INDEX %@%@\n", getCanonicalName(table), name, instructionSeparator());
}

std::string GenericAlterScript::nameOfExistingIndex(SQLField& field, SQLTable& table) {
    const bool isNamed = field.hasProperty(keys::indexedKeyName);  // Kept: a name that is there but empty is a name
    const std::string name =
        isNamed ? quoteIdentifier(field.getProperty(keys::indexedKeyName)) : fieldIndexName(field, table);
    logDropIndexName(name, field);
    return name;
}

void GenericAlterScript::logDropIndexName(std::string_view indexName, const SQLField& field) {
    log(text("dropIndexName = %@ %@", indexName, propertiesText(field)));
}

std::string GenericAlterScript::fieldIndexName(SQLField& field, SQLTable& table) {
    std::string name = getIndexNameForFieldIndexed(field);
    if (shouldPrefixFieldLevelIndexNames()) {
        const std::string prefix = text("%@_", table.getBaseName());
        if (!name.starts_with(prefix)) name.insert(0, prefix);
    }
    return getNameForIndex(table, name);
}

}  // namespace vellicor
