// vellicor/dialects/runnable/postgresql_runnable.cpp — what scripts of PostgreSQL and Redshift need to run.
#include "vellicor/dialects/runnable/postgresql_runnable.h"

#include <algorithm>

#include "vellicor/dialects/word_list.h"
#include "vellicor/export/exporter_common.h"
#include "vellicor/export/sql_identifiers.h"
#include "vellicor/model/view.h"

namespace vellicor {

namespace {

/// Reserved by servers of today too.
constexpr std::string_view kFurtherPostgresqlWords[] = {"LATERAL", "TABLESAMPLE"};
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

bool isPostgresqlType(WordList types, std::string_view type) { return holds(types, uppercased(type)); }

}  // namespace

// === answers

template <class Classic>
bool RunnablePostgresql<Classic>::runsOnlyQuoted(std::string_view name) const {
    // The server folds a bare name to lower case; checks, views and later statements that quote it would not find it.
    if (std::ranges::any_of(name, [](char c) { return c >= 'A' && c <= 'Z'; })) return true;
    return isRefusedBare(
        name, this->containsWord(this->reservedWords(), name) || this->containsWord(kFurtherPostgresqlWords, name));
}

template <class Classic>
bool RunnablePostgresql<Classic>::writesSizeOf(std::string_view type) {
    return this->typeHasSize(type) || isPostgresqlType(kFurtherTypesWithSize, type);
}

// === names

template <class Classic>
OptionalText RunnablePostgresql<Classic>::primaryKeyConstraintName(SQLTable& table) {
    const OptionalText name = Base::primaryKeyConstraintName(table);
    return nameOfKey(table, name ? *name : text("%@_pkey", table.getBaseName()));
}

template <class Classic>
OptionalText RunnablePostgresql<Classic>::foreignKeyConstraintName(SQLConnectable& key) {
    const OptionalText name = Base::foreignKeyConstraintName(key);
    SQLTable* table = key.connectableComponent().parentTable();
    return table && name && !name->empty() ? OptionalText(constraintNameInScript(*table, *name)) : name;
}

template <class Classic>
std::string RunnablePostgresql<Classic>::constraintName(SQLIndex& constraint) {
    SQLTable* table = constraint.parentTable();
    return table ? nameOfKey(*table, constraint.getName()) : Base::constraintName(constraint);
}

template <class Classic>
std::string RunnablePostgresql<Classic>::indexNameInScript(SQLTable& table, std::string_view name) {
    return this->nameInScript(this->schemaNameForTable(table), name);
}

template <class Classic>
std::string RunnablePostgresql<Classic>::constraintNameInScript(SQLTable& table, std::string_view name) {
    return this->nameInScript(table.getName() + "\tconstraints", name);
}

template <class Classic>
std::string RunnablePostgresql<Classic>::nameOfKey(SQLTable& table, std::string_view name) {
    return constraintNameInScript(table, indexNameInScript(table, name));
}

template <class Classic>
void RunnablePostgresql<Classic>::reserveTableName(RunnableRun& run, SQLTable& table) {
    (void)run.freeName(this->schemaNameForTable(table), table.getBaseName());
}

// === values and comments

template <class Classic>
bool RunnablePostgresql<Classic>::shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) {
    const std::string& type = field.getDataType();
    if (this->isBareDefault(value, field) || isTextLiteral(value) || isPostgresqlType(kPostgresqlNumberTypes, type))
        return false;
    // Other types take expressions as well as values.
    return isPostgresqlType(kTextTypes, type) ? !value.starts_with('\'') || !isExpression(value) : !isExpression(value);
}

template <class Classic>
bool RunnablePostgresql<Classic>::fieldCanSupportDefaultValue(SQLField& field) const {
    return !field.getAutoIncrement();
}

template <class Classic>
std::string RunnablePostgresql<Classic>::commentStatement(SQLObject& object) {
    const std::string commented = this->commentedObject(object);
    if (commented.empty()) return {};
    return text("COMMENT ON %@ is %@%@", commented, runnableTextLiteral(object.getComment()),
                this->instructionSeparator());
}

template <class Classic>
std::string_view RunnablePostgresql<Classic>::kindOfTable(SQLTable& table) const {
    return as<SQLView>(&table) ? "VIEW" : "TABLE";
}

// === create script

template <class Classic>
std::string RunnablePostgresql<Classic>::addIndex(SQLIndex& index, SQLTable& table) {
    const bool isRemark = index.indexListCount() == 0;  // which no constraint can be
    return isRemark ? ExporterCommon::addIndex(index, table, *this) : Base::addIndex(index, table);
}

template <class Classic>
Statements RunnablePostgresql<Classic>::postLoadAsVectorSQLField(SQLField& field, SQLTable& table) {
    return GenericSQLExporter::postLoadAsVectorSQLField(field, table);  // its comment comes with the components
}

