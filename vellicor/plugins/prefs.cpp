// vellicor/plugins/prefs.cpp — the cache in front of colour preferences.
#include "vellicor/plugins/prefs.h"

#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text.h"

namespace vellicor {

SQLPrefs& SQLPrefs::sharedPrefs() {
    static auto& shared = *new SQLPrefs;  // lives as long as the process
    return shared;
}

SQLPrefs::SQLPrefs()
    : _preferences(NotificationCenter::observe(notifications::preferencesChanged, &Preferences::shared(),
                                               [this](std::string_view, const void*) { preferencesChanged(); })) {}

Color SQLPrefs::colorForKey(std::string_view key) {
    auto colors = _colorKeyDictionary.lock();
    if (auto found = colors->find(key); found != colors->end()) return found->second;
    const Color color = Color::colorWithString(Preferences::shared().stringForKey(key));
    colors->emplace(key, color);
    return color;
}

void SQLPrefs::setColor(const Color& color, std::string_view key) {
    Preferences::shared().setObject(color.string(), key);  // empties the cache
    auto colors = _colorKeyDictionary.lock();
    colors->insert_or_assign(std::string(key), color);
}

void SQLPrefs::setDefaultColor(const Color& color, std::string_view key) {
    if (!Preferences::shared().objectForKey(key)) setColor(color, key);
}

void SQLPrefs::preferencesChanged() { _colorKeyDictionary.lock()->clear(); }

}  // namespace vellicor
