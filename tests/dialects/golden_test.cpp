// tests/dialects/golden_test.cpp — classic scripts of whole documents, against scripts that were derived by hand.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "tests/support/temp_folder.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {
namespace {

class GoldenScript : public ::testing::TestWithParam<std::tuple<const char*, const char*>> {};

TEST_P(GoldenScript, IsWrittenByteForByte) {
    const std::filesystem::path folder = VELLICOR_SOURCE_DIR;
    const auto [name, dialect] = GetParam();
    const bool isNasty = std::string_view(name) == "nasty";
    std::vector<std::unique_ptr<ScopedPreference>> preferences;
    if (isNasty)
        for (const char* key : {prefs::quoteReservedWords, prefs::autoQuoteIdentifiersWithWhitespace,
                                prefs::canIgnoreObjectsOnExport, prefs::usePostgresComments})
            preferences.push_back(std::make_unique<ScopedPreference>(key));
    const auto loaded = loadDocument(folder / (isNasty ? "tests/golden" : "examples") / (std::string(name) + ".xml"));
    const std::string file = std::string(name) + "." + lowercased(dialect) + ".sql";
    const std::string expected = TempFolder::read(folder / "tests/golden" / file);
    ASSERT_NE(expected, "");
    EXPECT_EQ(scriptOf(dialect, *loaded.container), expected);
}

INSTANTIATE_TEST_SUITE_P(All, GoldenScript,
                         ::testing::Combine(::testing::Values("shop", "warehouse", "legacy", "nasty"),
                                            ::testing::Values("SQLServer", "sybase", "Oracle", "Redshift", "FileMaker",
                                                              "OpenBase", "mysql", "postgres", "SQLite")),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param)) + "_" + std::get<1>(info.param);
                         });

}  // namespace
}  // namespace vellicor::testing
