// vellicor/model/table.cpp — a table: its making, settings, uids, and what the container and observers ask of it.
#include "vellicor/model/table.h"

#include <algorithm>
#include <mutex>

#include "vellicor/model/component_index.h"
#include "vellicor/model/foreign_key_names.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// Where new tables stand: five columns to the right of the first one, then the next row.
struct DefaultPlaces {
    std::mutex mutex;
    std::int64_t column = 0;
    std::int64_t row = 0;

    Point next() {
        std::scoped_lock lock(mutex);
        if (const std::int64_t taken = column++; taken < 5)
            return {static_cast<double>((taken + 1) * 210), static_cast<double>(row * 110)};
        column = 0;
        return {0, static_cast<double>(++row * 110)};
    }
    void reset() {
        std::scoped_lock lock(mutex);
        column = row = 0;
    }
};

DefaultPlaces& defaultPlaces() {
    static DefaultPlaces places;
    return places;
}

}  // namespace

SQLTable::SQLTable(Creation creation) : SQLObjectPeer(creation) {}

SQLTable::~SQLTable() {
    auto components = _fields.lock();
    for (const auto& component : *components)
        if (component->container() == this) component->setParent(nullptr);
    ForeignKeyNames::noteLoss();
}

void SQLTable::init() {
    SQLObjectPeer::init();
    storeName("Table");
    setFrameWithoutUpdate({defaultPlaces().next(), {200, 100}});
}

std::shared_ptr<SQLTable> SQLTable::tableForImportWithName(const OptionalText& name) {
    auto table = initWithName(name);
    table->setZOrder(0);
    return table;
}

std::shared_ptr<SQLTable> SQLTable::initWithName(const OptionalText& name, std::string_view,
                                                 const OptionalText& schemaName) {
    auto table = createNamed<SQLTable>(name);
    table->setTableType(table->tableType());  // Kept: the type given is not used
    if (schemaName && !schemaName->empty()) table->setSchemaName(schemaName);
    return table;
}

void SQLTable::resetPosition() { defaultPlaces().reset(); }

const SQLTable::UndoProperties& SQLTable::undoProperties() {
    static const UndoProperties keys{keys::ignoreWhenExporting, keys::objectComment, keys::labelColor, keys::isLocked,
                                     keys::hidden};
    return keys;
}

// --- settings

void SQLTable::setTableType(const OptionalText& type) {
    registerUndo(this, [old = _tableType](SQLTable& table) { table.setTableType(old); });
    setUndoActionName("set table type");
    _tableType = type.value_or(std::string());
}

void SQLTable::setComment(const OptionalText& comment) {
    if (comment && comment->size() >= 3) {
        const char quote = comment->front();
        const bool isQuote = quote == '"' || quote == '\'' || quote == '`';
        if (isQuote && comment->back() == quote && comment->at(comment->size() - 2) != '\\') {
            SQLObjectPeer::setComment(comment->substr(1, comment->size() - 2));
            return;
        }
    }
    SQLObjectPeer::setComment(comment);
}

// --- uids

void SQLTable::createNewUid() {
    SQLObjectPeer::createNewUid();
    for (const auto& component : getFields()) component->createNewUid();
}

void SQLTable::checkUid(SQLContainer& container) {
    SQLObjectPeer::checkUid(container);
    for (const auto& component : getFields()) component->checkUid(container);
}

void SQLTable::updateLinksWithNewUid() {
    for (const auto& component : getFields()) component->updateLinksWithNewUid();
}

void SQLTable::uidChanged(std::string_view newUid, SQLObject& object) {
    if (SQLContainer* document = topLevelContainer()) document->uidChanged(newUid, object);
    auto components = _fields.lock();
    if (auto* component = _uids ? as<SQLTableComponent>(&object) : nullptr) {
        _uids->remove(*component);
        _uids->enter(*component, newUid);
    }
}

void SQLTable::memberUidDidChange(SQLObject& member) {
    auto components = _fields.lock();
    auto* component = _uids ? as<SQLTableComponent>(&member) : nullptr;
    if (component && _uids->find(component->uid()) != component) updateUidMapEntryForObject(*component);
}

ComponentUids& SQLTable::uids() const {
    auto components = _fields.lock();
    if (!_uids) {
        _uids = std::make_unique<ComponentUids>();
        for (const auto& component : *components) _uids->enter(*component, component->uid());
    }
    return *_uids;
}

SQLTable::UidMap SQLTable::uidFieldMap() const {
    auto components = _fields.lock();
    return uids().map();
}

void SQLTable::addUidMapEntryForObject(SQLTableComponent& object) { addUidMapEntryForObject(object, object.uid()); }

void SQLTable::addUidMapEntryForObject(SQLTableComponent& object, std::string_view newUid) {
    auto components = _fields.lock();
    uids().enter(object, newUid);
}

void SQLTable::removeUidMapEntryForObject(SQLTableComponent& object) {
    auto components = _fields.lock();
    uids().remove(object);
}

void SQLTable::updateUidMapEntryForObject(SQLTableComponent& object) {
    auto components = _fields.lock();
    removeUidMapEntryForObject(object);
    addUidMapEntryForObject(object);
}

// --- for the container

void SQLTable::addTableToTargetList(SQLTable& table) {
    if (_targetTableSet.insert(&table).second) _targetTableForFKList.emplace_back(&table);
}

void SQLTable::clearTargetTableList() {
    _targetTableForFKList.clear();
    _targetTableSet.clear();
}

std::vector<SQLTable*> SQLTable::getTargetTableForFKList() const {
    std::vector<SQLTable*> tables;
    for (const auto& table : _targetTableForFKList)
        if (table) tables.push_back(table.get());
    return tables;
}

void SQLTable::relocateToOrigin(double dx, double dy) {
    SQLObjectPeer::relocateToOrigin(dx, dy);
    for (const auto& component : getFields())
        if (component->hasProperty(keys::connectorMidPoint))  // Kept: it moves horizontally only
            component->setProperty(keys::connectorMidPoint,
                                   fixedText(doubleValue(component->getProperty(keys::connectorMidPoint)) + dx, 6));
}

bool SQLTable::useNewColoring() const { return Preferences::shared().boolForKey(prefs::useNewColoring); }

Color SQLTable::defaultLabelColor() const {
    const char* key = useNewColoring() ? prefs::tableNotSelectedColor : prefs::tableBackgroundColor;
    return Color::colorWithString(Preferences::shared().stringForKey(key));
}

// --- observers

void SQLTable::removeObserverForFieldList(const FieldListObserver& observer) {
    _fieldObservers.removeAll([&](const FieldListObserver* registered) { return registered == &observer; });
}

void SQLTable::notifyFieldObservers() {
    _fieldObservers.tell([this](FieldListObserver* observer) {
        if (observer->supportsFieldListChanged())
            observer->fieldListChanged(*this);
        else
            log(text("warning field observer %@ registered, but not supporting method fieldListChanged:",
                     observer->description()));
    });
}

}  // namespace vellicor
