// vellicor/platform/observing.cpp — telling key observers.
#include "vellicor/platform/observing.h"

namespace vellicor {

void KeyObserverList::remove(const KeyObserver& observer, std::string_view key) {
    _registrations.removeFirst([&](const Registration& registration) {
        return registration.observer == &observer && registration.key == key;
    });
}

void KeyObserverList::willChange(const void* object, std::string_view key) const {
    _registrations.tell([&](const Registration& registration) { return registration.key == key; },
                        [&](const Registration& registration) { registration.observer->willChangeValue(object, key); });
}

void KeyObserverList::didChange(const void* object, std::string_view key) const {
    _registrations.tell([&](const Registration& registration) { return registration.key == key; },
                        [&](const Registration& registration) { registration.observer->didChangeValue(object, key); });
}

}  // namespace vellicor
