// vellicor/dialects/postgresql_exporter.cpp — PostgreSQL: types, names, values and the create script.
#include "vellicor/dialects/postgresql_exporter.h"

#include <algorithm>

#include "vellicor/dialects/word_list.h"
#include "vellicor/export/exporter_common.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::string_view kPostgresqlTypesWithSize[] = {"BIT VARYING", "VARBIT", "CHARACTER VARYING", "CHARACTER",
                                                         "VARCHAR",     "CHAR",   "INTERVAL",          "NUMERIC",
                                                         "DECIMAL",     "TIME",   "TIMESTAMP",         "TIMETZ"};
constexpr std::string_view kTypesWithTimeZone[] = {"TIMESTAMP", "TIME"};
constexpr std::string_view kQuotableDefaultTypes[] = {
    "CHARACTER VARYING", "CHARACTER", "VARCHAR", "CHAR", "VARBIT", "TEXT", "DATE",
    "TIMESTAMP",         "INTERVAL",  "TIME",    "MONEY"};
constexpr std::string_view kDefaultsNotQuoted[] = {"current_date", "current_timestamp", "current_time",
                                                   "localtime",    "localtimestamp",    "null"};
constexpr std::string_view kFunctionsWithPrecision[] = {"current_timestamp", "current_time", "localtime",
                                                        "localtimestamp"};

const RegularExpression& casePattern(bool quoteUppercase) {
    static const RegularExpression lowerCase(R"(^[\p{lowercase}_][\p{lowercase}\p{Mark}_0-9$]*$)");
    static const RegularExpression oneCase(
        R"((^[\p{uppercase}_][\p{uppercase}\p{Mark}_0-9$]*$)|(^[\p{lowercase}_][\p{lowercase}\p{Mark}_0-9$]*$))");
    return quoteUppercase ? lowerCase : oneCase;
}

/// Reads a text piece by piece, white space skipped before each; a piece that is not there leaves the place unchanged.
class ExpressionScanner {
public:
    explicit ExpressionScanner(std::string_view rest) : _rest(rest) {}
    std::string_view upTo(char stop) {
        skip();
        const std::string_view piece = _rest.substr(0, _rest.find(stop));
        _rest.remove_prefix(piece.size());
        return piece;
    }
    bool character(char c) {
        const std::string_view start = _rest;
        skip();
        if (_rest.starts_with(c)) return _rest.remove_prefix(1), true;
        return _rest = start, false;
    }
    bool integer() {
        const std::string_view start = _rest;
        skip();
        if (_rest.starts_with('-') || _rest.starts_with('+')) _rest.remove_prefix(1);
        const std::size_t digits = std::min(_rest.find_first_not_of("0123456789"), _rest.size());
        if (digits == 0) return _rest = start, false;
        return _rest.remove_prefix(digits), true;
    }
    bool isAtEnd() const { return trimmed(_rest).empty(); }

private:
    void skip() {
        _rest.remove_prefix(
            static_cast<std::size_t>(trimmed(_rest).empty() ? _rest.size() : trimmed(_rest).data() - _rest.data()));
    }
    std::string_view _rest;
};

}  // namespace

// === types

bool PostgresqlExporter::typeHasSize(std::string_view type) {
    return holds(kPostgresqlTypesWithSize, uppercased(type));
}

bool PostgresqlExporter::fieldTypeAllowsTimeZone(std::string_view type) {
    return holds(kTypesWithTimeZone, uppercased(trimmed(type)));
}

std::string PostgresqlExporter::fieldType(SQLField& field) {
    const std::string& stored = field.getDataType();
    std::string type = Preferences::shared().boolForKey(prefs::postgresTypesUppercase) ? uppercased(stored) : stored;
    if (writesSizeOf(stored) && field.hasTypeSize()) type += text("(%@)", field.getDataTypeSize());
    if (fieldTypeAllowsTimeZone(stored) && field.getPropertyAsBoolean(keys::timezone)) type += " WITH TIME ZONE ";
    return type;
}

// === names and values

