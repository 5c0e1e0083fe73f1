// vellicor/dialects/sql_server_exporter.cpp — SQL Server.
#include "vellicor/dialects/sql_server_exporter.h"

#include <algorithm>

#include "vellicor/dialects/column_changes.h"
#include "vellicor/dialects/word_list.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::string_view kSqlServerTypesWithSize[] = {"DATETIME2", "DATETIMEOFFSET", "TIME",   "DECIMAL",
                                                        "NUMERIC",   "FLOAT",          "BINARY", "VARBINARY",
                                                        "CHAR",      "VARCHAR",        "NCHAR",  "NVARCHAR"};
constexpr std::string_view kSqlServerTypesWithoutSize[] = {"BIT",         "DATE",     "DATETIME", "REAL",  "MONEY",
                                                           "SMALL MONEY", "NTEXT",    "TEXT",     "IMAGE", "INT",
                                                           "BIGINT",      "SMALLINT", "TINYINT"};

}  // namespace

WordList SQLServerExporter::typesWithSize() { return kSqlServerTypesWithSize; }
WordList SQLServerExporter::typesWithoutSize() { return kSqlServerTypesWithoutSize; }

bool SQLServerExporter::typeHasSize(std::string_view type) {
    const std::string word = uppercased(type);
    return holds(typesWithSize(), word) || holds(typesWithEntries(), word) || !holds(typesWithoutSize(), word);
}

std::string SQLServerExporter::fieldType(SQLField& field) {
    return typeHasSize(field.getDataType()) ? field.getFullTypeString() : uppercased(field.getDataType());
}

std::string SQLServerExporter::getIndexKeyword(SQLIndex& index) {
    return as<SQLConstraint>(&index) ? "CONSTRAINT" : "INDEX";
}

bool SQLServerExporter::checkIndexValid(SQLIndex& index) {
    return !as<SQLConstraint>(&index) || index.getIndexType() == "UNIQUE" || index.getIndexType() == "CHECK";
}

std::string SQLServerExporter::nullOrNotString(SQLField& field) {
    if (field.getNotNull() || field.getPrimaryKey()) return " NOT NULL";
    return Preferences::shared().boolForKey(prefs::sqlServerAddNullable) ? " NULL" : "";
}

SourceNodePtr SQLServerExporter::primaryKeyBlock(SQLTable& table) {
    auto node = QVSourceNode::node();
    node->setInfixValue(",");
    node->setInfixSpaceAfter("\n");
    node->addChild(GenericSQLExporter::primaryKeyBlock(table));
    for (const auto& component : table.objectList()) {
        auto* field = as<SQLField>(component.get());
        if (!field || !field->isUnique()) continue;
        std::string name = text("%@_%@_unique", table.getBaseName(), field->getName());
        if (const std::string schema = table.getSchemaName(); !schema.empty()) name.insert(0, text("%@_", schema));
        std::erase(name, ' ');
        auto constraint = node->addChildNode();
        constraint->addChildWithValue("CONSTRAINT");
        constraint->addChildWithValue(quoteIdentifier(name));
        constraint->addChildWithValue("UNIQUE");
        constraint->addChild(quotedNameList({field->getName()}));
    }
    return node;
}

std::string SQLServerExporter::addColumn(SQLField& field) {
    SQLTable* table = field.parentTable();
    return table ? text("ALTER TABLE %@ ADD %@", getCanonicalName(*table), export_(field)) : std::string();
}

std::string SQLServerExporter::dropSQLIndex(SQLIndex& index) {
    SQLTable* table = index.parentTable();
    if (!table) return {};
    return text("DROP INDEX %@ ON %@", quoteIdentifier(index.getName()), quoteIdentifier(table->getName()));
}

std::string SQLServerExporter::dropPrimaryKeyInstruction(SQLTable& table, const OptionalText& constraintName) {
    if (!table.hasPrimaryKey()) return {};
    const std::string canonicalName = getCanonicalName(table);
    const std::string name(trimmed(constraintName.value_or(std::string())));
    const std::string instruction = text("ALTER TABLE %@ DROP CONSTRAINT %@", canonicalName, quoteIdentifier(name));
    if (!name.empty()) return instruction;
    if (Preferences::shared().boolForKey(prefs::sqlServerFindPKNameForDrop)) {
        return text(
            "/* (need to discover primary key name first) */\nDECLARE @SQL VARCHAR(4000);\nSET @SQL = 'ALTER TABLE %@ "
            "DROP CONSTRAINT |ConstraintName| ;'\nSET @SQL = REPLACE(@SQL, '|ConstraintName|', ( SELECT   name FROM    "
            " sysobjects WHERE    xtype = 'PK' AND parent_obj = OBJECT_ID('%@') ));\nEXEC (@SQL)",
            canonicalName, canonicalName);
    }
    return text(
        "/*[WARNING] Drop primary key contraint instruction requires that constraint name is set for primary key being "
        "dropped*/\n/* %@ (primary key)*/",
        commentText(instruction));
}

Statements SQLServerExporter::alterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject*) {
    return {alterColumnSpecification(field, curField)};
}

std::string SQLServerExporter::alterColumnSpecification(SQLField& field, SQLField& curField) {
    SQLTable* table = field.parentTable();
    if (!table || !ColumnChanges(field, curField).needAlter()) return {};
    auto node = alterTableNode(*table, {"ALTER COLUMN"});
    node->addChildWithValue(quoteIdentifier(field.getName()));
    node->addChildWithValue(field.getType());
    node->addChildWithValue(field.getNotNull() || field.getPrimaryKey() ? "NOT NULL" : "NULL");
    return node->string();
}

}  // namespace vellicor
