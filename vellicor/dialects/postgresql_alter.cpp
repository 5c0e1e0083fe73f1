// vellicor/dialects/postgresql_alter.cpp — PostgreSQL: comments as statements, and alter scripts.
#include <algorithm>

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
    if (!Preferences::shared().boolForKey(prefs::usePostgresComments)) return {};
    std::string_view kind;
    if (as<SQLField>(&object))
        kind = "COLUMN";
    else if (as<SQLTable>(&object))
        kind = writesRunnableScripts() && as<SQLView>(&object) ? "VIEW" : "TABLE";  // Kept: a view is a table first
    else
        return {};
    std::string name = getCanonicalName(object);
    if (auto* component = as<SQLTableComponent>(&object)) {
        SQLTable* table = component->parentTable();
        if (!table) return {};
        name = text("%@.%@", getCanonicalName(*table), name);
    }
    const std::string comment = object.getComment();
    if (writesRunnableScripts())
        return text("COMMENT ON %@ %@ is %@%@", kind, name, runnableTextLiteral(comment), instructionSeparator());
    return text("COMMENT ON %@ %@ is '%@'", kind, name, escapeQuoteCharacter(comment));
}

std::string PostgresqlExporter::alterPostgresComment(SQLObject& object, SQLObject* curObject) {
    if (curObject && curObject->getComment() == object.getComment()) return {};
    // An empty comment takes the old one away. Kept: in classic text it stays.
    return writesRunnableScripts() && curObject ? commentStatement(object) : postgresComment(object);
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
    // Kept: a column's comment comes twice, here and with the components.
    if (!writesRunnableScripts()) statements.push_back(postgresComment(field));
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
    const std::string primaryKey = alterPrimaryKey(field, curField);
    const std::string type = alterType(field, curField);
    const std::string notNull = alterNotNull(field, curField);
    const std::string value = alterDefault(field, curField);
    if (!writesRunnableScripts()) return {primaryKey, type, notNull, value, postgresComment(field)};
    // A changed comment comes once, behind the data.
    if (type.empty() || curField.getDefaultValue().empty() || field.getAutoIncrement())
        return {primaryKey, type, notNull, value};
    // The server would convert the old default too, and refuses where it cannot.
    return {primaryKey, alterColumnStatement(field, {"DROP DEFAULT"}), type, notNull,
            field.getDefaultValue().empty() ? "" : defaultStatement(field)};
}

std::string PostgresqlExporter::alterPrimaryKey(SQLField& field, SQLField& curField) {
    SQLTable* table = field.parentTable();
    SQLTable* curTable = curField.parentTable();
    if (writesRunnableScripts() && table && curTable) {
        // The key is the table's: the first column that stands in both tables writes it, once.
        const auto components = table->lockedFields();
        const auto first = std::ranges::find_if(*components, [&](const auto& component) {
            const auto* column = as<SQLField>(component.get());
            return column && curTable->getFieldByName(column->getName());
        });
        if (first != components->end() && first->get() != &field) return {};
    }
    return GenericSQLExporter::alterPrimaryKey(field, curField);
}

std::string PostgresqlExporter::alterType(SQLField& field, SQLField& curField) {
    if (!writesRunnableScripts()) return GenericSQLExporter::alterType(field, curField);
    const std::string type(trimmed(fieldType(field)));
    if (equalIgnoringCase(type, trimmed(fieldType(curField)))) return {};
    // Only texts take in values of every type by themselves. Cast explicitly, a value too long would be cut in silence.
    const std::string& word = field.getDataType();
    const bool converts = isTextType(word) || equalIgnoringCase(word, curField.getDataType());
    const std::string conversion = converts ? "" : text("USING %@::%@", quoteIdentifier(field.getName()), type);
    return alterColumnStatement(field, {"TYPE", type, conversion});
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
    // A column that has left the primary key still refuses null.
    const bool leftKey = writesRunnableScripts() && curField.getPrimaryKey() && !field.getPrimaryKey();
    if ((notNull == curField.getNotNull() && !(leftKey && !notNull)) || (field.getPrimaryKey() && !notNull)) return {};
    return alterColumnStatement(field, {notNull ? "SET" : "DROP", "NOT NULL"});
}

std::string PostgresqlExporter::alterDefault(SQLField& field, SQLField& curField) {
    const bool hasOwnDefault = writesRunnableScripts() && field.getAutoIncrement();
    if (hasOwnDefault || field.getDefaultValue() == curField.getDefaultValue()) return {};
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

std::string PostgresqlExporter::dropIndexInstruction(SQLTable& table, std::string_view quotedName) {
    const std::string schema(trimmed(schemaNameForTable(table)));
    return text("DROP INDEX %@%@%@", ifExists(), schema.empty() ? schema : quoteIdentifier(schema) + ".", quotedName);
}

std::string PostgresqlExporter::dropIndex(SQLField& field, SQLTable& table) {
    // Kept: in classic text an index is dropped as a part of its table, which the server does not know.
    if (!writesRunnableScripts()) return GenericSQLExporter::dropIndex(field, table);
    return text("%@%@\n", dropIndexInstruction(table, nameOfExistingIndex(field, table)), instructionSeparator());
}

std::string PostgresqlExporter::dropSQLIndex(SQLIndex& index) {
    SQLTable* table = index.parentTable();
    if (!writesRunnableScripts() || !table) return GenericSQLExporter::dropSQLIndex(index);
    if (uppercased(index.getIndexType()) != "UNIQUE") return dropIndexInstruction(*table, nameOfExistingIndex(index));
    // It was made as a constraint.
    const std::string name = quoteIdentifier(index.getName());
    return text("ALTER TABLE %@ DROP CONSTRAINT %@%@", getCanonicalName(*table), ifExists(), name);
}

std::string PostgresqlExporter::alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) {
    SQLTable* table = index.parentTable() ? index.parentTable() : oldIndex.parentTable();
    if (!writesRunnableScripts() || !table) return GenericSQLExporter::alterSQLIndex(index, oldIndex);
    return text("%@%@\n%@", dropSQLIndex(oldIndex), instructionSeparator(), addIndex(index, *table));
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