bool PostgresqlExporter::objectNameRequiresQuoting(std::string_view name) {
    if (name.empty()) return false;
    if (quoteReservedWord(name)) return true;
    const Preferences& preferences = Preferences::shared();
    if (!preferences.boolForKey(prefs::autoQuoteIdentifiersWithInvalidCharacters)) return false;
    const RegularExpression& pattern =
        casePattern(preferences.boolForKey(prefs::postgresQuoteSolelyUppercaseIdentifiers));
    if (!pattern.error().empty()) {
        log(text("error in static regex (PostgresqlExporter): %@", pattern.error()));
        return false;
    }
    return !pattern.firstMatchCovers(name);
}

std::string PostgresqlExporter::schemaNameForTable(SQLTable& table) {
    if (std::string schema = table.getSchemaName(); !schema.empty()) return schema;
    return isJDBCExporter() && currentExporter() ? currentExporter()->schemaNameForExport() : std::string();
}

OptionalText PostgresqlExporter::primaryKeyConstraintName(SQLTable& table) {
    if (!table.hasProperty(keys::primaryKeyName)) return std::nullopt;
    const std::string name = table.getProperty(keys::primaryKeyName);
    return name.empty() ? text("%@_pkey", table.getBaseName()) : name;
}

std::string PostgresqlExporter::constraintName(SQLIndex& constraint) { return constraint.getName(); }

WordList PostgresqlExporter::defaultValuesNotQuotableForField(SQLField&) const { return kDefaultsNotQuoted; }

WordList PostgresqlExporter::defaultValuesRegularExpressionsNotQuotable() const { return kFunctionsWithPrecision; }

bool PostgresqlExporter::isBareDefault(std::string_view value, SQLField& field) const {
    return field.getPropertyAsBoolean(keys::noQuoteDefault) ||
           holds(defaultValuesNotQuotableForField(field), lowercased(value)) ||
           defaultMatchesRegexForField(field, value);
}

bool PostgresqlExporter::shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) {
    if (isBareDefault(value, field) || (value.starts_with('\'') && value.ends_with('\''))) return false;
    return holds(kQuotableDefaultTypes, uppercased(field.getDataType()));
}

bool PostgresqlExporter::defaultMatchesRegexForField(SQLField&, std::string_view defaultValue) const {
    ExpressionScanner scanner(defaultValue);
    const std::string_view function = scanner.upTo('(');
    if (function.empty() || !holds(defaultValuesRegularExpressionsNotQuotable(), lowercased(trimmed(function))))
        return false;
    if (scanner.character('(') && scanner.integer() && scanner.character(')')) return true;
    return scanner.isAtEnd();
}

std::string PostgresqlExporter::addDefaultQuotes(std::string_view value) {
    const std::string quote = getQuoteDefaultString();
    return quote + replacingAll(value, quote, text("\\%@", quote)) + quote;
}

// === create script

std::string PostgresqlExporter::exportSQLTable(SQLTable& table) {
    auto node = QVSourceNode::node();
    const std::string comment = table.getComment();
    if (!Preferences::shared().boolForKey(prefs::usePostgresComments) && !comment.empty())
        node->addChild(tableCommentBlock(comment));
    node->addChild(fieldBlock(table));
    node->addChild(tablePropertiesNode(table));
    node->addChildWithValue(instructionSeparator());
    node->setSpaceAfter("\n\n");
    return node->string();
}

SourceNodePtr PostgresqlExporter::tablePropertiesNode(SQLTable& table) {
    auto node = QVSourceNode::node();
    node->setSpaceBefore(" ");
    if (table.hasProperty(keys::tablespace))
        node->addChildWithValue(text("TABLESPACE %@", table.getProperty(keys::tablespace)));
    return node;
}

