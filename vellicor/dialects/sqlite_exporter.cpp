// vellicor/dialects/sqlite_exporter.cpp — SQLite.
#include "vellicor/dialects/sqlite_exporter.h"

#include <algorithm>
#include <array>

#include "vellicor/export/exporter_common.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string SQLiteExporter::exportSQLContainer(SQLContainer& container) {
    container.reorderByForeignKeys();
    configureForExport();
    return GenericSQLExporter::exportSQLContainer(container);
}

SQLTable::Components SQLiteExporter::fieldListForTable(SQLTable& table) {
    const auto group = [](const auto& component) {
        if (as<SQLForeignKey>(component.get())) return 2;
        return as<SQLIndex>(component.get()) ? 1 : 0;
    };
    SQLTable::Components components = table.objectList();
    std::ranges::stable_sort(components, {}, group);
    return components;
}

std::string SQLiteExporter::exportSQLField(SQLField& field) {
    const bool isOnlyKey =
        field.getPrimaryKey() && field.parentTable() && field.parentTable()->primaryKeyObjectList().size() == 1;
    const bool isCounter = isOnlyKey && countsRows(field);
    const std::string type = isCounter ? "INTEGER" : fieldType(field);  // it counts by no other type
    std::string sql = text("%@ %@", quoteIdentifier(field.getName()), type);
    if (const std::string value = field.getDefaultValue(); !value.empty())
        sql += text(" DEFAULT %@", quoteDefaultValue(value, field));
    if (field.getNotNull()) sql += " NOT NULL";
    if (isOnlyKey) sql += " PRIMARY KEY";
    if (isCounter) sql += text(" %@", autoIncrementKeyword());
    if (field.isUnique()) sql += " UNIQUE";
    sql += nodeText(inlineCheckConstraint(field));
    if (SQLField* target = field.getFkField()) {
        sql += text(" REFERENCES %@ (%@)", canonicalTableName(*target), quoteIdentifier(target->getName()));
        sql += getDeleteActionStringForCode(field.deleteAction());
        sql += getUpdateActionStringForCode(field.updateAction());
    }
    return sql;
}

SourceNodePtr SQLiteExporter::primaryKeyBlock(SQLTable& table) {
    return table.primaryKeyObjectList().size() < 2 ? QVSourceNode::node() : GenericSQLExporter::primaryKeyBlock(table);
}

std::string SQLiteExporter::quoteDefaultValue(std::string_view value, SQLField& field) {
    static constexpr std::array<std::string_view, 3> kTimes{"CURRENT_TIME", "CURRENT_DATE", "CURRENT_TIMESTAMP"};
    const bool isTime =
        std::ranges::any_of(kTimes, [&](std::string_view word) { return equalIgnoringCase(word, value); });
    return isTime ? std::string(value) : GenericSQLExporter::quoteDefaultValue(value, field);
}

bool SQLiteExporter::fieldIsIntegerType(const SQLField& field) const {
    return uppercased(field.getType()) == "INTEGER";
}

bool SQLiteExporter::fieldIsFirstIntegerPK(const SQLField& field) const {
    const SQLTable* table = field.parentTable();
    if (!table) return false;
    for (const SQLField* column : table->primaryKeyObjectList())
        if (fieldIsIntegerType(*column)) return column == &field;
    return false;
}

std::string SQLiteExporter::addIndex(SQLIndex& index, SQLTable& table) {
    return ExporterCommon::addIndex(index, table, *this);
}

std::string SQLiteExporter::prefixForIndexedProperty(SQLField& field) {
    const SQLTable* table = field.parentTable();
    return table && shouldPrefixFieldLevelIndexNames() ? text("%@_", table->getBaseName()) : std::string();
}

std::string SQLiteExporter::dropIndex(SQLField& field, SQLTable& table) {
    if (!field.getPropertyAsBoolean(keys::indexed)) return {};
    // Kept: the name is not the one that the create script gives, and no separator follows.
    const std::string name = field.hasProperty(keys::indexedKeyName)
                                 ? quoteIdentifier(field.getProperty(keys::indexedKeyName))
                                 : getNameForIndex(table, getIndexNameForFieldIndexed(field));
    logDropIndexName(name, field);
    return text("DROP INDEX %@\n", name);
}

std::string SQLiteExporter::alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) {
    SQLTable* table = index.parentTable() ? index.parentTable() : oldIndex.parentTable();
    std::string sql = text("DROP INDEX %@;", quoteIdentifier(oldIndex.getName()));
    const IndexStatementForm bare{.addSeparator = false, .addCreateInstruction = false, .withTableName = false};
    const std::string statement = table ? ExporterCommon::addIndex(index, *table, *this, bare) : std::string();
    if (!statement.empty()) {
        sql += ";\n";  // Kept: the separator is doubled
        sql += text("ADD %@", statement);
    }
    return sql + text("%@\n", instructionSeparator());
}

std::string SQLiteExporter::dropSQLField(SQLField& field) {
    return text("/* SQLite cannot drop column %@(%@)*/", commentText(canonicalTableName(field)),
                commentText(quoteIdentifier(field.getName())));
}

std::string SQLiteExporter::dropSQLConstraint(SQLConstraint& constraint) {
    return text("/* SQLite cannot drop constraint %@(%@)*/", commentText(canonicalTableName(constraint)),
                commentText(quoteIdentifier(constraint.getName())));
}

}  // namespace vellicor
