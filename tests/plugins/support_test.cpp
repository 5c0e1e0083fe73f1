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
using ::testing::IsEmpty;
using testing::LogCapture;
using testing::ScopedEnvironment;
using testing::ScopedPreference;
using testing::TempFolder;

TEST(SupportFolder, IsMadeWhenAskedForInTheUsersDataFolder) {
    const TempFolder files;
    const ScopedEnvironment data("XDG_DATA_HOME", (files.path() / "not yet").string());
    QVFileSystemManager& manager = QVFileSystemManager::sharedManager();
    EXPECT_EQ(manager.applicationSupportDirectoryPath(), files.path().string() + "/not yet/Vellicor/");
    EXPECT_TRUE(fs::is_directory(files.path() / "not yet"));
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
    std::vector<std::string> shown;
    auto previous = manager.setAlertHandler(
        [&](const Alert& alert) { shown = {alert.message, alert.button, alert.informativeText}; });
    EXPECT_EQ(manager.applicationSupportDirectory(), files.path().string() + "/Vellicor/");
    EXPECT_THAT(shown, ElementsAre("Unable to create Application support files", "Continue", "Not a directory"));

    manager.setAlertHandler(nullptr);
    const LogCapture log;
    manager.createApplicationSupportDirectory();
    EXPECT_THAT(log.lines(), ElementsAre("Unable to create Application support files: Not a directory"));
    manager.setAlertHandler(std::move(previous));
}

TEST(SupportFolder, AUserWithoutAnyFolderHasNone) {
    if (::getuid() != 0) GTEST_SKIP() << "only a privileged user can become one who is not known";
    const ScopedEnvironment home("HOME", std::nullopt), data("XDG_DATA_HOME", std::nullopt);
    EXPECT_EXIT(
        {
            if (::setuid(1'999'999'999) != 0) ::_exit(1);
            try {
                static_cast<void>(QVFileSystemManager::sharedManager().applicationSupportDirectoryPath());
            } catch (const SQLException& exception) {
                const bool told = exception.name() == "ApplicationSupportDirectoryFail" &&
                                  exception.reason() == "Could not identify application support directory";
                ::_exit(told ? 0 : 2);
            }
            ::_exit(3);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(SupportFolder, AnOpenPanelStartsInAFolder) {
    const TempFolder files;
    const std::string file = files.write("design/shop.xml", "").string();
    const std::string folder = (files.path() / "design").string();
    Preferences& preferences = Preferences::shared();
    const ScopedEnvironment home("HOME", files.path().string());
    const fs::path before = fs::current_path();
    fs::current_path(folder);
    const struct {
        std::string stored, expected;
        std::vector<std::string> logged;
    } kCases[] = {
        {file, folder, {}},
        {folder, folder, {}},
        {"~/design/shop.xml", folder, {}},
        {"shop.xml", folder, {}},
        {folder + "/gone", folder + "/gone", {"invalid get getResourceValue No such file or directory"}},
        {"", "", {}},
    };
    for (const auto& row : kCases) {
        const LogCapture log;
        const ScopedPreference stored("NSNavLastRootDirectory", row.stored);
        QVFileSystemManager::fixOpenPanelNavDirectory();
        EXPECT_EQ(preferences.stringForKey("NSNavLastRootDirectory"), row.expected);
        EXPECT_EQ(log.lines(), row.logged);
    }
    fs::current_path(before);
    QVFileSystemManager::fixOpenPanelNavDirectory();
    EXPECT_EQ(preferences.objectForKey("NSNavLastRootDirectory"), std::nullopt);
    const ScopedPreference off("disableNavigationPanelFix"), stored("NSNavLastRootDirectory", file);
    QVFileSystemManager::fixOpenPanelNavDirectory();
    EXPECT_EQ(preferences.stringForKey("NSNavLastRootDirectory"), file);
}

TEST(ColorPreferences, AreRememberedUntilAPreferenceChanges) {
    SQLPrefs prefs;
    Preferences& preferences = Preferences::shared();
    const ScopedPreference restored("CommentSelectedColor", "{0.5,0.25,1,0.5,sRGBColorSpace}");
    EXPECT_EQ(prefs.colorForKey("CommentSelectedColor"), Color::sRGB(0.5, 0.25, 1, 0.5));
    EXPECT_EQ(prefs.colorForKey("no such colour"), Color::white());

    prefs.setColor({0.25, 0, 0, 1, ColorSpace::DeviceRGB}, "CommentSelectedColor");
    EXPECT_EQ(preferences.stringForKey("CommentSelectedColor"), "{0.25,0,0,1,sRGBColorSpace}");
    EXPECT_EQ(prefs.colorForKey("CommentSelectedColor").space, ColorSpace::DeviceRGB) << "remembered as it was given";
    {
        const ScopedPreference any("any other preference");
        EXPECT_EQ(prefs.colorForKey("CommentSelectedColor").space, ColorSpace::SRGB) << "read again";
    }
    preferences.setObject("{1,0,0}", "CommentSelectedColor");
    EXPECT_EQ(prefs.colorForKey("CommentSelectedColor"), (Color{1, 0, 0, 1, ColorSpace::DeviceRGB}));
}

TEST(ColorPreferences, ADefaultNeverReplacesAChoice) {
    SQLPrefs prefs;
    Preferences& preferences = Preferences::shared();
    EXPECT_EQ(prefs.colorForKey("ConnectorDefault"), Color::white());
    prefs.setDefaultColor(Color::sRGB(0, 0, 1), "ConnectorDefault");
    EXPECT_EQ(prefs.colorForKey("ConnectorDefault"), Color::sRGB(0, 0, 1));
    prefs.setDefaultColor(Color::sRGB(1, 0, 0), "ConnectorDefault");
    EXPECT_EQ(preferences.stringForKey("ConnectorDefault"), "{0,0,1,1,sRGBColorSpace}");
    preferences.removeObject("ConnectorDefault");
    EXPECT_EQ(prefs.colorForKey("ConnectorDefault"), Color::white());
}

}  // namespace
}  // namespace vellicor
