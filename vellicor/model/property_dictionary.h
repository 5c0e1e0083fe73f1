// vellicor/model/property_dictionary.h — the notifying store of an object's properties.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/model/property_map.h"
#include "vellicor/platform/guarded.h"
#include "vellicor/platform/observing.h"
#include "vellicor/platform/value.h"

namespace vellicor {

/// Holds one object's properties. Every change is announced around the owner's hooks, all under the dictionary's own
/// lock; hooks may read the dictionary again but must not wait for another thread that needs it.
class QVMutableNotifyingPropertyDictionary {
public:
    /// A copy of the entries, in the order in which their keys were first stored.
    struct Snapshot : std::vector<std::pair<std::string, PropertyValue>> {
        using vector::vector;
        /// Null when the key is absent.
        [[nodiscard]] const PropertyValue* valueForKey(std::string_view key) const;
        [[nodiscard]] bool hasKey(std::string_view key) const { return valueForKey(key) != nullptr; }
        /// Empty when the key is absent.
        [[nodiscard]] std::string textForKey(std::string_view key) const;
    };

    /// Asserts "owner object must not be nil".
    explicit QVMutableNotifyingPropertyDictionary(SQLObject* owner);

    /// Null when the key is absent.
    [[nodiscard]] std::optional<PropertyValue> valueForKey(std::string_view key) const;
    [[nodiscard]] std::optional<PropertyValue> objectForKey(std::string_view key) const { return valueForKey(key); }
    /// The value as text; empty when absent.
    [[nodiscard]] std::string textForKey(std::string_view key) const;
    [[nodiscard]] bool hasKey(std::string_view key) const;
    /// In the order in which they were first stored.
    [[nodiscard]] std::vector<std::string> allKeys() const;
    [[nodiscard]] std::vector<std::string> keyEnumerator() const { return allKeys(); }
    [[nodiscard]] std::size_t count() const;
    /// Every entry, in the order of `allKeys`.
    [[nodiscard]] Snapshot entries() const;
    /// Calls `read` with the store while the lock is held; no reference into it may outlive the call.
    void read(const std::function<void(const PropertyMap&)>& read) const;
    /// The store itself; the lock is held only while the reference is taken.
    [[nodiscard]] const PropertyMap& internalProperties() const;

    /// One announced change: key observers hear a will-change, the owner's observers a will-change of "properties"; the
    /// owner's hook runs; the entry is stored; the key observers hear the will-change once more, the owner's observers
    /// a did-change; the owner's second hook runs.
    void setValue(PropertyValue value, std::string_view key);
    void setObject(PropertyValue value, std::string_view key) { setValue(std::move(value), key); }
    /// Announced like a change, also when the key is absent.
    void removeObjectForKey(std::string_view key);
    /// Removes each key of a snapshot by `removeObjectForKey`.
    void removeAllObjects();

    /// Bulk merges: no announcement and no hook, so they are never recorded for undo.
    void addEntriesFromDictionary(const Snapshot& entries);
    void addEntriesFromDictionary(const QVMutableNotifyingPropertyDictionary& other) {
        addEntriesFromPropertyDictionary(other);
    }
    void addEntriesFromPropertyDictionary(const QVMutableNotifyingPropertyDictionary& other);

    [[nodiscard]] SQLObject* ownerObject() const { return _owner; }
    void setOwnerObject(SQLObject* owner) { _owner = owner; }
    /// Called after every change; does nothing.
    void notifyChange() {}

    /// Observers of one key. They hear two will-changes a change and never a did-change.
    void addObserver(KeyObserver& observer, std::string_view key) { _observers.add(observer, key); }
    void removeObserver(const KeyObserver& observer, std::string_view key) { _observers.remove(observer, key); }
    /// Until the guard goes.
    [[nodiscard]] Observation observe(KeyObserver& observer, std::string_view key) {
        return _observers.observe(observer, key);
    }

    /// Stores a fresh uid, made when somebody first looks or it changes.
    void promiseUid();

private:
    void change(std::string_view key, std::optional<PropertyValue> value);
    void change(PropertyMap& map, std::string_view key, std::optional<PropertyValue> value);
    void tellOwnerOfUid();
    void fulfilUid(PropertyMap& map) const;

    SQLObject* _owner;
    mutable Guarded<PropertyMap> _map;
    mutable bool _uidPromised = false;  // guarded by the map's lock
    KeyObserverList _observers;
};

}  // namespace vellicor
