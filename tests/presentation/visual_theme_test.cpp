// tests/presentation/visual_theme_test.cpp — themes, their defaults and their files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scoped_preference.h"
#include "tests/support/temp_folder.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/presentation/visual_theme.h"

namespace vellicor {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::LogCapture;
using testing::ScopedEnvironment;
using testing::ScopedPreference;
using ::testing::StartsWith;
using testing::TempFolder;

class Theme : public ::testing::Test {
protected:
    fs::path file(const std::string& name) const { return files.path() / "Vellicor/styles" / name; }
    TempFolder files;
    ScopedEnvironment data{"XDG_DATA_HOME", files.path().string()};
    LogCapture log;
};

std::string form(const std::optional<Color>& color) { return color ? color->string() : "null"; }

TEST_F(Theme, EachHasItsDefaultsAndItsFile) {
    const auto content = create<QVVisualThemeDarkContent>();
    const std::shared_ptr<QVVisualTheme> others[] = {create<QVVisualTheme>(), create<QVVisualThemeLight>(),
                                                     create<QVVisualThemeDark>()};
    const std::tuple<std::string_view, std::string_view, std::string_view> defaults[] = {
        {"schemaBackgroundColor", "{1,1,1,1,", "{0.117647,0.117647,0.117647,1,"},
        {"pageLineColor", "null", "{0.666667,0.666667,0.666667,1,"},
        {"connectorDefault", "{0.5,0.5,0.5,0.8,", "{1,1,1,0.8,"},
        {"tableSelectedColor", "{0,0.59,0.27,0.6,", "{0,0.59,0.27,0.6,"},
        {"tableNotSelectedColor", "{0.38,0.88,0.31,0.8,", "{0.38,0.88,0.31,0.8,"},
        {"commentSelectedColor", "{0,0.27,0.59,0.6,", "{0.6,0.87,0.99,0.6,"},
        {"commentNotSelectedColor", "{0.38,0.46,0.88,0.8,", "{0.68,0.76,0.98,0.8,"},
    };
    for (const auto& [key, color, contentColor] : defaults) {
        for (const auto& theme : others) EXPECT_THAT(form(theme->colorForKey(key)), StartsWith(color)) << key;
        EXPECT_THAT(form(content->colorForKey(key)), StartsWith(contentColor)) << key;
    }
    const std::vector<std::string> files{others[0]->fileName(), others[1]->fileName(), others[2]->fileName(),
                                         content->fileName()};
    EXPECT_THAT(files, ElementsAre("default.theme", "light.theme", "default.theme", "darkContent.theme"));
    EXPECT_TRUE(fs::is_empty(file(""))) << "nothing is written before a colour changes";
}

TEST_F(Theme, EachClassHasOneSharedInstance) {
    const auto light = QVVisualThemeLight::visualTheme(), content = QVVisualThemeDarkContent::visualTheme();
    EXPECT_EQ(QVVisualTheme::visualThemeOfType(2), content);
    for (int type : {-1, 0, 1, 3}) EXPECT_EQ(QVVisualTheme::visualThemeOfType(type), light);
    EXPECT_NE(QVVisualTheme::visualTheme(), QVVisualThemeDark::visualTheme());
    EXPECT_EQ(create<QVVisualThemeDarkContent>()->classVisualTheme(), content);
}

TEST_F(Theme, AChangedColourIsThereAfterARestart) {
    create<QVVisualThemeLight>()->setColor(Color::sRGB(0.1, 0.2, 0.3, 0.4), "gridColor");
    EXPECT_THAT(TempFolder::read(file("light.theme")),
                ::testing::HasSubstr("<string>{0.1,0.2,0.3,0.4,sRGBColorSpace}</string>"));
    const auto again = create<QVVisualThemeLight>();
    EXPECT_EQ(form(again->gridColor()), "{0.1,0.2,0.3,0.4,sRGBColorSpace}");
    again->resetColors();
    EXPECT_EQ(form(create<QVVisualThemeLight>()->gridColor()), "{0,0,0,1,sRGBColorSpace}");
    EXPECT_EQ(form(create<QVVisualThemeDarkContent>()->gridColor()), "{0,0,0,1,sRGBColorSpace}");
    EXPECT_FALSE(fs::exists(file("darkContent.theme")));
}

TEST_F(Theme, TheBaseAndTheDarkThemeOverwriteEachOthersFile) {
    const auto base = create<QVVisualTheme>();
    create<QVVisualThemeDark>()->setColor(Color::sRGB(1, 0, 0), "gridColor");
    base->setColor(Color::sRGB(0, 1, 0), "connectorDefault");
    const auto dark = create<QVVisualThemeDark>();
    EXPECT_EQ(form(dark->gridColor()), "{0,0,0,1,sRGBColorSpace}");
    EXPECT_EQ(form(dark->connectorDefault()), "{0,1,0,1,sRGBColorSpace}");
}

TEST_F(Theme, KeysThatNoThemeKnowsSurvive) {
    files.write("Vellicor/styles/light.theme",
                "<plist><dict><key>gridColor</key><string>{1,0.5}</string><key>version</key><integer>3</integer>"
                "<key>halo</key><string>{0,0,1,1,sRGBColorSpace}</string>"
                "<key>connectorDefault</key><array/></dict></plist>");
    const auto theme = create<QVVisualThemeLight>();
    EXPECT_EQ(form(theme->gridColor()), "{1,0.5,0,1,sRGBColorSpace}");
    EXPECT_EQ(form(theme->connectorDefault()), "{0.5,0.5,0.5,0.8,sRGBColorSpace}") << "no text: the default stays";
    EXPECT_EQ(theme->colorForKey("version"), std::nullopt);
    theme->resetColors();
    EXPECT_EQ(form(create<QVVisualThemeLight>()->colorForKey("halo")), "{0,0,1,1,sRGBColorSpace}");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Theme, DamagedFilesLeaveTheDefaults) {
    for (const char* bytes : {"not a property list", "<plist version=\"1.0\"><dict><key>gridColor</key>",
                              "bplist00\xff\xff", "<plist version=\"1.0\"><array/></plist>"}) {
        const LogCapture reading;
        files.write("Vellicor/styles/light.theme", bytes);
        const auto theme = create<QVVisualThemeLight>();
        EXPECT_EQ(form(theme->gridColor()), "{0,0,0,1,sRGBColorSpace}") << bytes;
        EXPECT_FALSE(theme->loadStoredData());
        EXPECT_THAT(reading.lines(), AllOf(SizeIs(2), Each(StartsWith("error reading stored data ")))) << bytes;
        theme->resetColors();
        EXPECT_TRUE(theme->loadStoredData()) << "writing makes the file whole";
    }
    files.write("Vellicor/styles/light.theme", "");
    EXPECT_FALSE(create<QVVisualThemeLight>()->loadStoredData());
    EXPECT_THAT(log.lines(), IsEmpty()) << "an empty file is like none";
}

TEST_F(Theme, WithoutAPlaceForItsFileItStillHasColours) {
    files.write("Vellicor/styles", "a file stands in the way");
    const auto theme = create<QVVisualThemeLight>();
    theme->setColor(Color::sRGB(1, 0, 0), "gridColor");
    EXPECT_EQ(form(theme->gridColor()), "{1,0,0,1,sRGBColorSpace}");
    fs::remove(files.path() / "Vellicor/styles");
    fs::create_directories(file("light.theme"));
    EXPECT_FALSE(theme->saveFileData());
    EXPECT_EQ(form(create<QVVisualThemeLight>()->gridColor()), "{0,0,0,1,sRGBColorSpace}");
    const std::string inTheWay = "error creating theme directory: Not a directory";
    EXPECT_THAT(log.lines(), ElementsAre(inTheWay, inTheWay, "failed to write property list Is a directory",
                                         "error reading stored data Is a directory"));
}

TEST_F(Theme, PreferencesAreTakenOverWhereTheyAreSet) {
    const auto theme = create<QVVisualThemeLight>();
    const ScopedPreference selected("TableSelectedColor", "{0.5,0,0,1,sRGBColorSpace}"),
        connector("ConnectorDefault", "{0,0.5}");
    theme->updateFromPreferences();
    EXPECT_EQ(form(theme->tableSelectedColor()), "{0.5,0,0,1,sRGBColorSpace}");
    EXPECT_EQ(form(theme->connectorDefault()), "{0,0.5,0,1,sRGBColorSpace}");
    EXPECT_EQ(form(theme->tableBackgroundColor()), "{1,1,1,0.8,sRGBColorSpace}");
    EXPECT_FALSE(fs::exists(file("light.theme")));
}

TEST_F(Theme, AnArchiveGoesOverTheColoursOfItsClass) {
    const auto theme = create<QVVisualThemeLight>();
    theme->setColor(Color::sRGB(1, 0, 0), "gridColor");
    KeyedArchiver archiver;
    theme->encodeWithCoder(archiver);
    const auto copy =
        QVVisualTheme::initWithCoder<QVVisualThemeDarkContent>(KeyedUnarchiver::fromData(archiver.data()));
    EXPECT_EQ(form(copy->gridColor()), "{1,0,0,1,sRGBColorSpace}");
    EXPECT_EQ(form(copy->schemaBackgroundColor()), "{1,1,1,1,sRGBColorSpace}");
    EXPECT_EQ(form(copy->pageLineColor()), "{0.666667,0.666667,0.666667,1,sRGBColorSpace}") << "the archive has none";
}

}  // namespace
}  // namespace vellicor
