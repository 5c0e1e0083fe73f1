// vellicor/dialects/mysql_exporter.cpp — MySQL: names, values and the create script.
#include "vellicor/dialects/mysql_exporter.h"

#include <algorithm>

#include "vellicor/export/sql_identifiers.h"
#include "vellicor/model/field.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::size_t kColumnCommentLimit = 1024;  // characters
constexpr std::size_t kTableCommentLimit = 2048;

std::string_view firstCharacters(std::string_view text, std::size_t limit) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80 && ++count > limit) return text.substr(0, i);
    return text;
}

/// "'…'" with quotes inside escaped in either way of MySQL.
bool isMySQLLiteral(std::string_view value) {
    if (value.size() < 2 || value.front() != '\'') return false;
    for (std::size_t i = 1; i < value.size(); ++i) {
        if (value[i] == '\\') {
            ++i;
        } else if (value[i] == '\'') {
            if (i + 1 == value.size()) return true;
            if (value[++i] != '\'') return false;
        }
    }
    return false;
}

}  // namespace

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
    if (!GenericSQLExporter::shouldQuoteDefaultFieldValue(value, field)) return false;
    if (!writesRunnableScripts()) return isQuotableType(field.getDataType());
    // Types that are neither texts nor numbers take expressions as well as values.
    if (isNumberType(field.getDataType())) return false;
    return isStringType(field.getDataType()) || !isExpression(value);
}

std::string MySQLExporter::addDefaultQuotes(std::string_view value) {
    if (!writesRunnableScripts()) return GenericSQLExporter::addDefaultQuotes(value);
    if (isMySQLLiteral(value)) return std::string(value);
    return replacingAll(runnableLiteral(value), "\\", "\\\\");
}

std::string MySQLExporter::quoteDefaultValue(std::string_view value, SQLField& field) {
    const std::string quote = getQuoteDefaultString();
    if (value == text("%@%@", quote, quote)) return std::string(value);
    if (value == quote) return text("%@\\%@%@", quote, quote, quote);
    if (shouldQuoteDefaultFieldValue(value, field)) return addDefaultQuotes(value);
    return writesRunnableScripts() && !isPresentTime(value) ? runnableExpression(value) : std::string(value);
}

std::string MySQLExporter::getDeleteActionStringForCode(std::uint64_t code) {
    if (code == action::setDefault) return {};
    if (code == action::restrict_) return " ON DELETE RESTRICT";
    return GenericSQLExporter::getDeleteActionStringForCode(code);
}

std::string MySQLExporter::getUpdateActionStringForCode(std::uint64_t code) {
    return GenericSQLExporter::getUpdateActionStringForCode(code == action::setDefault ? action::none : code);
}

std::string MySQLExporter::formatComment(std::string_view comment, std::string_view type) {
    if (!writesRunnableScripts()) return escapeQuoteCharacter(comment);
    return escapeQuoteCharacter(
        firstCharacters(comment, type == "SQLTable" ? kTableCommentLimit : kColumnCommentLimit));
}

// === create script

std::string MySQLExporter::exportSQLContainer(SQLContainer& container) {
    _fkIndexList.clear();
    _nextNumberForFkIndex.clear();
    return GenericSQLExporter::exportSQLContainer(container);
}

std::string MySQLExporter::exportSQLTable(SQLTable& table) {
    if (std::string remark = missingColumnsRemark(table); !remark.empty()) return remark;
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
    // Kept: a table's comment is escaped twice.
    addUnlessEmpty(table.getComment(), [this](const std::string& comment) {
        const std::string formatted = formatComment(comment, "SQLTable");
        return text("COMMENT='%@'", writesRunnableScripts() ? formatted : escapeQuoteCharacter(formatted));
    });
    if (table.hasProperty(keys::tableAutoIncrementStart))
        node->addChildWithValue(text("AUTO_INCREMENT=%@", table.getProperty(keys::tableAutoIncrementStart)));
    addUnlessEmpty(table.getProperty(keys::tableCharacterSet),
                   [](const std::string& set) { return text("CHARACTER SET=%@", set); });
    addUnlessEmpty(table.getProperty(keys::tableCollation),
                   [](const std::string& name) { return text("COLLATE=%@", name); });
    return node;
}

SourceNodePtr MySQLExporter::fieldBlock(SQLTable& table) {
    auto node = GenericSQLExporter::fieldBlock(table);
    if (!writesRunnableScripts()) return node;
    const SQLTable::Fields primaryKey = table.primaryKeyObjectList();
    for (const auto& component : table.objectList()) {
        auto* column = as<SQLField>(component.get());
        if (!column || !column->getAutoIncrement() || !fieldCanBeAutoIncrement(*column, nullptr)) continue;
        // The server wants it to lead an index from the start; the statements behind the table come too late.
        const bool leadsIndex = column->isUnique() || (!primaryKey.empty() && primaryKey.front() == column);
        if (!leadsIndex)
            node->childAtIndex(1)
                ->addChildWithValue(text("KEY (%@)", quoteIdentifier(column->getName())), "")
                ->setSpaceBefore(indent());
    }
    return node;
}

SourceNodePtr MySQLExporter::primaryKeyBlock(SQLTable& table) {
    const SQLTable::Fields columns = table.primaryKeyObjectList();
    const auto isLong = [](const SQLField* column) { return needsPrefixSize(column->getDataType()); };
    if (!writesRunnableScripts() || std::ranges::none_of(columns, isLong))
        return GenericSQLExporter::primaryKeyBlock(table);
    auto node = QVSourceNode::node();
    node->addChildWithValue("PRIMARY KEY");
    auto list = node->addChild(QVSourceNode::bracketBlock());
    for (const SQLField* column : columns)
        list->addChildWithValue(quoteIdentifier(column->getName()) + (isLong(column) ? "(255)" : ""), "");
    return node;
}

std::string MySQLExporter::withoutForeignKeyChecks(std::string_view statements) {
    return text("SET FOREIGN_KEY_CHECKS = 0%@\n%@SET FOREIGN_KEY_CHECKS = 1%@\n", instructionSeparator(), statements,
                instructionSeparator());
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
    const bool refusesNull = writesRunnableScripts() && (field.getNotNull() || field.getPrimaryKey());
    if (refusesNull && equalIgnoringCase(field.getDefaultValue(), "NULL")) return false;
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
