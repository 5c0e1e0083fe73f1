// vellicor/model/index.cpp — an index: its columns, their prefix lengths, its type and labels.
#include "vellicor/model/index.h"

#include <algorithm>
#include <unordered_set>

#include "vellicor/model/field.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::string_view kFieldList = "fieldList";

/// The first entry of a column, or the end.
template <class EntryList>
auto entryOf(EntryList& entries, const SQLField& column) {
    return std::ranges::find_if(entries, [&](const SQLIndex::Entry& entry) { return entry.field.get() == &column; });
}

/// Where the column at `index` among the living ones stands among all entries; the number of entries past the end.
std::size_t entryPosition(const SQLIndex::Entries& entries, std::size_t index) {
    std::size_t position = 0;
    for (; position < entries.size(); ++position)
        if (entries[position].field && index-- == 0) break;
    return position;
}

}  // namespace

void SQLIndex::init() {
    SQLTableComponent::init();
    setName("idx");
}

// --- columns

void SQLIndex::addIndexField(SQLField& column) { insertIndexFieldAtPosition(column, indexListCount()); }

void SQLIndex::insertIndexFieldAtPosition(SQLField& column, std::size_t position) {
    auto entries = _indexEntryList.lock();
    registerUndo(this, [column = shared(&column)](SQLIndex& index) { index.removeIndexField(*column); });
    willChangeValueForKey(kFieldList);
    const auto place = entries->begin() + static_cast<std::ptrdiff_t>(std::min(position, entries->size()));
    entries->insert(place, Entry{.field = WeakRef<SQLField>(&column), .size = std::nullopt});
    didChangeValueForKey(kFieldList);
}

void SQLIndex::removeIndexField(SQLField& column) {
    auto entries = _indexEntryList.lock();
    // Kept: undoing appends, wherever the column stood.
    registerUndo(this, [column = shared(&column)](SQLIndex& index) { index.addIndexField(*column); });
    willChangeValueForKey(kFieldList);
    if (const auto found = entryOf(*entries, column); found != entries->end()) {
        // Equal entries go together.
        const OptionalText size = found->size;
        std::erase_if(*entries, [&](const Entry& entry) { return entry.field.get() == &column && entry.size == size; });
    }
    didChangeValueForKey(kFieldList);
}

void SQLIndex::insertObjectInFieldListAtIndex(SQLField& column, std::size_t index) {
    auto entries = _indexEntryList.lock();
    insertIndexFieldAtPosition(column, entryPosition(*entries, index));
}

void SQLIndex::removeObjectFromFieldListAtIndex(std::size_t index) {
    auto entries = _indexEntryList.lock();
    const std::size_t position = entryPosition(*entries, index);
    if (position < entries->size()) removeIndexField(*(*entries)[position].field.get());
}

void SQLIndex::setIncludesIndexFieldForBoolean(SQLField& column, bool include) {
    auto entries = _indexEntryList.lock();
    if (include == indexContainsField(column)) return;
    if (include)
        addIndexField(column);
    else
        removeIndexField(column);
}

bool SQLIndex::indexContainsField(const SQLField& column) const {
    auto entries = _indexEntryList.lock();
    return entryOf(*entries, column) != entries->end();
}

std::size_t SQLIndex::indexListCount() const { return _indexEntryList.lock()->size(); }

std::vector<SQLField*> SQLIndex::fieldList() const {
    auto entries = _indexEntryList.lock();
    std::vector<SQLField*> columns;
    for (const Entry& entry : *entries)
        if (entry.field) columns.push_back(entry.field.get());
    return columns;
}

SQLIndex::Entries SQLIndex::indexEntryList() const { return *_indexEntryList.lock(); }

std::optional<SQLIndex::Entry> SQLIndex::dictionaryEntryForField(const SQLField& column) const {
    auto entries = _indexEntryList.lock();
    const auto found = entryOf(*entries, column);
    return found == entries->end() ? std::nullopt : std::optional(*found);
}

std::vector<std::string> SQLIndex::getFieldNameListWithPrefixes(bool withPrefixes) const {
    auto entries = _indexEntryList.lock();
    std::vector<std::string> names;
    for (const Entry& entry : *entries) {
        if (!entry.field) continue;
        names.push_back(entry.field->getName());
        if (withPrefixes && entry.size && !entry.size->empty()) names.back() += text("(%@)", entry.size);
    }
    return names;
}

void SQLIndex::setSizeForIndexEntry(SQLField& column, const OptionalText& size) {
    auto entries = _indexEntryList.lock();
    const auto found = entryOf(*entries, column);
    const bool isListed = found != entries->end();
    registerUndo(this, [column = shared(&column), old = isListed ? found->size : std::nullopt](SQLIndex& index) {
        index.setSizeForIndexEntry(*column, old);
    });
    willChangeValueForKey(kFieldList);
    if (isListed) found->size = size;
    if (size) didChangeValueForKey(kFieldList);  // Kept: taking a size away does not announce its end
}

std::string SQLIndex::getSizeForIndexEntry(const SQLField* column) const {
    const auto entry = column ? dictionaryEntryForField(*column) : std::nullopt;
    return entry ? entry->size.value_or(std::string()) : std::string();
}

void SQLIndex::updateIndexFieldList() {
    // The table's list is read first: its lock comes before an index's.
    std::unordered_set<const SQLTableComponent*> present;
    if (const SQLTable* table = parentTable())
        for (const auto& component : table->getFields()) present.insert(component.get());
    auto entries = _indexEntryList.lock();
    willChangeValueForKey(kFieldList);
    std::erase_if(*entries, [&](const Entry& entry) { return !entry.field || !present.contains(entry.field.get()); });
    didChangeValueForKey(kFieldList);
}

// --- type

void SQLIndex::setIndexType(const OptionalText& type) {
    registerUndo(this, [old = getIndexType()](SQLIndex& index) { index.setIndexType(old); });
    setProperty(keys::indexType, type.value_or(std::string()));
}

// --- labels

std::string SQLIndex::labelForDisplay(bool shortForm) const {
    std::string label = "Index ";
    if (const std::string type = getIndexType(); !type.empty()) label += text("%@ ", type);
    if (!shortForm) label += text("%@ %@", getName(), fieldListForDisplay());
    return label;
}

std::string SQLIndex::fieldListForDisplay() const {
    const std::vector<std::string> names = getFieldNameList();
    return names.empty() ? "(empty)" : text("(%@)", joined(names, ","));
}

// --- an index that is only compared

}  // namespace vellicor
