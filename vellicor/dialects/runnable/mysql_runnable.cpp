// vellicor/dialects/runnable/mysql_runnable.cpp — what MySQL's scripts need, beyond the classic text, to run.
#include "vellicor/dialects/runnable/mysql_runnable.h"

#include <algorithm>

#include "vellicor/dialects/word_list.h"
#include "vellicor/export/sql_identifiers.h"

namespace vellicor {

namespace {

/// Reserved by servers of today too, MySQL's and MariaDB's.
constexpr std::string_view kFurtherMySqlWords[] = {"CUBE",
                                                   "CUME_DIST",
                                                   "CURRENT_ROLE",
                                                   "DELETE_DOMAIN_ID",
                                                   "DENSE_RANK",
                                                   "DO_DOMAIN_IDS",
                                                   "EMPTY",
                                                   "EXCEPT",
                                                   "FIRST_VALUE",
                                                   "FUNCTION",
                                                   "GENERATED",
                                                   "GROUPING",
                                                   "GROUPS",
                                                   "IGNORE_DOMAIN_IDS",
                                                   "INTERSECT",
                                                   "JSON_TABLE",
                                                   "LAG",
                                                   "LAST_VALUE",
                                                   "LATERAL",
                                                   "LEAD",
                                                   "MASTER_DEMOTE_TO_REPLICA",
                                                   "MASTER_DEMOTE_TO_SLAVE",
                                                   "NTH_VALUE",
                                                   "NTILE",
                                                   "OF",
                                                   "OFFSET",
                                                   "OPTIMIZER_COSTS",
                                                   "OVER",
                                                   "PAGE_CHECKSUM",
                                                   "PARSE_VCOL_EXPR",
                                                   "PERCENT_RANK",
                                                   "PORTION",
                                                   "RANK",
                                                   "RECURSIVE",
                                                   "REF_SYSTEM_ID",
                                                   "RETURNING",
                                                   "ROW",
                                                   "ROWS",
                                                   "ROW_NUMBER",
                                                   "STATS_AUTO_RECALC",
                                                   "STATS_PERSISTENT",
                                                   "STATS_SAMPLE_PAGES",
                                                   "STORED",
                                                   "SYSTEM",
                                                   "VIRTUAL",
                                                   "WINDOW"};
constexpr std::string_view kMySqlNumberTypes[] = {
    "BIT",    "BOOL",   "BOOLEAN", "TINYINT",          "SMALLINT", "MEDIUMINT", "INT", "INTEGER",
    "BIGINT", "REAL",   "DOUBLE",  "DOUBLE PRECISION", "FLOAT",    "DECIMAL",   "DEC", "NUMERIC",
    "FIXED",  "SERIAL", "YEAR"};
constexpr std::string_view kTypesWithPrefixSize[] = {"TINYBLOB", "BLOB", "MEDIUMBLOB", "LONGBLOB",
                                                     "TINYTEXT", "TEXT", "MEDIUMTEXT", "LONGTEXT"};
constexpr std::size_t kColumnCommentLimit = 1024;  // characters
constexpr std::size_t kTableCommentLimit = 2048;

bool isMySqlType(WordList types, std::string_view type) { return holds(types, uppercased(type)); }

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

// === answers

bool RunnableMySQLExporter::supportsIndexType(std::string_view type) const {
    return type == "UNIQUE" || type == "FULLTEXT" || type == "SPATIAL";
}

bool RunnableMySQLExporter::runsOnlyQuoted(std::string_view name) const {
    return isRefusedBare(name, containsWord(reservedWords(), name) || containsWord(kFurtherMySqlWords, name));
}

bool RunnableMySQLExporter::needsPrefixSize(std::string_view type) const {
    return isMySqlType(kTypesWithPrefixSize, type);
}

std::string RunnableMySQLExporter::withoutForeignKeyChecks(std::string_view statements) {
    return text("SET FOREIGN_KEY_CHECKS = 0%@\n%@SET FOREIGN_KEY_CHECKS = 1%@\n", instructionSeparator(), statements,
                instructionSeparator());
}

// === names, values, comments

OptionalText RunnableMySQLExporter::foreignKeyConstraintName(SQLConnectable& key) {
    const OptionalText name = RunnableExporter::foreignKeyConstraintName(key);
    // A database has one list for the names of its keys, a document one for each table.
    const bool mustDiffer = exportContainer() && name && !name->empty();
    return mustDiffer ? OptionalText(getUniqueForeignKeyName(*name)) : name;
}

std::string RunnableMySQLExporter::foreignKeyIndexName(SQLConnectable& key) {
    return quoteIdentifier(RunnableExporter::foreignKeyIndexName(key));
}

bool RunnableMySQLExporter::shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) {
    if (!GenericSQLExporter::shouldQuoteDefaultFieldValue(value, field)) return false;
    // Types that are neither texts nor numbers take expressions as well as values.
    if (isMySqlType(kMySqlNumberTypes, field.getDataType())) return false;
    return isStringType(field.getDataType()) || !isExpression(value);
}

std::string RunnableMySQLExporter::quoteDefaultValue(std::string_view value, SQLField& field) {
    const bool isBare = value != "''" && value != "'" && !shouldQuoteDefaultFieldValue(value, field);
    if (isBare && !isPresentTime(value)) return runnableExpression(value);
    return RunnableExporter::quoteDefaultValue(value, field);
}

std::string RunnableMySQLExporter::addDefaultQuotes(std::string_view value) {
    if (isMySQLLiteral(value)) return std::string(value);
    return replacingAll(runnableLiteral(value), "\\", "\\\\");
}

std::string RunnableMySQLExporter::formatComment(std::string_view comment, std::string_view type) {
    const std::size_t limit = type == "SQLTable" ? kTableCommentLimit : kColumnCommentLimit;
    return RunnableExporter::formatComment(firstCharacters(comment, limit), type);
}

std::string RunnableMySQLExporter::formatTableComment(const SQLTable& table) {
    return formatComment(table.getComment(), "SQLTable");
}

// === create script

SourceNodePtr RunnableMySQLExporter::fieldBlock(SQLTable& table) {
    auto node = RunnableExporter::fieldBlock(table);
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

SourceNodePtr RunnableMySQLExporter::primaryKeyBlock(SQLTable& table) {
    const SQLTable::Fields columns = table.primaryKeyObjectList();
    const auto isLong = [this](const SQLField* column) { return needsPrefixSize(column->getDataType()); };
    if (std::ranges::none_of(columns, isLong)) return RunnableExporter::primaryKeyBlock(table);
    auto node = QVSourceNode::node();
    node->addChildWithValue("PRIMARY KEY");
    auto list = node->addChild(QVSourceNode::bracketBlock());
    for (const SQLField* column : columns)
        list->addChildWithValue(quoteIdentifier(column->getName()) + (isLong(column) ? "(255)" : ""), "");
    return node;
}

bool RunnableMySQLExporter::fieldCanSupportDefaultValue(SQLField& field) const {
    const bool refusesNull = field.getNotNull() || field.getPrimaryKey();
    if (refusesNull && equalIgnoringCase(field.getDefaultValue(), "NULL")) return false;
    return RunnableExporter::fieldCanSupportDefaultValue(field);
}

// === alter script

std::string RunnableMySQLExporter::getIndexNameForFieldIndexed(SQLField& field) { return field.getName() + "_idx"; }

std::string RunnableMySQLExporter::columnIndexName(SQLTable& table, std::string_view name, const OptionalText& suffix) {
    return getNameForIndex(table, name, suffix, false);
}

std::string RunnableMySQLExporter::dropUniqueIndexInstruction(SQLTable& table, const std::string& indexName) {
    return text("ALTER TABLE %@ DROP INDEX %@", getCanonicalName(table), quoteIdentifier(indexName));
}

// The create script makes an index of what is unique.

std::string RunnableMySQLExporter::dropSQLConstraint(SQLConstraint& constraint) {
    return constraint.isCheckConstraint() ? RunnableExporter::dropSQLConstraint(constraint)
                                          : dropSQLIndexWithoutCheck(constraint);
}

std::string RunnableMySQLExporter::addSQLConstraint(SQLConstraint& constraint) {
    return constraint.isCheckConstraint() ? RunnableExporter::addSQLConstraint(constraint)
                                          : RunnableExporter::addIndex(constraint);
}

std::string RunnableMySQLExporter::keyToDrop(SQLConnectable& key) {
    const auto* object = as<SQLForeignKey>(&key);
    const std::string name = quoteIdentifier(object ? object->getName() : key.getReferenceId());
    return hasIndexOfItsOwn(key) ? text("%@, DROP INDEX %@", name, name) : name;
}

bool RunnableMySQLExporter::hasIndexOfItsOwn(SQLConnectable& key) {
    SQLTable* table = key.connectableComponent().parentTable();
    if (!table) return false;
    const std::vector<std::string> columns = key.sourceFieldNameList();
    const auto leads = [&](const std::vector<std::string>& indexed) {
        return indexed.size() >= columns.size() && std::equal(columns.begin(), columns.end(), indexed.begin());
    };
    bool isServed = leads(table->primaryKeyList());  // then the server makes no index for the key
    table->forEachComponent<SQLIndex>([&](SQLIndex& index) { isServed |= leads(index.getFieldNameList()); });
    table->forEachComponent<SQLField>([&](SQLField& column) {
        const bool isIndexed = column.isUnique() || column.getPropertyAsBoolean(keys::indexed);
        isServed |= (isIndexed || (column.getFkField() && &column != &key)) && leads({column.getName()});
    });
    table->forEachComponent<SQLForeignKey>(
        [&](SQLForeignKey& other) { isServed |= &other != &key && leads(other.sourceFieldNameList()); });
    return !isServed;
}

}  // namespace vellicor
