// vellicor/dialects/postgresql_alter.cpp — PostgreSQL: comments as statements, and alter scripts.
#include "vellicor/dialects/postgresql_exporter.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

// === comments as statements

std::string PostgresqlExporter::postgresComment(SQLObject& object) {
    return object.hasProperty(keys::objectComment) ? commentStatement(object) : std::string();
}

std::string PostgresqlExporter::commentStatement(SQLObject& object) {
    const std::string commented = commentedObject(object);
    if (commented.empty()) return {};
    return text("COMMENT ON %@ is '%@'", commented, escapeQuoteCharacter(object.getComment()));
}

std::string PostgresqlExporter::commentedObject(SQLObject& object) {
    if (!Preferences::shared().boolForKey(prefs::usePostgresComments)) return {};
    if (auto* table = as<SQLTable>(&object)) return text("%@ %@", kindOfTable(*table), getCanonicalName(*table));
    auto* field = as<SQLField>(&object);
    SQLTable* table = field ? field->parentTable() : nullptr;
    return table ? text("COLUMN %@.%@", getCanonicalName(*table), getCanonicalName(*field)) : std::string();
}

std::string PostgresqlExporter::alterPostgresComment(SQLObject& object, SQLObject* curObject) {
    // Kept: a comment that is gone stays.
    return curObject && curObject->getComment() == object.getComment() ? std::string() : postgresComment(object);
}

Statements PostgresqlExporter::postLoadAsVectorSQLTable(SQLTable& table) {
    Statements statements = GenericSQLExporter::postLoadAsVectorSQLTable(table);
    statements.push_back(postgresComment(table));
    return statements;
}

Statements PostgresqlExporter::postLoadAsVectorSQLTableComponent(SQLTableComponent& component, SQLTable& table) {
    Statements statements = GenericSQLExporter::postLoadAsVectorSQLTableComponent(component, table);
    statements.push_back(postgresComment(component));
    return statements;
}

Statements PostgresqlExporter::postLoadAsVectorSQLField(SQLField& field, SQLTable& table) {
    Statements statements = GenericSQLExporter::postLoadAsVectorSQLField(field, table);
    statements.push_back(postgresComment(field));  // Kept: it comes twice, here and with the components
    return statements;
}

Statements PostgresqlExporter::postLoadAlterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject* extra) {
    Statements statements = GenericSQLExporter::postLoadAlterSQLFieldAsVector(field, curField, extra);
    statements.push_back(alterPostgresComment(field, &curField));
    return statements;
}

// === alter script

Statements PostgresqlExporter::alterSQLTableAsVector(SQLTable& table, SQLTable& curTable, SQLObject*) {
    return {alterTablespace(table, curTable), alterPostgresComment(table, &curTable)};
}

std::string PostgresqlExporter::alterTablespace(SQLTable& table, SQLTable& curTable) {
    const std::string tablespace = table.getProperty(keys::tablespace);
    if (tablespace == curTable.getProperty(keys::tablespace)) return {};
    return text("ALTER TABLE %@ SET TABLESPACE \"%@\"", getCanonicalName(table), tablespace);
}

Statements PostgresqlExporter::alterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject*) {
    return {alterPrimaryKey(field, curField), alterType(field, curField), alterNotNull(field, curField),
            alterDefault(field, curField), postgresComment(field)};
}

std::string PostgresqlExporter::alterColumnStatement(SQLField& field, std::initializer_list<std::string_view> words) {
    SQLTable* table = field.parentTable();
    if (!table) return {};
    auto node = alterTableNode(*table, {"ALTER COLUMN"});
    node->addChildWithValue(quoteIdentifier(field.getName()));
    for (std::string_view word : words) node->addChildWithValue(word);
    return node->string();
}

std::string PostgresqlExporter::alterNotNull(SQLField& field, SQLField& curField) {
    const bool notNull = field.getNotNull();
    if (notNull == curField.getNotNull() || (field.getPrimaryKey() && !notNull)) return {};
    return alterColumnStatement(field, {notNull ? "SET" : "DROP", "NOT NULL"});
}

std::string PostgresqlExporter::alterDefault(SQLField& field, SQLField& curField) {
    if (!fieldCanSupportDefaultValue(field) || field.getDefaultValue() == curField.getDefaultValue()) return {};
    return defaultStatement(field);
}

std::string PostgresqlExporter::defaultStatement(SQLField& field) {
    const std::string value = field.getDefaultValue();
    if (value.empty()) return alterColumnStatement(field, {"DROP DEFAULT"});
    return alterColumnStatement(field, {"SET", "DEFAULT", quoteDefaultValue(value, field)});
}

SourceNodePtr PostgresqlExporter::dropPrimaryKeyInstruction(SQLTable& table) {
    if (!table.hasPrimaryKey()) return QVSourceNode::node();
    auto node = GenericSQLExporter::dropPrimaryKeyInstruction(table);
    node->addChildWithValue("CASCADE");
    return node;
}

std::string PostgresqlExporter::alterSQLConstraint(SQLConstraint& constraint, SQLConstraint& oldConstraint) {
    SQLTable* table = oldConstraint.parentTable();
    if (!table) return {};
    auto node = alterTableNode(*table, {});
    auto changes = node->addChildNode();
    changes->setInfixValue(",");
    changes->setInfixSpaceAfter(" ");
    auto drop = changes->addChildNode();
    drop->addChildWithValue("DROP CONSTRAINT");
    drop->addChildWithValue(quoteIdentifier(oldConstraint.getName()));
    changes->addChild(addConstraintBlock(constraint));
    node->setPostfixValue(instructionSeparator());
    node->setSpaceAfter("\n");
    return node->string();
}

std::string PostgresqlExporter::dropForeignKey(SQLConnectable& key) { return GenericSQLExporter::dropForeignKey(key); }

std::string PostgresqlExporter::dropForeignKey(SQLTable& table, SQLConnectable& key) {
    return text("ALTER TABLE %@ DROP CONSTRAINT %@", getCanonicalName(table), key.getReferenceId());
}

std::string PostgresqlExporter::changeOwnerToCurrent(SQLObject& object) {
    if (!as<SQLTable>(&object) && as<SQLView>(&object)) return {};  // Kept: a view is a table, so this never holds
    return text("ALTER TABLE %@ OWNER TO current_user", getCanonicalName(object));
}

}  // namespace vellicor