// === alter script

template <class Classic>
Statements RunnablePostgresql<Classic>::alterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject*) {
    const std::string primaryKey = alterPrimaryKey(field, curField);
    const std::string type = alterType(field, curField);
    const std::string notNull = alterNotNull(field, curField);
    // A changed comment comes once, behind the data.
    if (type.empty() || curField.getDefaultValue().empty() || field.getAutoIncrement())
        return {primaryKey, type, notNull, this->alterDefault(field, curField)};
    // The server would convert the old default too, and refuses where it cannot.
    return {primaryKey, this->alterColumnStatement(field, {"DROP DEFAULT"}), type, notNull,
            field.getDefaultValue().empty() ? "" : this->defaultStatement(field)};
}

template <class Classic>
std::string RunnablePostgresql<Classic>::alterPrimaryKey(SQLField& field, SQLField& curField) {
    SQLTable* table = field.parentTable();
    SQLTable* curTable = curField.parentTable();
    if (table && curTable) {
        // The key is the table's: the first column that stands in both tables writes it, once.
        const auto components = table->lockedFields();
        const auto first = std::ranges::find_if(*components, [&](const auto& component) {
            const auto* column = as<SQLField>(component.get());
            return column && curTable->getFieldByName(column->getName());
        });
        if (first != components->end() && first->get() != &field) return {};
    }
    return Base::alterPrimaryKey(field, curField);
}

template <class Classic>
std::string RunnablePostgresql<Classic>::alterType(SQLField& field, SQLField& curField) {
    const std::string written = this->fieldType(field);
    const std::string_view type = trimmed(written);
    if (equalIgnoringCase(type, trimmed(this->fieldType(curField)))) return {};
    // Only texts take in values of every type by themselves. Cast explicitly, a value too long would be cut in silence.
    const std::string& word = field.getDataType();
    const bool converts = isPostgresqlType(kTextTypes, word) || equalIgnoringCase(word, curField.getDataType());
    const std::string column = this->quoteIdentifier(field.getName());
    return this->alterColumnStatement(field, {"TYPE", type, converts ? "" : text("USING %@::%@", column, type)});
}

template <class Classic>
std::string RunnablePostgresql<Classic>::alterNotNull(SQLField& field, SQLField& curField) {
    // A column that has left the primary key still refuses null.
    const bool leftKey = curField.getPrimaryKey() && !field.getPrimaryKey();
    const bool staysNullable = !field.getNotNull() && !curField.getNotNull();
    return leftKey && staysNullable ? this->alterColumnStatement(field, {"DROP", "NOT NULL"})
                                    : Base::alterNotNull(field, curField);
}

template <class Classic>
std::string RunnablePostgresql<Classic>::alterPostgresComment(SQLObject& object, SQLObject* curObject) {
    if (curObject && curObject->getComment() == object.getComment()) return {};
    return curObject ? commentStatement(object) : this->postgresComment(object);  // an empty one takes the old one away
}

template <class Classic>
std::string RunnablePostgresql<Classic>::dropIndexInstruction(SQLTable& table, std::string_view quotedName) {
    const std::string schema(trimmed(this->schemaNameForTable(table)));
    return text("DROP INDEX %@%@%@", this->ifExists(), schema.empty() ? schema : this->quoteIdentifier(schema) + ".",
                quotedName);
}

template <class Classic>
std::string RunnablePostgresql<Classic>::dropIndex(SQLField& field, SQLTable& table) {
    const std::string name = this->nameOfExistingIndex(field, table);
    return text("%@%@\n", dropIndexInstruction(table, name), this->instructionSeparator());
}

template <class Classic>
std::string RunnablePostgresql<Classic>::dropSQLIndex(SQLIndex& index) {
    SQLTable* table = index.parentTable();
    if (!table) return Base::dropSQLIndex(index);
    if (uppercased(index.getIndexType()) != "UNIQUE")
        return dropIndexInstruction(*table, this->nameOfExistingIndex(index));
    // It was made as a constraint.
    const std::string name = this->quoteIdentifier(index.getName());
    return text("ALTER TABLE %@ DROP CONSTRAINT %@%@", this->getCanonicalName(*table), this->ifExists(), name);
}

template <class Classic>
std::string RunnablePostgresql<Classic>::alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) {
    SQLTable* table = index.parentTable() ? index.parentTable() : oldIndex.parentTable();
    if (!table) return Base::alterSQLIndex(index, oldIndex);
    return text("%@%@\n%@", dropSQLIndex(oldIndex), this->instructionSeparator(), addIndex(index, *table));
}

template class RunnablePostgresql<PostgresqlExporter>;
template class RunnablePostgresql<RedshiftExporter>;

}  // namespace vellicor
