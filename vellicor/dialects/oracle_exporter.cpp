// vellicor/dialects/oracle_exporter.cpp — Oracle.
#include "vellicor/dialects/oracle_exporter.h"

#include "vellicor/dialects/column_changes.h"
#include "vellicor/export/exporter_common.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string OracleSQLExporter::getDeleteActionStringForCode(std::uint64_t code) {
    if (code == action::cascade) return " ON DELETE CASCADE";
    return code == action::setNull ? " ON DELETE SET NULL" : "";
}

std::string OracleSQLExporter::fieldType(SQLField& field) { return ExporterCommon::fieldTypeWithTimeZone(field); }

std::string OracleSQLExporter::viewCreateStringPart(std::string_view name) {
    return text("CREATE OR REPLACE VIEW %@ ", name);
}

std::string OracleSQLExporter::addIndex(SQLIndex& index, SQLTable& table) {
    if (uppercased(index.getIndexType()) != "UNIQUE") return ExporterCommon::addIndex(index, table, *this);
    std::string sql = "ALTER TABLE " + getCanonicalName(table) + " ADD CONSTRAINT " + getCanonicalName(index) +
                      " UNIQUE (" + joined(quoteAllMembers(index.getFieldNameList()), ",") + ")";
    if (!isJDBCExporter()) {
        sql += instructionSeparator();
        if (index.indexListCount() == 0) sql = "/*" + commentText(sql) + "*/";
    }
    return sql + "\n";
}

std::string OracleSQLExporter::addField(SQLField& field, SQLTable& table) {
    return text("ALTER TABLE %@ ADD  %@%@\n", getCanonicalName(table), export_(field), instructionSeparator());
}

std::string OracleSQLExporter::addColumn(SQLField& field) {
    SQLTable* table = field.parentTable();
    return table ? text("ALTER TABLE %@ ADD %@", getCanonicalName(*table), export_(field)) : std::string();
}

std::string OracleSQLExporter::dropSQLField(SQLField& field) {
    SQLTable* table = field.parentTable();
    if (!table) return {};
    return text("ALTER TABLE %@  DROP COLUMN %@", getCanonicalName(*table), quoteIdentifier(field.getName()));
}

Statements OracleSQLExporter::alterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject*) {
    return {alterColumnSpecification(field, curField), alterDefault(field, curField)};
}

SourceNodePtr OracleSQLExporter::modifyNode(SQLField& field, SQLTable& table) {
    auto node = alterTableNode(table, {"MODIFY"});
    node->addChildWithValue(quoteIdentifier(field.getName()));
    return node;
}

std::string OracleSQLExporter::alterColumnSpecification(SQLField& field, SQLField& curField) {
    const ColumnChanges changes(field, curField);
    SQLTable* table = field.parentTable();
    if (!table || !changes.needAlter()) return {};
    auto node = modifyNode(field, *table);
    node->addChildWithValue(field.getType());
    if (changes.nullability())
        node->addChildWithValue(field.getNotNull() || field.getPrimaryKey() ? "NOT NULL" : "NULL");
    return node->string();
}

std::string OracleSQLExporter::alterDefault(SQLField& field, SQLField& curField) {
    const std::string value = field.getDefaultValue();
    SQLTable* table = field.parentTable();
    if (!table || value == curField.getDefaultValue()) return {};
    auto node = modifyNode(field, *table);
    if (value.empty()) {
        node->addChildWithValue("DEFAULT NULL");
    } else {
        node->addChildWithValue("DEFAULT");
        node->addChildWithValue(quoteDefaultValue(value, field));
    }
    return node->string();
}

}  // namespace vellicor
