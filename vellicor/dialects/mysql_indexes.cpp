// vellicor/dialects/mysql_indexes.cpp — MySQL: indexes, and the indexes that foreign keys get.
#include "vellicor/dialects/mysql_exporter.h"
#include "vellicor/dialects/mysql_index_exporter.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// An index that stands in no table: one column, with its prefix size.
std::shared_ptr<SQLComparisonIndex> singleColumnIndex(MySQLExporter& exporter, SQLField& field, std::string_view name) {
    auto index = SQLComparisonIndex::indexWithName(std::string(name));
    index->addIndexField(field);
    index->setSizeForIndexEntry(field, exporter.indexSizeStringForField(field, nullptr));
    return index;
}

}  // namespace

bool MySQLExporter::shouldUseAlterTableForIndex() const {
    return _overrideShouldUseAlterTableForIndex ||
           Preferences::shared().boolForKey(prefs::useAlterTableForMySQLIndexCreation);
}

std::string MySQLExporter::addIndex(SQLIndex& index, SQLTable& table) {
    return MySQLIndexExporter::addIndexTableExporter(index, table, *this);
}

std::string MySQLExporter::createFieldIndexOnField(SQLField& field, SQLTable& table) {
    const std::string base = columnIndexName(table, field.getName(), std::nullopt);
    std::string suffix;
    if (field.getPropertyAsBoolean(keys::indexed)) {
        suffix = "_idx";
    } else if (field.getFkField()) {
        suffix = "_idxfk";
        const std::string name = base + suffix;
        if (!shouldAddIndexForFK(field, name)) return {};
        SQLExportDialect* live = currentExporter().get();
        if (!live || live->indexExistsNamed(table, name)) return {};
        const auto* existing = as<SQLIndex>(table.getFieldByTypeAndName(isKindOf<SQLIndex>, name));
        if (existing && existing->indexListCount() > 0 && existing->fieldList().front() == &field) return {};
        if (!live->isOnlyIndexForTableForeignKey(field, name)) return {};
    } else {
        return {};
    }
    const auto index = singleColumnIndex(*this, field, columnIndexName(table, base, suffix));
    std::string sql(trimmed(MySQLIndexExporter::addIndexTableExporter(*index, table, *this)));
    if (!sql.empty() && !sql.ends_with(';')) sql += ';';
    return sql;
}

std::string MySQLExporter::createIndexStatement(SQLField& field, std::string_view indexName) {
    SQLTable* table = field.parentTable();
    if (!table) return {};
    const auto index = singleColumnIndex(*this, field, indexName);
    return MySQLIndexExporter::createIndexStringForindex(*index, *table, *this);
}

std::string MySQLExporter::setIndex(SQLField& field, SQLIndex*) {
    const std::string name = getForeignKeyFieldIndexName(field);
    const SQLTable* table = field.parentTable();
    if (!table || table->getFieldByTypeAndName(isKindOf<SQLIndex>, name)) return {};
    return createIndexStatement(field, name);
}

std::string MySQLExporter::indexSizeStringForField(SQLField& field, SQLIndex* index) {
    const std::string type = uppercased(field.getDataType());
    if (!isStringType(type)) return {};
    const std::string size = index ? index->getSizeForIndexEntry(&field) : field.getProperty(keys::indexSize);
    return size.empty() && needsPrefixSize(type) ? "50" : size;
}

std::string MySQLExporter::indexTypeInScript(SQLIndex& index) { return index.getIndexTypeString(); }

std::string MySQLExporter::columnIndexName(SQLTable& table, std::string_view name, const OptionalText& suffix) {
    return getNameForIndex(table, name, suffix);
}

bool MySQLExporter::shouldAddIndexForFK(SQLField& field, std::string_view) const {
    const SQLTable* table = field.parentTable();
    const SQLTable::Fields primaryKey = table ? table->primaryKeyObjectList() : SQLTable::Fields();
    if (field.getPrimaryKey() && !primaryKey.empty() && primaryKey.front() == &field) return false;
    return !field.isUnique();
}

std::string MySQLExporter::getForeignKeyFieldIndexName(const SQLObject& object) const {
    return text("%@_idxfk", object.getName());
}

std::string MySQLExporter::getUniqueForeignKeyName(const std::string& name) {
    std::string unique = name;
    std::size_t& next = _nextNumberForFkIndex[name];
    while (!_fkIndexList.insert(unique).second) unique = text("%@_%d", name, ++next);
    return unique;
}

std::string MySQLExporter::foreignKeyIndexName(SQLConnectable& key) {
    if (std::string name = key.foreignKeyName(); !name.empty()) return name;
    return getUniqueForeignKeyName(getForeignKeyFieldIndexName(key.connectableComponent()));
}

SourceNodePtr MySQLExporter::foreignKeyNode(SQLConnectable* key) {
    auto node = GenericSQLExporter::foreignKeyNode(key);
    if (!node->isVisible()) return node;
    if (auto label = node->childWithId("#foreignKeyLabel"))
        node->insertChildValue(foreignKeyIndexName(*key), node->indexOfChild(label) + 1);
    return node;
}

}  // namespace vellicor
