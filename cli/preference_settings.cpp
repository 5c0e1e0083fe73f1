// cli/preference_settings.cpp — reading, checking and writing preferences.
#include "cli/preference_settings.h"

#include <algorithm>
#include <iterator>

#include "cli/failure.h"
#include "cli/nearest_name.h"
#include "vellicor/platform/files.h"
#include "vellicor/platform/json.h"
#include "vellicor/platform/library_paths.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/property_list.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/plugins/file_system_manager.h"

namespace vellicor::cli {

namespace {

/// The preferences that the tool turns on where the library leaves them off.
constexpr std::string_view kOnByDefault[] = {prefs::runnableScripts, prefs::losslessDocuments};

bool isOnByDefault(std::string_view key) { return std::ranges::find(kOnByDefault, key) != std::end(kOnByDefault); }

}  // namespace

std::filesystem::path preferencesFile(const std::string& config) {
    if (!config.empty()) return config;
    if (!userDataFolder())
        throw Failure(kNoInput, "there is no home folder for your preferences; choose a file with --config");
    return QVFileSystemManager::sharedManager().applicationSupportDirectoryPath() / "preferences.plist";
}

Value::Map storedPreferences(const std::string& config, bool mayBeMissing) {
    std::error_code ignored;
    // Asking for the support folder makes the folder around it, which reading must not do.
    if (config.empty() && !(userDataFolder() && std::filesystem::exists(*userDataFolder(), ignored))) return {};
    const std::filesystem::path file = preferencesFile(config);
    if ((config.empty() || mayBeMissing) && !std::filesystem::exists(file, ignored)) return {};
    std::string reason;
    const auto bytes = readFile(file, reason);
    if (!bytes)
        throw Failure(kNoInput,
                      text("%@ cannot be read: %@; choose another file with --config", file.string(), reason));
    const auto list = valueFromPropertyList(*bytes, reason);
    if (list && list->asMap()) return *list->asMap();
    throw Failure(kUnreadable,
                  text("%@ is no property list of preferences: %@; correct it, or choose another with --config",
                       file.string(), list ? "it holds no dictionary" : reason));
}

void writePreferences(const std::filesystem::path& file, const Value::Map& preferences) {
    std::string reason;
    std::error_code error;
    if (const auto folder = file.parent_path(); !folder.empty()) std::filesystem::create_directories(folder, error);
    const auto bytes = propertyListText(preferences, reason);
    if (!bytes || !writeFileAtomically(file, *bytes, reason))
        throw Failure(kCannotWrite,
                      text("%@ cannot be written: %@; choose another file with --config", file.string(), reason));
}

Value preferenceFromText(std::string_view key, std::string_view written, Messages& messages) {
    const KnownPreference* known = knownPreference(key);
    if (!known) {
        std::vector<std::string> keys;
        for (const KnownPreference& preference : knownPreferences()) keys.emplace_back(preference.key);
        messages.warning(text("nothing in the library reads a preference '%@'%@", key, suggestion(key, keys)));
        return Value(written);
    }
    if (auto value = preferenceValue(known->type, written)) return *value;
    throw Failure(kBadUse, text("'%@' is no value for %@; give %@", written, key,
                                known->type == PreferenceType::Flag ? "true or false" : "a whole number"));
}

std::string preferenceText(const Value& value) {
    if (const bool* flag = value.asBoolean()) return *flag ? "true" : "false";
    if (const std::string* words = value.asText()) return *words;
    return jsonText(value);
}

std::string defaultPreferenceText(const KnownPreference& preference) {
    return isOnByDefault(preference.key) ? "true" : std::string(preferenceDefault(preference.type));
}

void applyPreferences(const PreferenceOptions& options, Messages& messages) {
    Preferences& preferences = Preferences::shared();
    for (std::string_view key : kOnByDefault) preferences.setBool(true, key);
    for (const auto& [key, value] : storedPreferences(options.config)) preferences.setObject(value, key);
    for (const std::string& setting : options.settings) {
        const auto equals = setting.find('=');
        if (equals == 0 || equals == std::string::npos)
            throw Failure(kBadUse, text("'%@' sets nothing; write --set KEY=VALUE", setting));
        const std::string key = setting.substr(0, equals);
        preferences.setObject(preferenceFromText(key, setting.substr(equals + 1), messages), key);
    }
    if (options.classic)
        for (std::string_view key : kOnByDefault) preferences.setBool(false, key);
}

}  // namespace vellicor::cli
