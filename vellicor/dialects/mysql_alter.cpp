// vellicor/dialects/mysql_alter.cpp — MySQL: alter scripts.
#include <algorithm>

#include "vellicor/dialects/mysql_exporter.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// BOOL is the server's other name for TINYINT. Kept: the words must be spelt in capitals.
bool isBoolForTinyint(const SQLField& field, const SQLField& databaseField) {
    return field.getDataType() == "BOOL" && databaseField.getDataType() == "TINYINT";
}

}  // namespace

Statements MySQLExporter::alterSQLTableAsVector(SQLTable& table, SQLTable& databaseTable, SQLObject*) {
    return {alterTableEngine(table, databaseTable), alterTableComment(table, databaseTable),
            alterAutoIncrement(table, databaseTable)};
}

std::string MySQLExporter::alterTableEngine(SQLTable& table, SQLTable& existingTable) {
    const std::string& engine = table.getTableType();
    if (engine.empty() || equalIgnoringCase(engine, existingTable.getTableType())) return {};
    return text("ALTER TABLE %@ ENGINE = %@", getCanonicalName(existingTable), engine);
}

std::string MySQLExporter::alterTableComment(SQLTable& table, SQLTable& existingTable) {
    const std::string comment = formatTableComment(table);
    if (comment == formatTableComment(existingTable)) return {};
    return text("ALTER TABLE %@ COMMENT = '%@'", getCanonicalName(existingTable), comment);
}

std::string MySQLExporter::alterAutoIncrement(SQLTable& table, SQLTable& curTable) {
    SQLField* last = nullptr;
    for (const auto& component : table.objectList())
        if (auto* field = as<SQLField>(component.get()); field && field->getAutoIncrement()) last = field;
    SQLField* current = last ? curTable.getFieldByName(last->getName()) : nullptr;
    if (!current || current->getPrimaryKey() || curTable.fieldIsIndexed(*current)) return {};
    return text("ALTER TABLE %@ CHANGE %@ %@", getCanonicalName(table), quoteIdentifier(last->getName()),
                exportSQLField(*last, last));
}

SourceNodePtr MySQLExporter::alterPrimaryKeyForTable(SQLTable& table, SQLTable& databaseTable) {
    if (table.primaryKeyList() == databaseTable.primaryKeyList()) return QVSourceNode::node();
    auto node = alterTableNode(table, {});
    auto changes = node->addChildNode();
    changes->setInfixValue(", ");
    if (databaseTable.hasPrimaryKey()) changes->addChildWithValue("DROP PRIMARY KEY", "");
    if (table.hasPrimaryKey()) {
        auto add = changes->addChildNode();
        add->addChildWithValue("ADD");
        add->addChild(primaryKeyBlock(table));
    }
    node->setPostfixValue(";");
    return node;
}

Statements MySQLExporter::alterSQLFieldAsVector(SQLField& field, SQLField& databaseField, SQLObject*) {
    return {alterColumnSpecification(field, databaseField), alterUniqueConstraint(field, databaseField)};
}

/// Whether the column changes, given whether its type or size already counted as a change.
bool MySQLExporter::columnChanges(SQLField& field, SQLField& databaseField, bool typeDiffers) {
    const std::string databaseDefinition = exportSQLField(databaseField, &field);
    const std::string definition = exportSQLField(field, &databaseField);
    if (definition == databaseDefinition) return typeDiffers;

    // The new column as it would read with another type or size. The copy stands in no table: there the column itself
    // would count as an earlier one with AUTO_INCREMENT.
    const auto definitionOfVariant = [&](auto change) {
        auto variant = copyOf(field);
        change(*variant);
        return exportSQLField(*variant, &databaseField);
    };
    const auto ofSize = [&](SQLField& variant) { variant.setTypeSize(databaseField.getDataTypeSize()); };
    const auto ofType = [&](SQLField& variant) { variant.setType(databaseField.getFullTypeString()); };
    bool changes = true;
    if (Preferences::shared().boolForKey(prefs::preventTypeSizeUpdateWhenNil) && field.getDataTypeSize().empty())
        changes = typeDiffers || definitionOfVariant(ofSize) != databaseDefinition;
    if (isBoolForTinyint(field, databaseField) && definitionOfVariant(ofType) == databaseDefinition) {
        log("type types are synonymous (not modified)");
        changes = false;  // whatever else differed was the size of one of the synonyms
    }
    log(text("%@ <-|-> %@", definition, databaseDefinition));
    return changes;
}

std::string MySQLExporter::alterColumnSpecification(SQLField& field, SQLField& databaseField) {
    const bool sameType = field.getDataType() == databaseField.getDataType();
    const bool typeDiffers = !sameType && !isBoolForTinyint(field, databaseField);
    const bool sizeDiffers =
        field.getDataTypeSize() != databaseField.getDataTypeSize() && !field.getDataTypeSize().empty();
    const bool changed = columnChanges(field, databaseField, typeDiffers || sizeDiffers);
    return changed || shouldAlterColumnComment(field, databaseField) ? alterColumnInstruction(field, databaseField)
                                                                     : std::string();
}

