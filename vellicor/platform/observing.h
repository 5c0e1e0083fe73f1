// vellicor/platform/observing.h — being told before and after a value with a key changes.
#pragma once

#include <string>
#include <string_view>

#include "vellicor/platform/observer_list.h"

namespace vellicor {

/// Told of changes of the keys it registered for. Implement only what matters.
class KeyObserver {
public:
    virtual ~KeyObserver() = default;
    virtual void willChangeValue(const void* /*object*/, std::string_view /*key*/) {}
    virtual void didChangeValue(const void* /*object*/, std::string_view /*key*/) {}
};

/// The observers of an object's keys. They are not kept alive: remove them, or hold the guard that `observe` answers.
class KeyObserverList {
public:
    void add(KeyObserver& observer, std::string_view key) { _registrations.add({&observer, std::string(key)}); }
    [[nodiscard]] Observation observe(KeyObserver& observer, std::string_view key) {
        return _registrations.observe({&observer, std::string(key)});
    }
    /// The oldest registration of this observer for this key; nothing when there is none.
    void remove(const KeyObserver& observer, std::string_view key);
    void willChange(const void* object, std::string_view key) const;
    void didChange(const void* object, std::string_view key) const;

private:
    struct Registration {
        KeyObserver* observer;
        std::string key;
    };
    ObserverList<Registration> _registrations;
};

}  // namespace vellicor
