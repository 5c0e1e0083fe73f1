// vellicor/model/property_dictionary.cpp — storing properties and telling of their changes.
#include "vellicor/model/property_dictionary.h"

#include <algorithm>

#include "vellicor/model/keys.h"
#include "vellicor/model/object.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/uuid.h"

namespace vellicor {

QVMutableNotifyingPropertyDictionary::QVMutableNotifyingPropertyDictionary(SQLObject* owner) : _owner(owner) {
    if (!owner) throw AssertionFailure("owner object must not be nil");
}

std::optional<PropertyValue> QVMutableNotifyingPropertyDictionary::valueForKey(std::string_view key) const {
    auto map = _map.lock();
    if (key == keys::uid) fulfilUid(*map);
    const PropertyValue* value = map->find(key);
    return value ? std::optional(*value) : std::nullopt;
}

std::string QVMutableNotifyingPropertyDictionary::textForKey(std::string_view key) const {
    auto map = _map.lock();
    if (key == keys::uid) fulfilUid(*map);
    const PropertyValue* value = map->find(key);
    return value ? value->text() : std::string();
}

bool QVMutableNotifyingPropertyDictionary::hasKey(std::string_view key) const {
    return _map.lock()->find(key) != nullptr;
}

std::vector<std::string> QVMutableNotifyingPropertyDictionary::allKeys() const {
    auto map = _map.lock();
    std::vector<std::string> keys;
    keys.reserve(map->size());
    for (const PropertyMap::Entry& entry : *map) keys.push_back(entry.key.string());
    return keys;
}

std::size_t QVMutableNotifyingPropertyDictionary::count() const { return _map.lock()->size(); }

const PropertyValue* QVMutableNotifyingPropertyDictionary::Snapshot::valueForKey(std::string_view key) const {
    const auto found = std::ranges::find(*this, key, &value_type::first);
    return found == end() ? nullptr : &found->second;
}

std::string QVMutableNotifyingPropertyDictionary::Snapshot::textForKey(std::string_view key) const {
    const PropertyValue* value = valueForKey(key);
    return value ? value->text() : std::string();
}

QVMutableNotifyingPropertyDictionary::Snapshot QVMutableNotifyingPropertyDictionary::entries() const {
    Snapshot snapshot;
    read([&](const PropertyMap& map) {
        snapshot.reserve(map.size());
        for (const PropertyMap::Entry& entry : map) snapshot.emplace_back(entry.key.string(), entry.value);
    });
    return snapshot;
}

void QVMutableNotifyingPropertyDictionary::read(const std::function<void(const PropertyMap&)>& read) const {
    auto map = _map.lock();
    fulfilUid(*map);
    read(*map);
}

const PropertyMap& QVMutableNotifyingPropertyDictionary::internalProperties() const {
    auto map = _map.lock();
    fulfilUid(*map);
    return *map;
}

void QVMutableNotifyingPropertyDictionary::setValue(PropertyValue value, std::string_view key) {
    change(key, std::move(value));
}

void QVMutableNotifyingPropertyDictionary::removeObjectForKey(std::string_view key) { change(key, std::nullopt); }

void QVMutableNotifyingPropertyDictionary::removeAllObjects() {
    bool hadUid = false;
    {
        auto map = _map.lock();
        hadUid = map->find(keys::uid) != nullptr;
        for (const std::string& key : allKeys()) change(*map, key, std::nullopt);
    }
    if (hadUid) tellOwnerOfUid();
}

void QVMutableNotifyingPropertyDictionary::addEntriesFromDictionary(const Snapshot& entries) {
    bool hasUid = false;
    {
        auto map = _map.lock();
        for (const auto& [key, value] : entries) {
            if (key == keys::uid) hasUid = true;
            map->set(key, value);
        }
        if (hasUid) _uidPromised = false;
        notifyChange();
    }
    if (hasUid) tellOwnerOfUid();
    if (_owner) _owner->propertiesWereMerged();
}

void QVMutableNotifyingPropertyDictionary::addEntriesFromPropertyDictionary(
    const QVMutableNotifyingPropertyDictionary& other) {
    addEntriesFromDictionary(other.entries());  // a snapshot, since nobody may hold two dictionaries' locks
}

void QVMutableNotifyingPropertyDictionary::promiseUid() {
    auto map = _map.lock();
    map->set(keys::uid, std::string());
    _uidPromised = true;
}

void QVMutableNotifyingPropertyDictionary::fulfilUid(PropertyMap& map) const {
    if (!_uidPromised) return;
    _uidPromised = false;
    map.set(keys::uid, newUuidText());
}

void QVMutableNotifyingPropertyDictionary::change(std::string_view key, std::optional<PropertyValue> value) {
    const bool isUid = key == keys::uid;
    {
        auto map = _map.lock();
        change(*map, key, std::move(value));
    }
    // Outside the lock: whoever keeps uids has a lock of its own, which comes before this one.
    if (isUid) tellOwnerOfUid();
}

void QVMutableNotifyingPropertyDictionary::change(PropertyMap& map, std::string_view key,
                                                  std::optional<PropertyValue> value) {
    const bool isUid = key == keys::uid;
    if (isUid) fulfilUid(map);  // the hook hears what the object was called
    _observers.willChange(this, key);
    if (_owner) {
        _owner->willChangeValueForKey("properties");
        std::optional<PropertyValue> current;  // a copy, since the hook may change other entries
        if (const PropertyValue* stored = map.find(key)) current = *stored;
        _owner->propertyWillChange(key, current ? &*current : nullptr, value ? &*value : nullptr);
    }
    if (value)
        map.set(key, std::move(*value));
    else
        map.remove(key);
    _observers.willChange(this, key);  // Kept: a second will-change stands where a did-change might be expected.
    if (_owner) {
        _owner->didChangeValueForKey("properties");
        _owner->propertyDidChange(key);
    }
    notifyChange();
}

void QVMutableNotifyingPropertyDictionary::tellOwnerOfUid() {
    if (_owner) _owner->uidWasStored();
}

}  // namespace vellicor
