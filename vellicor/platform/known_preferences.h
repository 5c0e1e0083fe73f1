// vellicor/platform/known_preferences.h — the table of preferences that the library reads, for people who set them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "vellicor/platform/value.h"

namespace vellicor {

enum class PreferenceType { Flag, Integer, Text };

/// One key, what it takes and what it does. An absent key reads as false, 0 or null.
struct KnownPreference {
    std::string_view key;
    PreferenceType type;
    std::string_view meaning;
};

/// Every key of `preference_keys.h`, by subject.
[[nodiscard]] std::span<const KnownPreference> knownPreferences();
/// Keys compare exactly; null for one that is not in the table.
[[nodiscard]] const KnownPreference* knownPreference(std::string_view key);
/// "bool", "int" or "text".
[[nodiscard]] std::string_view preferenceTypeName(PreferenceType type);
/// What an absent key of the type reads as, for people; empty for texts.
[[nodiscard]] std::string_view preferenceDefault(PreferenceType type);
/// The value that a person writes as `text`: true, yes, on, 1 and their opposites in any case for a flag, a whole
/// decimal number for an integer. Null when the text is neither.
[[nodiscard]] std::optional<Value> preferenceValue(PreferenceType type, std::string_view text);

}  // namespace vellicor
