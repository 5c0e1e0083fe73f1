// vellicor/model/table_document.cpp — a table in documents: reading, writing, JSON, copying; its SQL.
#include <algorithm>

#include "vellicor/model/export_dialect.h"
#include "vellicor/model/exporter_source.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/table.h"
#include "vellicor/model/whereabouts.h"
#include "vellicor/model/written_names.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_export.h"

namespace vellicor {

// --- SQL

std::string SQLTable::exportToSQL() {
    try {
        return exportToSQL(nullptr, nullptr);
    } catch (const std::exception&) {
        return {};
    }
}

std::string SQLTable::exportToSQL(SQLExportDialect*, const std::shared_ptr<SQLDocumentInfo>&) {
    if (SQLContainer* document = topLevelContainer())
        return document->exportObjectToSQLWithDocumentInfo(*this, nullptr);
    return defaultExporter()->export_(*this);
}

std::string SQLTable::exportSQLForeignKey() {
    const std::string name = getName();
    std::string sql;
    forEachComponent<SQLField>([&](SQLField& field) { sql += field.exportSQLForeignKey(name); });
    if (!sql.empty()) sql += text("/* %@ Foreign Keys */%@\n\n", name, sql);  // Kept: the statements stand twice
    return sql;
}

// --- reading

void SQLTable::postLoadProcess() {
    const ObjectSubject itself(*this);
    SQLObjectPeer::postLoadProcess();
    for (const auto& component : getFields()) {
        const ObjectSubject subject(*component);
        component->postLoadProcess();
    }
    SQLContainer* document = topLevelContainer();
    if (SQLObjectLabelManager* labels = document ? document->objectLabelManager() : nullptr)
        labels->createLabelFromObjectIfRequired(*this);
    if (Preferences::shared().boolForKey(prefs::convertExistingCompoundForeignKeys))
        SQLForeignKeyConverter::convertCompoundForeignKeyToTableLevel(*this);
}

void SQLTable::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    static constexpr std::string_view kOwn[] = {"name", "schema", "comment", "tableType"};
    if (std::ranges::find(kOwn, key) != std::end(kOwn))
        kClassInfo.setterFor(key)->apply(*this, value);
    else
        SQLObjectPeer::setSafePropertyValue(value, key);
}

// --- writing

XMLElement SQLTable::exportToXMLNode(const XMLElement* parent) const {
    auto components = _fields.lock();
    XMLElement node = XMLExport::element("SQLTable", parent);
    node.addCDataElement("name", writtenBaseName(getBaseName()));
    node.addCDataElement("schema", writtenName(getSchemaName()));
    if (const std::string comment = getComment(); !comment.empty()) node.addCDataElement("comment", comment);
    if (!_tableType.empty()) node.addCDataElement("tableType", _tableType);
    exportLocationToXMLNode(node);
    for (const auto& component : *components) component->exportToXMLNode(&node);
    exportPropertiesToXMLNode(node);
    return node;
}

Value::Map SQLTable::jsonDictionary() const {
    auto components = _fields.lock();
    Value::Map json = SQLObjectPeer::jsonDictionary();
    json.insert_or_assign("ClassType", getClassType());
    json.insert_or_assign("name", getBaseName());
    json.insert_or_assign("fullyQualifiedName", fullyQualifiedName());
    if (_schemaName) json.insert_or_assign("schema", *_schemaName);
    if (const std::string comment = getComment(); !comment.empty()) json.insert_or_assign("comment", comment);
    if (!_tableType.empty()) json.insert_or_assign("tableType", _tableType);
    Value::List fields, foreignKeys, indexes, constraints;
    for (const auto& component : *components) {
        if (as<SQLField>(component.get()))
            fields.push_back(component->jsonDictionary());
        else if (as<SQLForeignKey>(component.get()))
            foreignKeys.push_back(component->jsonDictionary());
        else if (as<SQLConstraint>(component.get()))
            constraints.push_back(component->jsonDictionary());
        else if (as<SQLIndex>(component.get()))
            indexes.push_back(component->jsonDictionary());
    }
    json.insert_or_assign("fields", std::move(fields));
    json.insert_or_assign("foreignKeys", std::move(foreignKeys));
    json.insert_or_assign("indexes", std::move(indexes));
    json.insert_or_assign("constraints", std::move(constraints));
    json.insert_or_assign("properties", propertiesAsJson());
    return json;
}

std::shared_ptr<SQLObject> SQLTable::copyWithZone(void* zone) const {
    auto components = _fields.lock();
    auto copy = std::static_pointer_cast<SQLTable>(SQLObjectPeer::copyWithZone(zone));
    copy->_indexPrefix = text("%@_", getBaseName());
    copy->_tableType = _tableType;
    copy->_schemaName = _schemaName;
    copy->_otherOptions = _otherOptions;
    for (const auto& component : *components) copy->appendComponent(copyOf(*component));
    return copy;
}

namespace {

using SetTableText = void (SQLTable::*)(const OptionalText&);

constexpr Setter kTableSetters[] = {
    setter<&SQLTable::setSchema>("schema"),
    setter<&SQLTable::setSchemaName>("schemaName"),
    setter<&SQLTable::setSchemaDisplayName>("schemaDisplayName"),
    {"baseName",
     [](Loadable& target, const LoadedValue& value) {
         if (!value.object) dynamic_cast<SQLTable&>(target).setBaseName(value.text);
     }},
    setter<static_cast<SetTableText>(&SQLTable::setFullyQualifiedName)>("fullyQualifiedName"),
    setter<&SQLTable::setTableType>("tableType"),
    setter<&SQLTable::setType>("type"),
    setter<&SQLTable::setOtherOptions>("otherOptions"),
    setter<&SQLTable::setIndexPrefix>("indexPrefix"),
    setter<&SQLTable::setPrimaryKeyConstraintName>("primaryKeyConstraintName"),
    setter<&SQLTable::setPrimaryKeyConstraintDisplayName>("primaryKeyConstraintDisplayName"),
    setter<&SQLTable::setSortPosition>("sortPosition"),
};

}  // namespace

constinit const ClassInfo SQLTable::kClassInfo{"SQLTable", &SQLObjectPeer::kClassInfo, kTableSetters,
                                               makeLoadable<SQLTable>};

}  // namespace vellicor
