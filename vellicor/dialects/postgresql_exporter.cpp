// vellicor/dialects/postgresql_exporter.cpp — PostgreSQL: types, names, values and the create script.
#include "vellicor/dialects/postgresql_exporter.h"

#include <algorithm>

#include "vellicor/dialects/word_list.h"
#include "vellicor/export/exporter_common.h"
#include "vellicor/export/sql_identifiers.h"
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
/// Classic text drops their sizes, which gives the server types of other sizes.
constexpr std::string_view kFurtherTypesWithSize[] = {
    "BIT", "BPCHAR", "NCHAR", "NATIONAL CHARACTER", "NATIONAL CHARACTER VARYING", "CHAR VARYING", "DEC", "TIMESTAMPTZ"};
constexpr std::string_view kTextTypes[] = {"CHARACTER VARYING",
                                           "CHARACTER",
                                           "VARCHAR",
                                           "CHAR",
                                           "TEXT",
                                           "BPCHAR",
                                           "NCHAR",
                                           "CITEXT",
                                           "NAME",
                                           "NATIONAL CHARACTER",
                                           "NATIONAL CHARACTER VARYING",
                                           "CHAR VARYING"};
constexpr std::string_view kPostgresqlNumberTypes[] = {
    "SMALLINT", "INTEGER",          "INT",   "BIGINT", "INT2",   "INT4",   "INT8",      "DECIMAL",    "NUMERIC", "DEC",
    "REAL",     "DOUBLE PRECISION", "FLOAT", "FLOAT4", "FLOAT8", "SERIAL", "BIGSERIAL", "SMALLSERIAL"};
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

bool PostgresqlExporter::isTextType(std::string_view type) { return holds(kTextTypes, uppercased(type)); }

bool PostgresqlExporter::typeHasSize(std::string_view type) {
    return holds(kPostgresqlTypesWithSize, uppercased(type));
}

bool PostgresqlExporter::fieldTypeAllowsTimeZone(std::string_view type) {
    return holds(kTypesWithTimeZone, uppercased(trimmed(type)));
}

std::string PostgresqlExporter::fieldType(SQLField& field) {
    const std::string& stored = field.getDataType();
    std::string type = Preferences::shared().boolForKey(prefs::postgresTypesUppercase) ? uppercased(stored) : stored;
    const bool hasSize =
        typeHasSize(stored) || (writesRunnableScripts() && holds(kFurtherTypesWithSize, uppercased(stored)));
    if (hasSize && field.hasTypeSize()) type += text("(%@)", field.getDataTypeSize());
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
    const std::string defaultName = text("%@_pkey", table.getBaseName());
    if (!table.hasProperty(keys::primaryKeyName)) {
        // Kept: a key that was never named has no name, and the word CONSTRAINT stands alone, which no server accepts.
        return writesRunnableScripts() ? OptionalText(nameOfKeyInScript(table, defaultName)) : std::nullopt;
    }
    const std::string name = table.getProperty(keys::primaryKeyName);
    return nameOfKeyInScript(table, name.empty() ? defaultName : name);
}

std::string PostgresqlExporter::indexNameInScript(SQLTable& table, std::string_view name) {
    return nameInScript(schemaNameForTable(table), name);
}

std::string PostgresqlExporter::constraintNameInScript(SQLTable& table, std::string_view name) {
    return nameInScript(table.getName() + "\tconstraints", name);
}

std::string PostgresqlExporter::nameOfKeyInScript(SQLTable& table, std::string_view name) {
    return constraintNameInScript(table, indexNameInScript(table, name));
}

OptionalText PostgresqlExporter::foreignKeyConstraintName(SQLConnectable& key) {
    const OptionalText name = GenericSQLExporter::foreignKeyConstraintName(key);
    SQLTable* table = key.connectableComponent().parentTable();
    return table && name && !name->empty() ? OptionalText(constraintNameInScript(*table, *name)) : name;
}

WordList PostgresqlExporter::defaultValuesNotQuotableForField(SQLField&) const { return kDefaultsNotQuoted; }

WordList PostgresqlExporter::defaultValuesRegularExpressionsNotQuotable() const { return kFunctionsWithPrecision; }

bool PostgresqlExporter::shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) {
    if (field.getPropertyAsBoolean(keys::noQuoteDefault)) return false;
    if (holds(defaultValuesNotQuotableForField(field), lowercased(value)) || defaultMatchesRegexForField(field, value))
        return false;
    const std::string type = uppercased(field.getDataType());
    if (writesRunnableScripts()) {
        if (isTextLiteral(value) || holds(kPostgresqlNumberTypes, type)) return false;
        // Other types take expressions as well as values.
        return holds(kTextTypes, type) ? !value.starts_with('\'') || !isExpression(value) : !isExpression(value);
    }
    if (value.starts_with('\'') && value.ends_with('\'')) return false;
    return holds(kQuotableDefaultTypes, type);
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
    if (writesRunnableScripts()) return runnableLiteral(value);
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
    // A serial type brings a default of its own, and the server takes only one.
    const bool hasOwnDefault = writesRunnableScripts() && field.getAutoIncrement();
    if (const std::string value = field.getDefaultValue(); !value.empty() && !hasOwnDefault)
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
    return as<SQLConstraint>(&index) && !writesRunnableScripts() ? "CONSTRAINT" : "INDEX";
}

std::string PostgresqlExporter::addIndex(SQLIndex& index, SQLTable& table) {
    const bool isRemark = writesRunnableScripts() && index.indexListCount() == 0;
    if (uppercased(index.getIndexType()) == "UNIQUE" && !isRemark) return addConstraint(index, table);
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
    std::string name = constraint.getName();
    if (SQLTable* table = constraint.parentTable()) name = nameOfKeyInScript(*table, name);
    node->addChildWithValue(quoteIdentifier(name));
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
