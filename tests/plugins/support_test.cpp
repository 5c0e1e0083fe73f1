// tests/plugins/support_test.cpp — the support folder and colours among the preferences.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/log_capture.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scoped_preference.h"
#include "tests/support/temp_folder.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/plugins/file_system_manager.h"
#include "vellicor/plugins/prefs.h"

namespace vellicor {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using testing::LogCapture;
using testing::ScopedEnvironment;
using testing::ScopedPreference;
using testing::TempFolder;

TEST(SupportFolder, IsMadeWhenAskedForInTheUsersDataFolder) {
    const TempFolder files;
    const ScopedEnvironment data("XDG_DATA_HOME", (files.path() / "not yet").string());
    QVFileSystemManager& manager = QVFileSystemManager::sharedManager();
    EXPECT_EQ(manager.applicationSupportDirectoryPath(), files.path().string() + "/not yet/Vellicor/");
    EXPECT_EQ(fs::status(files.path() / "not yet").permissions(), fs::perms::owner_all);
    EXPECT_FALSE(manager.applicationSupportDirectoryExists());
    EXPECT_EQ(manager.applicationSupportURL(), manager.applicationSupportDirectoryPath());
    EXPECT_TRUE(manager.applicationSupportDirectoryExists());
}

TEST(SupportFolder, TheUserIsToldWhenItCannotBeMade) {
    const TempFolder files;
    const ScopedEnvironment data("XDG_DATA_HOME", files.path().string());
    files.write("Vellicor", "a file stands in the way");
    QVFileSystemManager& manager = QVFileSystemManager::sharedManager();
    const LogCapture log;
    EXPECT_EQ(manager.applicationSupportDirectory(), files.path().string() + "/Vellicor/");
    EXPECT_THAT(log.lines(), ElementsAre("Unable to create Application support files: Not a directory"));
    std::vector<std::string> shown;
    auto previous = manager.setAlertHandler(
        [&](const Alert& alert) { shown = {alert.message, alert.button, alert.informativeText}; });
    manager.createApplicationSupportDirectory();
    EXPECT_THAT(shown, ElementsAre("Unable to create Application support files", "Continue", "Not a directory"));
    manager.setAlertHandler(std::move(previous));
}

TEST(SupportFolder, AUserWithoutAnyFolderHasNone) {
    if (::getuid() != 0) GTEST_SKIP() << "only a privileged user can become one who is not known";
    const ScopedEnvironment home("HOME", std::nullopt), data("XDG_DATA_HOME", std::nullopt);
    const auto failure = []() -> std::string {
        try {
            return QVFileSystemManager::sharedManager().applicationSupportDirectoryPath();
        } catch (const SQLException& exception) {
            return exception.name() + ": " + exception.reason();
        }
    };
    const std::string told = "ApplicationSupportDirectoryFail: Could not identify application support directory";
    const auto code = [&] { return ::setuid(1'999'999'999) == 0 && failure() == told ? 0 : 1; };
    EXPECT_EXIT(::_exit(code()), ::testing::ExitedWithCode(0), "");
}

TEST(SupportFolder, AnOpenPanelStartsInAFolder) {
    const TempFolder files;
    const std::string file = files.write("design/shop.xml", "").string();
    const std::string folder = (files.path() / "design").string();
    const auto fixed = [] {
        QVFileSystemManager::fixOpenPanelNavDirectory();
        return Preferences::shared().stringForKey("NSNavLastRootDirectory");
    };
    const ScopedEnvironment home("HOME", files.path().string());
    const fs::path before = fs::current_path();
    fs::current_path(folder);
    const std::tuple<std::string, std::string, std::vector<std::string>> cases[] = {
        {file, folder, {}},
        {"~/design/shop.xml", folder, {}},
        {"shop.xml", folder, {}},
        {folder + "/gone", folder + "/gone", {"invalid get getResourceValue No such file or directory"}},
        {"", "", {}},
    };
    for (const auto& [path, expected, logged] : cases) {
        const LogCapture log;
        const ScopedPreference stored("NSNavLastRootDirectory", path);
        EXPECT_EQ(fixed(), expected);
        EXPECT_EQ(log.lines(), logged);
    }
    fs::current_path(before);
    const ScopedPreference off("disableNavigationPanelFix"), stored("NSNavLastRootDirectory", file);
    EXPECT_EQ(fixed(), file);
}

TEST(ColorPreferences, AreRememberedUntilAPreferenceChanges) {
    SQLPrefs prefs;
    const std::string key = "CommentSelectedColor";
    const ScopedPreference restored(key, "{0.5,0.25,1,0.5,sRGBColorSpace}");
    EXPECT_EQ(prefs.colorForKey(key), Color::sRGB(0.5, 0.25, 1, 0.5));

    prefs.setColor({0.25, 0, 0, 1, ColorSpace::DeviceRGB}, key);
    EXPECT_EQ(Preferences::shared().stringForKey(key), "{0.25,0,0,1,sRGBColorSpace}");
    EXPECT_EQ(prefs.colorForKey(key).space, ColorSpace::DeviceRGB) << "remembered as it was given";
    const ScopedPreference any("any other preference");
    EXPECT_EQ(prefs.colorForKey(key).space, ColorSpace::SRGB) << "read again";
}

TEST(ColorPreferences, ADefaultNeverReplacesAChoice) {
    SQLPrefs prefs;
    EXPECT_EQ(prefs.colorForKey("ConnectorDefault"), Color::white());
    prefs.setDefaultColor(Color::sRGB(0, 0, 1), "ConnectorDefault");
    EXPECT_EQ(prefs.colorForKey("ConnectorDefault"), Color::sRGB(0, 0, 1));
    prefs.setDefaultColor(Color::sRGB(1, 0, 0), "ConnectorDefault");
    EXPECT_EQ(Preferences::shared().stringForKey("ConnectorDefault"), "{0,0,1,1,sRGBColorSpace}");
    Preferences::shared().removeObject("ConnectorDefault");
}

}  // namespace
}  // namespace vellicor