std::string PostgresqlExporter::exportSQLField(SQLField& field) {
    std::string type = fieldType(field);
    if (field.getAutoIncrement()) type = equalIgnoringCase(type, "bigint") ? "BIGSERIAL" : "SERIAL";
    std::string sql = quoteIdentifier(field.getName());
    sql += text(" %@", type);
    if (field.getNotNull()) sql += " NOT NULL";
    if (const std::string value = field.getDefaultValue(); !value.empty() && fieldCanSupportDefaultValue(field))
        sql += text(" DEFAULT %@", quoteDefaultValue(value, field));
    if (field.isUnique()) sql += " UNIQUE ";
    return sql + nodeText(inlineCheckConstraint(field));
}

std::string PostgresqlExporter::dropTable(SQLTable& table) {
    if (!documentInfo() || !documentInfo()->getDropTableOption()) return {};
    return text("\nDROP TABLE IF EXISTS %@ CASCADE;\n\n", getCanonicalName(table));
}

std::string PostgresqlExporter::dropTableInstruction(SQLTable& table) {
    return text("DROP TABLE IF EXISTS %@ CASCADE%@\n", getCanonicalName(table), instructionSeparator());
}

std::string PostgresqlExporter::getIndexKeyword(SQLIndex& index) {
    return as<SQLConstraint>(&index) ? "CONSTRAINT" : "INDEX";
}

std::string PostgresqlExporter::addIndex(SQLIndex& index, SQLTable& table) {
    if (uppercased(index.getIndexType()) == "UNIQUE") return addConstraint(index, table);
    return ExporterCommon::addIndex(index, table, *this);
}

std::string PostgresqlExporter::addConstraint(SQLIndex& constraint, SQLTable& table) {
    auto node = alterTableNode(table, {});
    node->addChild(addConstraintBlock(constraint));
    node->setPostfixValue(instructionSeparator());
    node->setSpaceAfter("\n");
    return node->string();
}

SourceNodePtr PostgresqlExporter::addConstraintBlock(SQLIndex& constraint) {
    if (constraint.isCheckConstraint()) {
        auto node = inlineCheckConstraint(constraint);  // Kept: its blank in front makes two behind the table's name
        node->insertChildValue("ADD", 0);
        node->addChild(constraintDeferrableBlock(constraint, nullptr));
        return node;
    }
    auto node = QVSourceNode::node();
    node->addChildWithValue("ADD CONSTRAINT");
    node->addChildWithValue(quoteIdentifier(constraintName(constraint)));
    node->addChildWithValue(constraint.getIndexType());
    node->addChild(quotedNameList(constraint.getFieldNameList()));
    node->addChild(constraintDeferrableBlock(constraint, nullptr));
    return node;
}

SourceNodePtr PostgresqlExporter::constraintDeferrableBlock(SQLIndex& constraint, SQLIndex* oldIndex) {
    auto node = QVSourceNode::node();
    node->setSpaceBefore(" ");
    const bool wasDeferrable = oldIndex && oldIndex->isDeferrable();
    if (constraint.isDeferrable())
        node->addChildWithValue("DEFERRABLE");
    else if (addExplicitDeferrable() || wasDeferrable)
        node->addChildWithValue("NOT DEFERRABLE");
    // Kept: the initial state is compared with whether the old constraint could be deferred at all.
    if (constraint.isInitiallyDeferred())
        node->addChildWithValue("INITIALLY DEFERRED");
    else if (wasDeferrable)
        node->addChildWithValue("INITIALLY IMMEDIATE");
    return node;
}

SourceNodePtr PostgresqlExporter::foreignKeyDeferredBlock(SQLConnectable& key, SQLConnectable* oldForeignKey) {
    auto node = QVSourceNode::node();
    if (key.linkIsDeferrable())
        node->addChildWithValue("DEFERRABLE");
    else if (addExplicitDeferrable() || (oldForeignKey && oldForeignKey->linkIsDeferrable()))
        node->addChildWithValue("NOT DEFERRABLE");
    if (key.linkIsInitiallyDeferred())
        node->addChildWithValue("INITIALLY DEFERRED");
    else if (oldForeignKey && oldForeignKey->linkIsInitiallyDeferred())
        node->addChildWithValue("INITIALLY IMMEDIATE");
    return node;
}

}  // namespace vellicor
