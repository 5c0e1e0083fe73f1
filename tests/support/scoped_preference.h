// tests/support/scoped_preference.h — preferences that return to what they were at the end of a scope.
#pragma once

#include <optional>
#include <string>

#include "vellicor/platform/preferences.h"

namespace vellicor::testing {

class ScopedPreference {
public:
    ScopedPreference(std::string key, const Value& value)
        : _key(std::move(key)), _previous(Preferences::shared().objectForKey(_key)) {
        Preferences::shared().setObject(value, _key);
    }
    explicit ScopedPreference(std::string key) : ScopedPreference(std::move(key), Value::boolean(true)) {}
    ~ScopedPreference() {
        if (_previous)
            Preferences::shared().setObject(*_previous, _key);
        else
            Preferences::shared().removeObject(_key);
    }
    ScopedPreference(const ScopedPreference&) = delete;
    ScopedPreference& operator=(const ScopedPreference&) = delete;

private:
    std::string _key;
    std::optional<Value> _previous;
};

}  // namespace vellicor::testing
