// vellicor/model/view.cpp — a view: its query, the parts of the query, its rows, and its form in documents.
#include "vellicor/model/view.h"

#include "vellicor/model/written_names.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_export.h"

namespace vellicor {

// --- one row

std::shared_ptr<SQLViewEntry> SQLViewEntry::initWithName(const OptionalText& name, std::string_view type) {
    auto entry = createNamed<SQLViewEntry>(name);
    entry->setType(std::string(type));
    return entry;
}

void SQLViewEntry::setType(const OptionalText& type) { setProperty(keys::viewEntryType, type); }

XMLElement SQLViewEntry::exportToXMLNode(const XMLElement* parent) const {
    XMLElement node = XMLExport::element("SQLViewEntry", parent);
    node.addCDataElement("name", writtenName(getName()));
    exportPropertiesToXMLNode(node);
    return node;
}

// --- the view

void SQLView::setQueryString(const OptionalText& query) { setProperty(keys::queryString, query); }

void SQLView::appendText(Texts& texts, std::string text) {
    std::scoped_lock lock(_viewMutex);
    texts.push_back(std::move(text));
}

void SQLView::addColumn(std::string_view text) { appendText(_columns, std::string(text)); }

void SQLView::addSelectColumn(std::string_view text) { appendText(_selectColumns, std::string(text)); }

void SQLView::addTableEntry(std::string_view table) { appendText(_tableList, std::string(table)); }

void SQLView::addTableEntry(std::string_view table, const OptionalText& asAlias) {
    appendText(_tableList, asAlias && !asAlias->empty() ? text("%@ AS %@", table, asAlias) : std::string(table));
}

SQLView::Texts SQLView::columns() const {
    std::scoped_lock lock(_viewMutex);
    return _columns;
}

SQLView::Texts SQLView::selectColumns() const {
    std::scoped_lock lock(_viewMutex);
    return _selectColumns;
}

SQLView::Texts SQLView::tableList() const {
    std::scoped_lock lock(_viewMutex);
    return _tableList;
}

// --- rows

void SQLView::addViewEntry(const std::shared_ptr<SQLTableComponent>& entry) {
    if (!as<SQLViewEntry>(entry)) {
        log("[WARN] attempted to add something that was not a SQLViewEntry to SQLView model");
        return;
    }
    SQLContainer* document = topLevelContainer();
    if (document && document->uidInContainer(entry->uid())) entry->createNewUid();
    {
        std::scoped_lock lock(_viewMutex);
        appendComponent(entry);
        if (document) document->addUidForObject(*entry);
    }
    notifyFieldObservers();
}

void SQLView::updateFieldList() {
    std::scoped_lock lock(_viewMutex);
    Components rows;
    rows.reserve(_selectColumns.size() + _tableList.size() + 2);
    // Kept: the document does not hear of the rows' uids.
    const auto addRow = [&](const std::string& name, std::string_view type) {
        rows.push_back(SQLViewEntry::viewEntryWithName(name, type));
    };
    addRow("columns", "label");
    for (const std::string& column : _selectColumns) addRow(replacingAll(column, " . ", "."), "column");
    addRow("tables", "label");
    for (const std::string& table : _tableList) addRow(replacingAll(table, " . ", "."), "table");
    setFields(std::move(rows));
}

// --- documents

std::vector<std::shared_ptr<SQLObject>> SQLView::flatObjectList() { return {shared_from_this()}; }

XMLElement SQLView::exportToXMLNode(const XMLElement* parent) const {
    std::scoped_lock lock(_viewMutex);
    XMLElement node = XMLExport::element("SQLView", parent);
    node.addCDataElement("name", writtenBaseName(getBaseName()));
    node.addCDataElement("schema", writtenName(getSchemaName()));
    if (const std::string comment = getComment(); !comment.empty()) node.addCDataElement("comment", comment);
    if (!tableType().empty()) node.addCDataElement("tableType", tableType());
    for (const auto& entry : getFields()) entry->exportToXMLNode(&node);
    exportLocationToXMLNode(node);
    exportPropertiesToXMLNode(node);
    return node;
}

Value::Map SQLView::jsonDictionary() const {
    std::scoped_lock lock(_viewMutex);
    Value::Map json = SQLTable::jsonDictionary();
    for (const std::string_view key : {"fields", "foreignKeys", "indexes", "constraints"})
        if (const auto list = json.find(key); list != json.end()) json.erase(list);
    Value::List entries;
    for (const auto& entry : getFields()) entries.emplace_back(entry->jsonDictionary());
    json.insert_or_assign("entries", std::move(entries));
    return json;
}

std::shared_ptr<SQLObject> SQLView::copyWithZone(void* zone) const {
    std::scoped_lock lock(_viewMutex);
    auto copy = as<SQLView>(SQLTable::copyWithZone(zone));
    copy->setSortPosition(getSortPosition());
    copy->_columns = _columns;
    copy->_selectColumns = _selectColumns;
    copy->_tableList = _tableList;
    return copy;
}

namespace {

constexpr Setter kViewEntrySetters[] = {
    propertySetter<&SQLViewEntry::setType>("type"),
    // A row takes part in no reference.
    ignored("fkField"),
    ignored("deleteAction"),
    ignored("updateAction"),
    ignored("sourceCardinality"),
    ignored("destinationCardinality"),
    ignored("referenceLinkName"),
    ignored("foreignKeyName"),
    ignored("targetTable"),
};

constexpr Setter kViewSetters[] = {
    propertySetter<&SQLView::setQueryString>("queryString"),
    ignored("queryObject"),
};

}  // namespace

const ClassInfo SQLViewEntry::kClassInfo{"SQLViewEntry", &SQLTableComponent::kClassInfo, kViewEntrySetters,
                                         makeLoadable<SQLViewEntry>};
const ClassInfo SQLView::kClassInfo{"SQLView", &SQLTable::kClassInfo, kViewSetters, makeLoadable<SQLView>};

}  // namespace vellicor
