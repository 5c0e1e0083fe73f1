// vellicor/model/index_document.cpp — an index in documents: reading, finding its columns, writing, JSON, copying.
#include <algorithm>
#include <limits>
#include <utility>

#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/model/whereabouts.h"
#include "vellicor/model/written_names.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_export.h"

namespace vellicor {

// --- one column as it is read

void SQLIndexEntry::setField(SQLField* field) { _field = field; }

void SQLIndexEntry::setPrefixSize(const OptionalText& size) {
    setProperty(keys::prefixSize, size.value_or(std::string()));
}

void SQLIndexEntry::setFieldUid(const OptionalText& uid) { setProperty(keys::fieldUid, uid); }

// --- reading

void SQLIndex::setFieldName(const OptionalText& name) {
    auto read = _namesAsRead.lock();
    insertFieldName(name, read->byPosition.empty() ? 0 : read->byPosition.rbegin()->first + 1);
}

void SQLIndex::insertFieldName(const OptionalText& name, std::int64_t position) {
    if (!name || name->empty()) {
        log("Note: nil field in index");
        throw SQLException(exceptions::nilIndexField, "Index name passed to index was empty");
    }
    auto read = _namesAsRead.lock();
    if (position < 0 || !read->all.insert(*name).second) return;
    auto& names = read->byPosition;
    constexpr std::int64_t kLast = std::numeric_limits<std::int64_t>::max() / 2;  // names still move up from there
    std::int64_t place = std::min(position, kLast);
    std::string moving = *name;
    for (auto used = names.find(place); used != names.end(); used = names.find(++place)) moving.swap(used->second);
    names.emplace(place, std::move(moving));
}

void SQLIndex::addIndexEntry(const std::shared_ptr<SQLIndexEntry>& entry) {
    _fieldSizeListPreLoad.lock()->push_back(entry);
}

void SQLIndex::addFieldFromName(std::string_view name) {
    const SQLTable* table = parentTable();
    if (SQLField* column = table ? table->getFieldByName(name) : nullptr) {
        addIndexField(*column);
        return;
    }
    log(text("exception (index field '%@' not found)\n", name));
    log("probable file corrupt error");
}

void SQLIndex::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    if (key != "fieldName")
        SQLTableComponent::setSafePropertyValue(value, key);
    else if (!value.object)
        setFieldName(std::string(value.text));
}

void SQLIndex::postLoadProcess() {
    const auto keepAlive = shared_from_this();  // collapsing takes the index out of its table
    rebindColumns();
    takeColumnNames();
    takeColumnSizes();
    if (hasProperty(keys::collapseUnique)) {
        SQLField* column = getPropertyAsBoolean(keys::collapseUnique) ? soleColumn() : nullptr;
        if (column) collapseInto(*column, keys::unique, keys::uniqueIndexName);
        removeProperty(keys::collapseUnique);
    }
    const SQLContainer* document = topLevelContainer();
    if (document && document->getPropertyAsBoolean(keys::isVisibleCleanupPostImport)) cleanupIndexesForDisplay();
}

/// A copied index holds the columns of the table it was copied from; those of its own table take their places.
void SQLIndex::rebindColumns() {
    const SQLTable* table = parentTable();
    if (!table) return;
    Entries columns = indexEntryList();
    bool foundAny = false;
    for (Entry& entry : columns) {
        const SQLField* column = entry.field.get();
        if (!column || column->parentTable() == table) continue;
        auto* own = as<SQLField>(table->getFieldByUID(column->uid()));
        if (!own) own = table->getFieldByName(column->getName());
        if (!own) continue;
        entry.field = own;
        foundAny = true;
    }
    if (foundAny) *_indexEntryList.lock() = std::move(columns);
}

void SQLIndex::takeColumnNames() {
    const auto read = std::exchange(*_namesAsRead.lock(), {});
    for (const auto& [position, name] : read.byPosition) addFieldFromName(name);
}

void SQLIndex::takeColumnSizes() {
    const SQLTable* table = parentTable();
    const auto entries = std::exchange(*_fieldSizeListPreLoad.lock(), {});
    for (const auto& entry : entries) {
        if (!entry) {
            log("Index Entry was null for setSizeForIndexEntry");
            continue;
        }
        SQLField* column = table ? as<SQLField>(table->getFieldByUID(entry->fieldUid())) : nullptr;
        if (!column && table)
            column = as<SQLField>(table->getFieldByTypeAndName(isKindOf<SQLField>, entry->getName(), true));
        if (column)
            setSizeForIndexEntry(*column, entry->prefixSize());
        else
            log("Field was null on setSizeForIndexEntry");
    }
}

