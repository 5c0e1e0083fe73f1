// vellicor/model/container_lookup.cpp — finding objects by name, uid and reference; the uids in use.
#include <algorithm>
#include <utility>

#include "vellicor/model/connectable.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

SQLContainer::List SQLContainer::lockedList() const {
    auto list = _objectList.lock();
    StaleKeys stale;
    {
        auto reported = _staleKeys.lock();
        if (reported->names.empty() && reported->uids.empty()) return list;
        std::swap(stale, *reported);
    }
    for (const SQLObject* object : stale.names) list->nameDidChange(object);
    for (const SQLObject* object : stale.uids) list->uidDidChange(object);
    return list;
}

void SQLContainer::memberNameDidChange(SQLObject& member) { _staleKeys.lock()->names.insert(&member); }

void SQLContainer::memberUidDidChange(SQLObject& member) { _staleKeys.lock()->uids.insert(&member); }

// --- by name

SQLObjectPeer* SQLContainer::getObjectByName(const OptionalText& name) const {
    return getObjectByName(name, NameOptions{});
}

SQLObjectPeer* SQLContainer::getObjectByName(const OptionalText& name, bool caseSensitive) const {
    return getObjectByName(name, NameOptions{.caseSensitive = caseSensitive});
}

SQLObjectPeer* SQLContainer::getObjectByName(const OptionalText& name, const NameOptions& options) const {
    if (!name) return nullptr;
    const NameParts parts = splitNameBySchema(options.stripQuotes ? removingCharacters(*name, "'`\"") : *name);
    // Kept: dots that the split dropped do not come back, so a name with two of them is not found.
    const std::string key = parts.schemaPart.empty() ? parts.baseName : text("%@.%@", parts.schemaPart, parts.baseName);

    auto isCandidate = [&](SQLObjectPeer& object) {
        return !as<SQLDocumentInfo>(&object) && (!options.ofClass || options.ofClass(object));
    };
    auto byName = [&](const ObjectList::Entry* entry) {
        if (options.baseNamesForTables && as<SQLTable>(entry->object.get())) return false;
        return (!options.caseSensitive || entry->name == key) && isCandidate(*entry->object);
    };
    auto byBaseName = [&](const ObjectList::Entry* entry) {
        return (!options.caseSensitive || entry->object->getBaseName() == parts.baseName) &&
               isCandidate(*entry->object);
    };

    auto list = lockedList();
    const ObjectList::Bucket& named = list->withFoldedName(caseFolded(key));
    const auto first = std::ranges::find_if(named, byName);
    const ObjectList::Entry* found = first == named.end() ? nullptr : *first;
    if (options.baseNamesForTables) {
        const ObjectList::Bucket& tables = list->tablesWithFoldedBaseName(caseFolded(parts.baseName));
        const auto firstTable = std::ranges::find_if(tables, byBaseName);
        if (firstTable != tables.end() && (!found || (*firstTable)->precedes(*found))) found = *firstTable;
    }
    return found ? found->object.get() : nullptr;
}

SQLTable* SQLContainer::tableNamed(std::string_view name, const NameOptions& options) const {
    return objectNamed<SQLTable>(name, options);
}

SQLObjectPeer* SQLContainer::getObjectWithSchema(std::string_view name, const OptionalText& schema) const {
    const NameOptions options{.caseSensitive = false, .ofClass = isKindOf<SQLTable>, .stripQuotes = true};
    if (schema && !schema->empty())
        if (SQLObjectPeer* object = getObjectByName(text("%@.%@", *schema, name), options)) return object;
    return getObjectByName(std::string(name), options);
}

bool SQLContainer::holdsName(std::string_view lowercasedName, const SQLObject* except) const {
    auto list = lockedList();
    return std::ranges::any_of(list->withFoldedName(caseFolded(lowercasedName)), [&](const ObjectList::Entry* entry) {
        return entry->object.get() != except && lowercased(entry->name) == lowercasedName;
    });
}

std::size_t SQLContainer::siblingCount(const SQLObject* except) const {
    auto list = _objectList.lock();
    return list->size() - (except && list->contains(*except) ? 1 : 0);
}

LockedHandle<NumberHints> SQLContainer::numberHints() const {
    auto list = lockedList();
    NumberHints& hints = list->numberHints();
    return std::move(list).of(hints);
}

// --- by uid

SQLObjectPeer* SQLContainer::getObjectWithUID(std::string_view uid) const {
    auto list = lockedList();
    const ObjectList::Bucket& objects = list->withUid(uid);
    return objects.empty() ? nullptr : (*objects.begin())->object.get();
}

SQLObject* SQLContainer::objectWithUid(std::string_view uid) const {
    auto list = lockedList();
    const ObjectList::Bucket& objects = list->withUid(uid);
    const SQLObjectPeer* last = objects.empty() ? nullptr : (*objects.begin())->object.get();
    SQLObject* found = nullptr;
    list->forEachUntil([&](const auto& object) {
        if (object.get() == last)
            found = object.get();
        else if (const auto* table = as<SQLTable>(object.get()))
            found = table->getFieldByUID(uid);
        return found != nullptr;
    });
    return found;
}

void SQLContainer::addUidForObject(const SQLObject& object) { _uidList.lock()->insert(object.uid()); }

void SQLContainer::removeUidForObject(const SQLObject& object) { _uidList.lock()->erase(object.uid()); }

bool SQLContainer::uidInContainer(std::string_view uid) const { return _uidList.lock()->contains(uid); }

void SQLContainer::uidChanged(std::string_view newUid, SQLObject& object) {
    const std::string uid = object.uid();
    auto uids = _uidList.lock();
    uids->erase(uid);
    uids->emplace(newUid);
}

void SQLContainer::createNewUid() {
    auto list = _objectList.lock();
    for (const auto& object : list->snapshot()) object->createNewUid();
}

// --- references

std::vector<SQLConnectable*> SQLContainer::foreignKeyList() const {
    std::vector<SQLConnectable*> keys;
    for (const auto& object : objectList()) {
        const auto* table = as<SQLTable>(object.get());
        if (!table) continue;
        for (const auto& component : table->getFields())
            if (auto* key = as<SQLConnectable>(component.get())) keys.push_back(key);
    }
    return keys;
}

SQLConnectable* SQLContainer::foreignKeyWithName(std::string_view name) const {
    return foreignKeyWithName(name, foreignKeyList());
}

SQLConnectable* SQLContainer::foreignKeyWithName(std::string_view name, const std::vector<SQLConnectable*>& fkList) {
    const auto key = std::ranges::find_if(
        fkList, [&](SQLConnectable* each) { return each->targetTable() && each->foreignKeyName() == name; });
    return key == fkList.end() ? nullptr : *key;
}

}  // namespace vellicor
