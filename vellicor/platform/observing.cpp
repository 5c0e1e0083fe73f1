// vellicor/platform/observing.cpp — registrations of key observers.
#include "vellicor/platform/observing.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace vellicor {

struct KeyObserverList::Registrations {
    using Entry = std::pair<KeyObserver*, std::string>;
    std::vector<Entry> entries;

    std::vector<Entry>::iterator find(const KeyObserver& observer, std::string_view key) {
        return std::find_if(entries.begin(), entries.end(),
                            [&](const Entry& entry) { return entry.first == &observer && entry.second == key; });
    }

    /// Tells everybody who observes `key`, except those who were removed by an observer told before them.
    template <class Tell>
    void tell(std::string_view key, Tell tell) {
        std::vector<KeyObserver*> observers;
        for (const Entry& entry : entries) {
            if (entry.second == key) observers.push_back(entry.first);
        }
        for (KeyObserver* observer : observers) {
            if (find(*observer, key) != entries.end()) tell(*observer);
        }
    }
};

KeyObserverList::KeyObserverList() = default;
KeyObserverList::~KeyObserverList() = default;

void KeyObserverList::add(KeyObserver& observer, std::string_view key) {
    if (!_registrations) _registrations = std::make_unique<Registrations>();
    _registrations->entries.emplace_back(&observer, key);
}

void KeyObserverList::remove(KeyObserver& observer, std::string_view key) {
    if (!_registrations) return;
    auto entry = _registrations->find(observer, key);
    if (entry != _registrations->entries.end()) _registrations->entries.erase(entry);
}

void KeyObserverList::willChange(const void* object, std::string_view key) const {
    if (!_registrations) return;
    _registrations->tell(key, [&](KeyObserver& observer) { observer.willChangeValue(object, key); });
}

void KeyObserverList::didChange(const void* object, std::string_view key) const {
    if (!_registrations) return;
    _registrations->tell(key, [&](KeyObserver& observer) { observer.didChangeValue(object, key); });
}

}  // namespace vellicor
