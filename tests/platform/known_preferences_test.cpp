// tests/platform/known_preferences_test.cpp — the table of preferences names every key, once.
#include <gtest/gtest.h>

#include <set>

#include "tests/support/temp_folder.h"
#include "vellicor/platform/known_preferences.h"
#include "vellicor/platform/regular_expression.h"

namespace vellicor {

TEST(KnownPreferences, HoldsEveryKeyOnce) {
    const std::string header = testing::TempFolder::read(VELLICOR_SOURCE_DIR "/vellicor/platform/preference_keys.h");
    std::multiset<std::string> declared, listed;
    for (const auto& match : RegularExpression("= \"([^\"]+)\";").allMatches(header))
        declared.emplace(match.group(1, header));
    for (const KnownPreference& preference : knownPreferences()) {
        listed.emplace(preference.key);
        EXPECT_FALSE(preference.meaning.empty()) << preference.key;
        EXPECT_EQ(knownPreference(preference.key), &preference);
    }
    EXPECT_GT(declared.size(), 30u);
    EXPECT_EQ(declared, listed);
    EXPECT_EQ(knownPreference("quoteidentifiersonexport"), nullptr);
}

TEST(KnownPreferences, ReadsWhatPeopleWrite) {
    for (const char* yes : {"true", "YES", "On", "1"})
        EXPECT_EQ(preferenceValue(PreferenceType::Flag, yes), Value::boolean(true));
    for (const char* no : {"false", "No", "off", "0"})
        EXPECT_EQ(preferenceValue(PreferenceType::Flag, no), Value::boolean(false));
    for (const char* neither : {"", "2", "maybe", " true"})
        EXPECT_FALSE(preferenceValue(PreferenceType::Flag, neither)) << neither;
    EXPECT_EQ(preferenceValue(PreferenceType::Integer, "-12"), Value::integer(-12));
    for (const char* other : {"", "1.5", "12 ", "99999999999999999999"})
        EXPECT_FALSE(preferenceValue(PreferenceType::Integer, other)) << other;
    EXPECT_EQ(preferenceValue(PreferenceType::Text, ""), Value(""));
}

}  // namespace vellicor
