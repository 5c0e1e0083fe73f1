// vellicor/export/generic_exporter_foreign_key.cpp — the clause of a foreign key and its ALTER TABLE statement.
#include <array>

#include "vellicor/export/generic_exporter_create.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

// Kept: the texts begin with a blank and are words themselves, so two blanks stand between the clauses.
constexpr std::array<std::string_view, 6> kDeleteActions{"",
                                                         " ON DELETE CASCADE",
                                                         " ON DELETE RESTRICT",
                                                         " ON DELETE SET NULL",
                                                         " ON DELETE NO ACTION",
                                                         " ON DELETE SET DEFAULT"};
constexpr std::array<std::string_view, 6> kUpdateActions{"",
                                                         " ON UPDATE CASCADE",
                                                         " ON UPDATE RESTRICT",
                                                         " ON UPDATE SET NULL",
                                                         " ON UPDATE NO ACTION",
                                                         " ON UPDATE SET DEFAULT"};

}  // namespace

std::string GenericCreateScript::getDeleteActionStringForCode(std::uint64_t code) {
    return std::string(code < kDeleteActions.size() ? kDeleteActions[code] : "");
}

std::string GenericCreateScript::getUpdateActionStringForCode(std::uint64_t code) {
    return std::string(code < kUpdateActions.size() ? kUpdateActions[code] : "");
}

std::string GenericCreateScript::exportSQLForeignKey(SQLForeignKey& key) {
    return keysStandInTable() ? getSQLForForeignKeyField(key) : std::string();
}

SourceNodePtr GenericCreateScript::foreignKeyNode(SQLConnectable* key) {
    auto node = QVSourceNode::node();
    SQLTable* target = key ? key->targetTable() : nullptr;
    if (!target) return node;
    node->setSpaceAfter(" ");
    if (addForeignKeyConstraintName()) node->addChild(foreignKeyConstraintNameNode(*key));
    node->addChildWithValue("FOREIGN KEY")->setElementId("#foreignKeyLabel");
    node->addChild(quotedNameList(key->sourceFieldNameList()));
    node->addChildWithValue("REFERENCES", " ", " ");
    node->addChildWithValue(getCanonicalName(*target));
    node->addChild(quotedNameList(key->targetFieldNameList()));
    node->addChildWithValue(getDeleteActionStringForCode(key->deleteAction()));
    node->addChildWithValue(getUpdateActionStringForCode(key->updateAction()));
    node->addChild(foreignKeyDeferredBlock(*key, nullptr))->setSpaceBefore(" ");
    return node;
}

SourceNodePtr GenericCreateScript::foreignKeyConstraintNameNode(SQLConnectable& key) {
    auto node = QVSourceNode::node();
    const OptionalText name = foreignKeyConstraintName(key);
    if (!name || name->empty()) return node;
    node->addChildWithValue("CONSTRAINT");
    node->addChildWithValue(quoteIdentifier(*name));
    node->setSpaceAfter(" ");
    return node;
}

OptionalText GenericCreateScript::foreignKeyConstraintName(SQLConnectable& key) { return key.foreignKeyName(); }

SourceNodePtr GenericCreateScript::foreignKeyDeferredBlock(SQLConnectable&, SQLConnectable*) {
    return QVSourceNode::node();
}

SourceNodePtr GenericCreateScript::foreignKeyAlterTableInstructionNode(SQLConnectable& key) {
    SQLTable* table = key.connectableComponent().parentTable();
    if (!table) return QVSourceNode::node();
    auto node = alterTableNode(*table, {"ADD"});
    node->addChild(foreignKeyNode(&key));
    node->setPostfixValue(instructionSeparator());
    node->setSpaceAfter("\n");
    return node;
}

SourceNodePtr GenericCreateScript::foreignKeyErrorNode(SQLConnectable& key, bool ignoreEmpty) {
    unsigned flags = 0;
    if (ignoreEmpty || key.isFKFieldValid(flags)) return nullptr;
    auto node = QVSourceNode::node();
    node->setPrefixValue("/*");
    node->setPostfixValue("*/");
    node->setInfixValue(",");
    node->setInfixSpaceAfter(" ");
    const SQLTable* table = key.connectableComponent().parentTable();
    const auto add = [&](const std::string& words) { node->addChildWithValue(commentText(words), ""); };
    add(text("Foreign Key %@ %@ not exportable", table ? table->getName() : std::string(), key.foreignKeyName()));
    if (flags & foreignKeyError::noColumns)
        add("No Columns Set");
    else if (flags & foreignKeyError::mismatchedColumns)
        add("Mismatched Columns");
    if (flags & foreignKeyError::noTargetTable) add("No Target Table");
    return node;
}

SourceNodePtr GenericCreateScript::getSQLForForeignKeyFieldNode(SQLConnectable& key, bool asExternalInstruction) {
    if (const SQLTable* target = key.targetTable(); target && !canLinkToObject(*target)) return QVSourceNode::node();
    if (SourceNodePtr error = foreignKeyErrorNode(key, false)) return error;
    return asExternalInstruction ? foreignKeyAlterTableInstructionNode(key) : foreignKeyNode(&key);
}

std::string GenericCreateScript::createForeignKey(SQLConnectable& key, ForeignKeyForm form) {
    if (!supportsForeignKeys() || !key.getFkField()) return {};
    return form.asExternalInstruction ? foreignKeyStatement(key) : nodeText(getSQLForForeignKeyFieldNode(key, false));
}

std::string GenericCreateScript::foreignKeyStatement(SQLConnectable& key) {
    return nodeText(getSQLForForeignKeyFieldNode(key, true));
}

}  // namespace vellicor
