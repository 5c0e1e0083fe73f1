// vellicor/plugins/prefs.h — colours among the user's preferences.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "vellicor/platform/color.h"
#include "vellicor/platform/guarded.h"
#include "vellicor/platform/notifications.h"

namespace vellicor {

/// Reads and writes preferences whose value is the text form of a colour, and remembers what it read until any
/// preference changes.
class SQLPrefs {
public:
    static SQLPrefs& sharedPrefs();
    SQLPrefs();
    SQLPrefs(const SQLPrefs&) = delete;
    SQLPrefs& operator=(const SQLPrefs&) = delete;

    /// White when the preference is absent.
    [[nodiscard]] Color colorForKey(std::string_view key);
    void setColor(const Color& color, std::string_view key);
    /// Sets the colour unless the preference has a value.
    void setDefaultColor(const Color& color, std::string_view key);
    /// Forgets what was read. Called after every change of a preference.
    void preferencesChanged();

private:
    Guarded<std::map<std::string, Color, std::less<>>> _colorKeyDictionary;
    Observation _preferences;
};

}  // namespace vellicor
