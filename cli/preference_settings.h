// cli/preference_settings.h — preferences from files and from the command line.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "cli/session.h"
#include "vellicor/platform/known_preferences.h"
#include "vellicor/platform/value.h"

namespace vellicor::cli {

/// `config`, or the user's own file, in the support folder, when that is empty. It need not exist. A user without a
/// home is a `Failure`.
[[nodiscard]] std::filesystem::path preferencesFile(const std::string& config);

/// What that file holds. Nothing for a missing one of the user's own; another that is missing, and one that holds
/// something else, is a `Failure`; `mayBeMissing` allows the first.
[[nodiscard]] Value::Map storedPreferences(const std::string& config, bool mayBeMissing = false);
/// Replaces the file; its folder is made when it is missing.
void writePreferences(const std::filesystem::path& file, const Value::Map& preferences);

/// The value for a key as a person writes it. A key that nobody knows is a warning, a value of the wrong type a
/// `Failure`.
[[nodiscard]] Value preferenceFromText(std::string_view key, std::string_view text, Messages& messages);
/// A value as people read it.
[[nodiscard]] std::string preferenceText(const Value& value);

/// What a run of the tool starts with when nobody set the preference, as people read it.
[[nodiscard]] std::string defaultPreferenceText(const KnownPreference& preference);

/// Fills the shared preferences: what the tool starts with, then the file, then the single settings, then --classic;
/// what comes later wins.
void applyPreferences(const PreferenceOptions& options, Messages& messages);

}  // namespace vellicor::cli
