// vellicor/export/generic_exporter_table.cpp — CREATE TABLE: columns, inline components, primary key.
#include <algorithm>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

bool isCommentOnly(std::string_view sql) {
    sql = trimmed(sql);
    return sql.starts_with("/*") && sql.ends_with("*/") && sql.find("*/") + 2 == sql.size();
}

}  // namespace

std::string GenericSQLExporter::exportSQLTable(SQLTable& table) {
    if (std::string remark = missingColumnsRemark(table); !remark.empty()) return remark;
    auto node = QVSourceNode::node();
    if (const std::string comment = table.getComment(); !comment.empty()) node->addChild(tableCommentBlock(comment));
    node->addChild(fieldBlock(table));
    node->addChildWithValue(instructionSeparator());
    node->setSpaceAfter("\n\n");
    return node->string();
}

SourceNodePtr GenericSQLExporter::tableCommentBlock(std::string_view comment) const {
    auto block = QVSourceNode::commentBlockWithStringValue(commentText(comment));
    block->setSpaceBefore("\n");
    block->setSpaceAfter("\n");
    return block;
}

std::string GenericSQLExporter::getCreateTableString(SQLTable& table) {
    return "CREATE TABLE " + ifNotExists(supportsIfNotExists()) + getCanonicalName(table);
}

SQLTable::Components GenericSQLExporter::fieldListForTable(SQLTable& table) { return table.objectList(); }

SourceNodePtr GenericSQLExporter::fieldBlock(SQLTable& table) {
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
    std::string remarks;
    for (const auto& component : components) {
        const std::string sql = export_(*component);
        if (writesRunnableScripts() && isCommentOnly(sql)) {
            remarks += sql + "\n";  // an item of its own would leave a separator without an item
            continue;
        }
        auto item = QVSourceNode::node();
        if (!sql.empty()) {
            item->setValue(fieldComment(*component) + sql);
            item->setSpaceBefore(indent());
        }
        item->setRemoveInfixSeparator(isIgnoredTableComponent(*component));
        item->setObjectUid(component->uid());
        (as<SQLIndex>(component.get()) ? indexes : columns).push_back(std::move(item));
    }
    if (!remarks.empty()) list->setSpaceBeforeChildren("\n" + remarks);
    list->addChildren(columns);
    list->addChildren(indexes);
    if (components.empty()) list->addChildNode()->setAlwaysVisible(true);
    list->addChild(primaryKeyBlock(table))->setSpaceBefore(indent());
    return node;
}

std::string GenericSQLExporter::fieldComment(SQLTableComponent& component) {
    const std::string comment = component.getComment();
    return comment.empty() ? std::string() : text("\n%@\n", quoteComment(comment));
}

std::string GenericSQLExporter::quoteComment(std::string_view comment) const {
    const std::string_view content = trimmed(comment);
    return content.empty() ? std::string() : text("/*%@*/", commentText(content));
}

std::string GenericSQLExporter::commentText(std::string_view comment) const {
    if (!writesRunnableScripts()) return std::string(comment);
    // A comment may not end early: what follows would run as SQL. Nor may it open another, which some servers nest.
    std::string content = replacingAll(replacingAll(comment, "*/", "* /"), "/*", "/ *");
    if (content.ends_with('/')) content += ' ';
    return content;
}

bool GenericSQLExporter::isIgnoredTableComponent(SQLTableComponent& component) {
    const auto* index = as<SQLIndex>(&component);
    return index && !index->isCheckConstraint() && index->getFieldNameList().empty();
}

std::string GenericSQLExporter::exportSQLTableComponent(SQLTableComponent& component) {
    if (auto* index = as<SQLIndex>(&component)) return exportSQLIndex(*index);
    if (auto* field = as<SQLField>(&component)) return exportSQLField(*field);
    if (auto* foreignKey = as<SQLForeignKey>(&component)) return exportSQLForeignKey(*foreignKey);
    return {};
}

std::string GenericSQLExporter::exportSQLField(SQLField& field) {
    std::string sql = text("%@ %@", quoteIdentifier(field.getName()), fieldType(field));
    if (const std::string value = field.getDefaultValue(); !value.empty())
        sql += text(" DEFAULT %@", quoteDefaultValue(value, field));
    if (field.getNotNull()) sql += " NOT NULL";
    if (supportsInlineAutoIncrement() && field.getAutoIncrement()) sql += text(" %@ ", autoIncrementKeyword());
    if (field.isUnique()) sql += " UNIQUE ";
    return sql + nodeText(inlineCheckConstraint(field));
}

std::string GenericSQLExporter::fieldType(SQLField& field) { return uppercased(field.getType()); }

SourceNodePtr GenericSQLExporter::inlineCheckConstraint(SQLObject& object) {
    auto node = QVSourceNode::node();
    if (!supportsCheckConstraints() || !object.hasProperty(keys::checkConstraint)) return node;

    std::string name = object.getProperty(keys::checkConstraintName);
    if (as<SQLConstraint>(&object) && !object.getPropertyAsBoolean(keys::hideConstraintName)) name = object.getName();
    if (auto* component = as<SQLTableComponent>(&object); component && component->parentTable() && !name.empty())
        name = constraintNameInScript(*component->parentTable(), name);
    node->setSpaceBefore(" ");
    if (!name.empty()) {
        node->addChildWithValue("CONSTRAINT");
        node->addChildWithValue(quoteIdentifier(name));
    }
    node->addChildWithValue("CHECK");
    node->addChild(QVSourceNode::bracketBlock())->addChildWithValue(object.getProperty(keys::checkConstraint), "");
    return node;
}

SourceNodePtr GenericSQLExporter::primaryKeyBlock(SQLTable& table) {
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

OptionalText GenericSQLExporter::primaryKeyConstraintName(SQLTable& table) { return table.primaryKeyConstraintName(); }

}  // namespace vellicor
