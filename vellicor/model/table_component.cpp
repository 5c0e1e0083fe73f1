// vellicor/model/table_component.cpp — the common base of everything that stands inside a table.
#include "vellicor/model/table_component.h"

#include "vellicor/model/container.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/model/label.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_export.h"

namespace vellicor {

void SQLTableComponent::delete_() {
    if (SQLTable* table = parentTable()) table->remove(this);
}

void SQLTableComponent::foreignKeyDidChange() {
    if (SQLContainer* document = topLevelContainer()) document->foreignKeyMayHaveChanged(*this);
}

void SQLTableComponent::setName(const OptionalText& name) {
    takeName(name ? std::string(trimmed(trimName(*name))) : "null");
}

/// Undoing takes the old name as it was: setting it would take quotes off once more.
void SQLTableComponent::takeName(const OptionalText& name) {
    registerUndo(this, [old = this->name()](SQLTableComponent& component) { component.takeName(old); });
    setUndoActionName("set object name");
    storeName(name);
}

SQLTable* SQLTableComponent::parentTable() const { return as<SQLTable>(container()); }

void SQLTableComponent::setLabel(std::shared_ptr<SQLObjectLabel> label) {
    if (label)
        setProperty(keys::fieldBackgroundColor, label->colorString());
    else
        removeProperty(keys::fieldBackgroundColor);
    SQLObjectPeer::setLabel(std::move(label));
}

Color SQLTableComponent::defaultLabelColor() const {
    return Color::colorWithString(Preferences::shared().stringForKey(prefs::fieldBackgroundColor));
}

bool SQLTableComponent::validateName(OptionalText& name, ValidationError*) {
    if (!mustValidateName() && name && name == this->name()) return true;
    OptionalText valid = name;  // a component that stands nowhere may have any name
    if (SQLTable* table = parentTable())
        valid = table->getValidNameForObject(*this, name);
    else if (SQLContainer* document = topLevelContainer())
        valid = document->getValidNameForObject(*this, name);
    setDidChangeNameDuringValidation(valid != name);
    name = std::move(valid);
    return true;
}

std::string SQLTableComponent::prefixedName(std::string_view name, SQLTable& table) {
    if (hasProperty(keys::indexNamePrefix)) {
        const std::string present = getProperty(keys::indexNamePrefix) + "_";
        if (name.starts_with(present)) name.remove_prefix(present.size());
    }
    if (!shouldPrefixIndexNameOnInsert(table)) return std::string(name);
    const std::string prefix(trimmed(table.fullyQualifiedNameForIndexNames()));
    if (!prefix.empty() && name.starts_with(prefix)) return std::string(name);
    // Kept: the candidate is made free twice in a row.
    std::string prefixed = table.getValidName(table.getValidName(text("%@_%@", prefix, name)));
    if (prefixed != name) setProperty(keys::indexNamePrefix, prefix);
    return prefixed;
}

bool SQLTableComponent::shouldPrefixIndexNameOnInsert(const SQLTable& table) {
    const SQLContainer* document = table.topLevelContainer();
    return document && document->getPropertyAsBoolean(keys::allowsIndexRenamingOnInsert) &&
           Preferences::shared().boolForKey(prefs::addTablePrefixToIndexNamesAtCreation);
}

void SQLTableComponent::setIncompleteReferenceTargetTable(std::string_view table, std::string_view field) {
    setPropertyAsBoolean(keys::incompleteReferenceTarget, true);
    setProperty(keys::refTableName, table);
    setProperty(keys::refFieldName, field);
    if (SQLTable* own = parentTable()) own->setPropertyAsBoolean(keys::incompleteReferenceTarget, true);
}

void SQLTableComponent::clearIncompleteReferenceTargetTable() {
    removeProperty(keys::incompleteReferenceTarget);
    removeProperty(keys::refTableName);
    removeProperty(keys::refFieldName);
}

void SQLTableComponent::postLoadProcess() {
    SQLObjectPeer::postLoadProcess();
    if (hasProperty(keys::fieldBackgroundColor)) {
        const std::string color = getProperty(keys::fieldBackgroundColor);
        if (color != getProperty(keys::labelColor)) {
            setLabel(nullptr);
            setProperty(keys::labelColor, color);
        }
    }
    SQLContainer* document = topLevelContainer();
    if (SQLObjectLabelManager* labels = document ? document->objectLabelManager() : nullptr)
        labels->createLabelFromObjectIfRequired(*this);
}

std::string SQLTableComponent::exportToSQL(SQLExportDialect*, const std::shared_ptr<SQLDocumentInfo>& documentInfo) {
    SQLTable* table = parentTable();
    SQLContainer* document = topLevelContainer();
    return table && document ? document->exportObjectToSQLWithDocumentInfo(*table, documentInfo) : std::string();
}

XMLElement SQLTableComponent::exportToXMLNode(const XMLElement* parent) const {
    return XMLExport::element("SQLTableComponent", parent);
}

std::string SQLTableComponent::exportToXMLWithWrapper() const {
    XMLElement wrapper("SQLContainer");
    exportToXMLNode(&wrapper);
    return wrapper.text();
}

std::string SQLTableComponent::description() const {
    const SQLTable* table = parentTable();
    return text("%@: %@(%@) %p", classInfo().name, table ? OptionalText(table->getName()) : std::nullopt, name(),
                addressText(this));
}

std::string SQLTableComponent::descriptionWithExporter(SQLExportDialect&) {
    // Kept: what is exported is the exporter, not the component; there is no operation for an exporter, so no text.
    return text("%@: %@  %p %@", classInfo().name, name(), addressText(this), "");
}

Value::Map SQLTableComponent::jsonDictionary() const {
    Value::Map json = SQLObjectPeer::jsonDictionary();
    json.insert_or_assign("ClassType", getClassType());
    json.insert_or_assign("name", getName());
    json.insert_or_assign("properties", propertiesAsJson());
    return json;
}

namespace {

constexpr Setter kComponentSetters[] = {
    setter<&SQLTableComponent::setNamePending>("namePending"),
    propertySetter<&SQLTableComponent::setDeferrable>("deferrable"),
    propertySetter<&SQLTableComponent::setInitiallyDeferred>("initiallyDeferred"),
};

}  // namespace

constinit const ClassInfo SQLTableComponent::kClassInfo{"SQLTableComponent", &SQLObjectPeer::kClassInfo,
                                                        kComponentSetters, nullptr};

}  // namespace vellicor
