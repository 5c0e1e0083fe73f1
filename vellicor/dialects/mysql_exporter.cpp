// vellicor/dialects/mysql_exporter.cpp — MySQL: names, values and the create script.
#include "vellicor/dialects/mysql_exporter.h"

#include "vellicor/model/field.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

void MySQLExporter::init() {
    GenericSQLExporter::init();
    _fkIndexList.clear();
}

// === names and values

bool MySQLExporter::objectNameRequiresQuoting(std::string_view name) {
    static const RegularExpression digits("[0-9]+");
    static const RegularExpression allowed("[a-zA-Z0-9$_\\u0080-\\uFFFF]+");
    if (name.empty()) return false;
    if (quoteReservedWord(name)) return true;
    if (!Preferences::shared().boolForKey(prefs::autoQuoteIdentifiersWithInvalidCharacters)) return false;
    for (const RegularExpression* pattern : {&digits, &allowed}) {
        if (pattern->error().empty()) continue;
        log(text("error in static regex: %@", pattern->error()));
        return false;
    }
    return digits.firstMatchCovers(name) || !allowed.firstMatchCovers(name);
}

bool MySQLExporter::shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) {
    return GenericSQLExporter::shouldQuoteDefaultFieldValue(value, field) && isQuotableType(field.getDataType());
}

std::string MySQLExporter::quoteDefaultValue(std::string_view value, SQLField& field) {
    const std::string quote = getQuoteDefaultString();
    if (value == text("%@%@", quote, quote)) return std::string(value);
    if (value == quote) return text("%@\\%@%@", quote, quote, quote);
    return shouldQuoteDefaultFieldValue(value, field) ? addDefaultQuotes(value) : std::string(value);
}

std::string MySQLExporter::getDeleteActionStringForCode(std::uint64_t code) {
    if (code == action::setDefault) return {};
    if (code == action::restrict_) return " ON DELETE RESTRICT";
    return GenericSQLExporter::getDeleteActionStringForCode(code);
}

std::string MySQLExporter::getUpdateActionStringForCode(std::uint64_t code) {
    return GenericSQLExporter::getUpdateActionStringForCode(code == action::setDefault ? action::none : code);
}

std::string MySQLExporter::formatComment(std::string_view comment, std::string_view) {
    return escapeQuoteCharacter(comment);
}

std::string MySQLExporter::formatTableComment(const SQLTable& table) {
    return escapeQuoteCharacter(formatComment(table.getComment(), "SQLTable"));
}

// === create script

std::string MySQLExporter::exportSQLContainer(SQLContainer& container) {
    _fkIndexList.clear();
    _nextNumberForFkIndex.clear();
    return GenericSQLExporter::exportSQLContainer(container);
}

std::string MySQLExporter::exportSQLTable(SQLTable& table) {
    auto node = QVSourceNode::node();
    node->addChild(fieldBlock(table));
    node->addChild(tablePropertiesNode(table));
    node->addChildWithValue(instructionSeparator());
    node->setSpaceAfter("\n\n");
    return node->string();
}

SourceNodePtr MySQLExporter::tablePropertiesNode(SQLTable& table) {
    auto node = QVSourceNode::node();
    node->setSpaceBefore(" ");
    const auto addUnlessEmpty = [&](const std::string& value, auto form) {
        if (!value.empty()) node->addChildWithValue(form(value));
    };
    addUnlessEmpty(table.getTableType(), [](const std::string& engine) { return text("ENGINE=%@", engine); });
    addUnlessEmpty(formatTableComment(table), [](const std::string& comment) { return text("COMMENT='%@'", comment); });
    if (table.hasProperty(keys::tableAutoIncrementStart))
        node->addChildWithValue(text("AUTO_INCREMENT=%@", table.getProperty(keys::tableAutoIncrementStart)));
    addUnlessEmpty(table.getProperty(keys::tableCharacterSet),
                   [](const std::string& set) { return text("CHARACTER SET=%@", set); });
    addUnlessEmpty(table.getProperty(keys::tableCollation),
                   [](const std::string& name) { return text("COLLATE=%@", name); });
    return node;
}

std::string MySQLExporter::exportSQLField(SQLField& field, SQLField* compareWith) {
    std::string sql = text("%@ %@", quoteIdentifier(field.getName()), fieldType(field));
    if (field.getNotNull() || (compareWith && field.getPrimaryKey()))
        sql += " NOT NULL";
    else if (shouldDisplayNULL(field))
        sql += " NULL ";
    if (const std::string value = field.getDefaultValue(); !value.empty() && fieldCanSupportDefaultValue(field))
        sql += text(" DEFAULT %@", quoteDefaultValue(value, field));
    if (field.getDataType() == "TIMESTAMP" && field.hasProperty(keys::onUpdateFieldValue))
        sql += text(" ON UPDATE %@", quoteDefaultValue(field.getProperty(keys::onUpdateFieldValue), field));
    if (field.getAutoIncrement() && fieldCanBeAutoIncrement(field, compareWith)) sql += " AUTO_INCREMENT";
    if (field.isUnique() && !(compareWith && compareWith->isUnique())) sql += " UNIQUE ";
    if (const std::string comment = field.getComment(); !comment.empty())
        sql += text(" COMMENT '%@'", formatComment(comment, "SQLField"));
    return sql;
}

bool MySQLExporter::shouldDisplayNULL(SQLField& field) const {
    return equalIgnoringCase(field.getDataType(), "TIMESTAMP") && equalIgnoringCase(field.getDefaultValue(), "NULL");
}

bool MySQLExporter::fieldCanSupportDefaultValue(SQLField& field) const {
    const std::string type = uppercased(field.getType());
    return !field.getAutoIncrement() && type != "TEXT" && type != "BLOB";
}

bool MySQLExporter::fieldIsFirstAutoIncrement(SQLField& field) const {
    const SQLTable* table = field.parentTable();
    if (!table) return true;
    const auto components = table->lockedFields();
    for (const auto& component : *components) {
        const auto* column = as<SQLField>(component.get());
        if (!column || !column->getAutoIncrement()) continue;
        if (column == &field) return true;
        if (column->getPrimaryKey() || table->fieldIsIndexed(*column)) return false;
    }
    return true;
}

bool MySQLExporter::fieldCanBeAutoIncrement(SQLField& field, SQLField* compareWith) const {
    const auto isKeyOrIndexed = [](const SQLField& column) {
        const SQLTable* table = column.parentTable();
        return column.getPrimaryKey() || (table && table->fieldIsIndexed(column));
    };
    return fieldIsFirstAutoIncrement(field) && isKeyOrIndexed(field) && (!compareWith || isKeyOrIndexed(*compareWith));
}

std::string MySQLExporter::viewCreateStringPart(std::string_view name) {
    return text("CREATE OR REPLACE VIEW %@ ", name);
}

std::string MySQLExporter::dropTableInstruction(SQLTable& table) {
    return text("\nDROP TABLE IF EXISTS %@%@\n", getCanonicalName(table), instructionSeparator());
}

}  // namespace vellicor