SQLField* SQLIndex::soleColumn() const {
    auto entries = _indexEntryList.lock();
    return entries->size() == 1 ? entries->front().field.get() : nullptr;
}

/// The column keeps the index's name beside a flag that stands for the index.
void SQLIndex::collapseInto(SQLField& column, const char* flagKey, const char* nameKey) {
    column.setPropertyAsBoolean(flagKey, true);
    column.setProperty(nameKey, getName());
    delete_();
}

void SQLIndex::cleanupIndexesForDisplay() {
    if (!getPropertyAsBoolean(keys::collapseSimpleIndex)) return;
    const auto keepAlive = shared_from_this();
    const std::string type = getIndexType();
    const bool isSimple = type != "FULLTEXT" && type != "SPATIAL";
    if (isSimple && Preferences::shared().boolForKey(prefs::collapseSingleEntryIndices))
        if (SQLField* column = soleColumn()) collapseInto(*column, keys::indexed, keys::indexedKeyName);
    removeProperty(keys::collapseSimpleIndex);
}

// --- writing

XMLElement SQLIndex::exportToXMLNode(const XMLElement* parent) const {
    auto entries = _indexEntryList.lock();
    XMLElement node = XMLExport::element(nodeName(), parent);
    node.addCDataElement("name", writtenName(getName()));
    for (const Entry& entry : *entries) {
        if (!entry.field) continue;
        const std::string column = entry.field->getName();
        if (!column.empty())
            node.addCDataElement("fieldName", column);
        else  // no reader takes such an element
            log(text("a column without a name is left out of the %@", whereabouts(*this)));
    }
    for (const Entry& entry : *entries) {
        if (!entry.field) continue;
        const XMLElement element = node.addElement("SQLIndexEntry");
        element.addCDataElement("name", entry.field->getName());
        element.addCDataElement(keys::prefixSize, getSizeForIndexEntry(entry.field.get()));
        element.addCDataElement(keys::fieldUid, entry.field->uid());
    }
    exportPropertiesToXMLNode(node);
    return node;
}

Value::Map SQLIndex::jsonDictionary() const {
    Value::Map json = SQLTableComponent::jsonDictionary();
    Value::List names, records;
    for (const Entry& entry : indexEntryList()) {
        if (!entry.field) continue;
        names.emplace_back(entry.field->getName());
        records.push_back(Value::Map{{"ClassType", "SQLIndexEntry"},
                                     {"name", entry.field->getName()},
                                     {keys::prefixSize, getSizeForIndexEntry(entry.field.get())},
                                     {keys::fieldUid, entry.field->uid()}});
    }
    json.insert_or_assign("fieldList", std::move(names));
    json.insert_or_assign("indexEntryList", std::move(records));
    return json;
}

std::shared_ptr<SQLObject> SQLIndex::copyWithZone(void* zone) const {
    auto copy = as<SQLIndex>(SQLTableComponent::copyWithZone(zone));
    for (const Entry& entry : indexEntryList()) {
        SQLField* column = entry.field.get();
        if (!column) continue;
        copy->addIndexField(*column);
        auto record = create<SQLIndexEntry>();
        record->setField(column);
        record->setName(column->getName());  // finds the column of the copy's table when that has another uid
        record->setPrefixSize(entry.size);
        record->setFieldUid(column->uid());
        copy->addIndexEntry(record);
    }
    return copy;
}

namespace {

constexpr Setter kIndexEntrySetters[] = {
    propertySetter<&SQLIndexEntry::setPrefixSize>("prefixSize"),
    propertySetter<&SQLIndexEntry::setFieldUid>("fieldUid"),
};

constexpr Setter kIndexSetters[] = {
    propertySetter<&SQLIndex::setIndexType>("indexType"),
    setter<&SQLIndex::setFieldName>("fieldName"),
};

}  // namespace

const ClassInfo SQLIndexEntry::kClassInfo{"SQLIndexEntry", &SQLObject::kClassInfo, kIndexEntrySetters,
                                          makeLoadable<SQLIndexEntry>};
const ClassInfo SQLIndex::kClassInfo{"SQLIndex", &SQLTableComponent::kClassInfo, kIndexSetters, makeLoadable<SQLIndex>};
const ClassInfo SQLComparisonIndex::kClassInfo{
    "SQLComparisonIndex", &SQLIndex::kClassInfo, {}, makeLoadable<SQLComparisonIndex>};

}  // namespace vellicor