std::string MySQLExporter::alterColumnInstruction(SQLField& field, SQLField& databaseField) {
    SQLTable* table = field.parentTable();
    if (!table) return {};
    return text("ALTER TABLE %@ CHANGE %@ %@", getCanonicalName(*table), quoteIdentifier(databaseField.getName()),
                exportSQLField(field, &databaseField));
}

bool MySQLExporter::shouldAlterColumnComment(SQLField& field, SQLField& databaseField) const {
    return field.getComment() != databaseField.getComment();
}

std::string MySQLExporter::alterUniqueConstraint(SQLField& field, SQLField& dbField) {
    SQLTable* table = dbField.parentTable();
    if (!table || field.isUnique() || !dbField.isUnique()) return {};
    if (!dbField.connectedObjects().empty() && !table->fieldIsIndexedNotUnique(dbField)) return {};
    std::string indexName = dbField.getProperty(keys::uniqueIndexName);
    if (indexName.empty()) indexName = dbField.getName();
    const bool isLive = currentExporter() != nullptr;
    if (indexName.empty()) {
        if (isLive) log("NOTE: dropIndexInstruction = nil");
        return text("/* want to drop unique index on %@, but don't know constrant name*/",
                    commentText(table->getName()));
    }
    const std::string instruction = dropUniqueIndexInstruction(*table, indexName);
    if (isLive) log(text("C1 - DropIndexInstruction = %@", instruction));
    return instruction;
}

std::string MySQLExporter::dropUniqueIndexInstruction(SQLTable& table, const std::string& indexName) {
    return text("ALTER TABLE %@ DROP INDEX %@", table.getName(), indexName);
}

Statements MySQLExporter::postLoadAlterSQLFieldAsVector(SQLField& field, SQLField& databaseField, SQLObject* extra) {
    Statements statements;
    const int difference = foreignKeyMatches(field, databaseField);
    SQLExportDialect* live = currentExporter().get();
    SQLTable* table = field.parentTable();
    if ((difference == 2 || difference == 3) && table && live && live->className() == "JDBCExportMySQL") {
        const std::string name = text("%@_%@", table->getBaseName(), getForeignKeyFieldIndexName(field));
        const auto* existing = as<SQLIndex>(table->getFieldByTypeAndName(isKindOf<SQLIndex>, name));
        const bool isIndexed = field.hasProperty(keys::unique) || field.hasProperty(keys::indexed) ||
                               (existing && existing->indexContainsField(field));
        if (!field.getPrimaryKey() && !isIndexed && !live->indexExistsNamed(*table, name)) {
            log("Adding fk Index ");
            statements.push_back(setIndex(field, nullptr));
        }
    }
    for (std::string& statement : GenericSQLExporter::postLoadAlterSQLFieldAsVector(field, databaseField, extra))
        statements.push_back(std::move(statement));
    return statements;
}

bool MySQLExporter::canDropIndex(SQLIndex& index) {
    if (currentExporter() && currentExporter()->indexExists(index)) return true;
    const SQLTable* table = index.parentTable();
    const SQLField* field = table ? table->getFieldByName(index.getName()) : nullptr;
    return field && field->isUnique();
}

std::string MySQLExporter::dropSQLIndex(SQLIndex& index) {
    if (canDropIndex(index)) return dropSQLIndexWithoutCheck(index);
    log(text("attempting to drop index that does not exist %@", index.getName()));
    return {};
}

std::string MySQLExporter::dropSQLIndexWithoutCheck(SQLIndex& index) {
    SQLTable* table = index.parentTable();
    if (!table) return {};
    return text("ALTER TABLE %@ DROP INDEX %@", getCanonicalName(*table), nameOfExistingIndex(index));
}

std::string MySQLExporter::dropSQLForeignKey(SQLForeignKey& key) {
    SQLTable* table = key.parentTable();
    if (!table || wasDropped(key)) return {};
    markDropped(key);
    auto node = alterTableNode(*table, {"DROP", "FOREIGN KEY"});
    node->addChildWithValue(keyToDrop(key));
    return node->string();
}

std::string MySQLExporter::dropForeignKey(SQLConnectable& key) {
    SQLTable* table = key.connectableComponent().parentTable();
    if (!table || wasDropped(key)) return {};
    if (key.getReferenceId().empty()) return unknownForeignKeyComment(key, key.connectableComponent().getName());
    markDropped(key);
    return text("ALTER TABLE %@ DROP FOREIGN KEY %@", getCanonicalName(*table), keyToDrop(key));
}

std::string MySQLExporter::keyToDrop(SQLConnectable& key) {
    const auto* object = as<SQLForeignKey>(&key);
    return object ? quoteIdentifier(object->getName()) : key.getReferenceId();
}

}  // namespace vellicor
