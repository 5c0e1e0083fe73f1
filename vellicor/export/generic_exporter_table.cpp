// vellicor/export/generic_exporter_table.cpp — CREATE TABLE: columns, inline components, primary key.
#include "vellicor/export/generic_exporter_create.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string GenericCreateScript::exportSQLTable(SQLTable& table) {
    auto node = QVSourceNode::node();
    if (const std::string comment = table.getComment(); !comment.empty()) node->addChild(tableCommentBlock(comment));
    node->addChild(fieldBlock(table));
    node->addChildWithValue(instructionSeparator());
    node->setSpaceAfter("\n\n");
    return node->string();
}

SourceNodePtr GenericCreateScript::tableCommentBlock(std::string_view comment) const {
    auto block = QVSourceNode::commentBlockWithStringValue(commentText(comment));
    block->setSpaceBefore("\n");
    block->setSpaceAfter("\n");
    return block;
}

std::string GenericCreateScript::getCreateTableString(SQLTable& table) {
    return "CREATE TABLE " + ifNotExists(supportsIfNotExists()) + getCanonicalName(table);
}

SQLTable::Components GenericCreateScript::fieldListForTable(SQLTable& table) { return table.objectList(); }

SourceNodePtr GenericCreateScript::fieldBlock(SQLTable& table) {
    auto node = QVSourceNode::node();
    node->addChildWithValue(getCreateTableString(table), "\n");

    auto list = node->addChild(QVSourceNode::bracketBlock());
    list->setAlwaysVisible(true);
    list->setTrimChildren(false);
    list->setSpaceBeforeChildren("\n");
    list->setInfixValue(",");
    list->setInfixSpaceAfter("\n");

    const SQLTable::Components components = fieldListForTable(table);
    QVSourceNode::Children columns;
    QVSourceNode::Children indexes;
    for (const auto& component : components)
        if (SourceNodePtr item = componentItem(*component, export_(*component)))
            (as<SQLIndex>(component.get()) ? indexes : columns).push_back(std::move(item));
    list->addChildren(columns);
    list->addChildren(indexes);
    if (components.empty()) list->addChildNode()->setAlwaysVisible(true);
    list->addChild(primaryKeyBlock(table))->setSpaceBefore(indent());
    return node;
}

SourceNodePtr GenericCreateScript::componentItem(SQLTableComponent& component, const std::string& sql) {
    auto item = QVSourceNode::node();
    if (!sql.empty()) {
        item->setValue(fieldComment(component) + sql);
        item->setSpaceBefore(indent());
    }
    item->setRemoveInfixSeparator(isIgnoredTableComponent(component));
    item->setObjectUid(component.uid());
    return item;
}

std::string GenericCreateScript::fieldComment(SQLTableComponent& component) {
    const std::string comment = component.getComment();
    return comment.empty() ? std::string() : text("\n%@\n", quoteComment(comment));
}

bool GenericCreateScript::isIgnoredTableComponent(SQLTableComponent& component) {
    const auto* index = as<SQLIndex>(&component);
    return index && !index->isCheckConstraint() && index->getFieldNameList().empty();
}

std::string GenericCreateScript::exportSQLTableComponent(SQLTableComponent& component) {
    if (auto* index = as<SQLIndex>(&component)) return exportSQLIndex(*index);
    if (auto* field = as<SQLField>(&component)) return exportSQLField(*field);
    if (auto* foreignKey = as<SQLForeignKey>(&component)) return exportSQLForeignKey(*foreignKey);
    return {};
}

std::string GenericCreateScript::exportSQLField(SQLField& field) {
    std::string sql = text("%@ %@", quoteIdentifier(field.getName()), fieldType(field));
    if (const std::string value = field.getDefaultValue(); !value.empty())
        sql += text(" DEFAULT %@", quoteDefaultValue(value, field));
    if (field.getNotNull()) sql += " NOT NULL";
    if (supportsInlineAutoIncrement() && field.getAutoIncrement()) sql += text(" %@ ", autoIncrementKeyword());
    if (field.isUnique()) sql += " UNIQUE ";
    return sql + nodeText(inlineCheckConstraint(field));
}

std::string GenericCreateScript::fieldType(SQLField& field) { return uppercased(field.getType()); }

SourceNodePtr GenericCreateScript::inlineCheckConstraint(SQLObject& object) {
    auto node = QVSourceNode::node();
    if (!supportsCheckConstraints() || !object.hasProperty(keys::checkConstraint)) return node;

    const std::string name = checkConstraintName(object);
    node->setSpaceBefore(" ");
    if (!name.empty()) {
        node->addChildWithValue("CONSTRAINT");
        node->addChildWithValue(quoteIdentifier(name));
    }
    node->addChildWithValue("CHECK");
    node->addChild(QVSourceNode::bracketBlock())->addChildWithValue(object.getProperty(keys::checkConstraint), "");
    return node;
}

std::string GenericCreateScript::checkConstraintName(SQLObject& object) {
    const bool isNamed = as<SQLConstraint>(&object) && !object.getPropertyAsBoolean(keys::hideConstraintName);
    return isNamed ? object.getName() : object.getProperty(keys::checkConstraintName);
}

SourceNodePtr GenericCreateScript::primaryKeyBlock(SQLTable& table) {
    auto node = QVSourceNode::node();
    const std::vector<std::string> columns = table.primaryKeyList();
    if (columns.empty()) return node;
    if (usePrimaryKeyConstraintName()) {
        node->addChildWithValue("CONSTRAINT");  // Kept: the word stays where the key has no name
        if (const OptionalText name = primaryKeyConstraintName(table); name && !name->empty())
            node->addChildWithValue(quoteIdentifier(*name));
    }
    node->addChildWithValue("PRIMARY KEY");
    node->addChild(quotedNameList(columns));
    return node;
}

OptionalText GenericCreateScript::primaryKeyConstraintName(SQLTable& table) { return table.primaryKeyConstraintName(); }

}  // namespace vellicor
