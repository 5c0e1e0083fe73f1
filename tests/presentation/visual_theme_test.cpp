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
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::LogCapture;
using testing::ScopedEnvironment;
using testing::ScopedPreference;
using testing::TempFolder;

class Theme : public ::testing::Test {
protected:
    fs::path file(const std::string& name) const { return files.path() / "Vellicor/styles" / name; }
    void writeTheme(const std::string& name, const std::string& entries) const {
        files.write("Vellicor/styles/" + name, "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>");
    }

    TempFolder files;
    ScopedEnvironment data{"XDG_DATA_HOME", files.path().string()};
    LogCapture log;
};

std::string form(const std::optional<Color>& color) { return color ? color->string() : "null"; }

TEST_F(Theme, EachHasItsDefaultsAndItsFile) {
    const auto base = create<QVVisualTheme>(),
               light = std::static_pointer_cast<QVVisualTheme>(create<QVVisualThemeLight>()),
               dark = std::static_pointer_cast<QVVisualTheme>(create<QVVisualThemeDark>()),
               content = std::static_pointer_cast<QVVisualTheme>(create<QVVisualThemeDarkContent>());
    const struct {
        std::string_view key;
        std::string_view base, content;
    } kDefaults[] = {
        {"schemaBackgroundColor", "{1,1,1,1,sRGBColorSpace}", "{0.117647,0.117647,0.117647,1,sRGBColorSpace}"},
        {"gridColor", "{0,0,0,1,sRGBColorSpace}", "{0,0,0,1,sRGBColorSpace}"},
        {"pageLineColor", "null", "{0.666667,0.666667,0.666667,1,sRGBColorSpace}"},
        {"connectorDefault", "{0.5,0.5,0.5,0.8,sRGBColorSpace}", "{1,1,1,0.8,sRGBColorSpace}"},
        {"tableSelectedColor", "{0,0.59,0.27,0.6,sRGBColorSpace}", "{0,0.59,0.27,0.6,sRGBColorSpace}"},
        {"tableNotSelectedColor", "{0.38,0.88,0.31,0.8,sRGBColorSpace}", "{0.38,0.88,0.31,0.8,sRGBColorSpace}"},
        {"tableBackgroundColor", "{1,1,1,0.8,sRGBColorSpace}", "{1,1,1,0.8,sRGBColorSpace}"},
        {"commentSelectedColor", "{0,0.27,0.59,0.6,sRGBColorSpace}", "{0.6,0.87,0.99,0.6,sRGBColorSpace}"},
        {"commentNotSelectedColor", "{0.38,0.46,0.88,0.8,sRGBColorSpace}", "{0.68,0.76,0.98,0.8,sRGBColorSpace}"},
        {"commentBackgroundColor", "{1,1,1,0.8,sRGBColorSpace}", "{1,1,1,0.8,sRGBColorSpace}"},
    };
    for (const auto& row : kDefaults) {
        for (const auto& theme : {base, light, dark}) EXPECT_EQ(form(theme->colorForKey(row.key)), row.base) << row.key;
        EXPECT_EQ(form(content->colorForKey(row.key)), row.content) << row.key;
    }
    EXPECT_EQ(form(content->pageLineColor()), kDefaults[2].content);
    EXPECT_EQ(base->fileName(), "default.theme");
    EXPECT_EQ(light->fileName(), "light.theme");
    EXPECT_EQ(dark->fileName(), "default.theme");
    EXPECT_EQ(content->fileName(), "darkContent.theme");
    EXPECT_FALSE(dark->useDarkContentArea());
    EXPECT_TRUE(content->useDarkContentArea());
    EXPECT_TRUE(fs::is_empty(files.path() / "Vellicor/styles")) << "nothing is written before a colour changes";
}

TEST_F(Theme, EachClassHasOneSharedInstance) {
    const auto light = QVVisualThemeLight::visualTheme(), content = QVVisualThemeDarkContent::visualTheme();
    EXPECT_EQ(QVVisualTheme::visualThemeOfType(2), content);
    for (int type : {-1, 0, 1, 3}) EXPECT_EQ(QVVisualTheme::visualThemeOfType(type), light);
    EXPECT_EQ(QVVisualTheme::darkTheme(), content);
    EXPECT_EQ(QVVisualTheme::lightTheme(), light);
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
    writeTheme("light.theme",
               "<key>gridColor</key><string>{1,0.5}</string><key>halo</key><string>{0,0,1,1,sRGBColorSpace}</string>"
               "<key>connectorDefault</key><array/><key>version</key><integer>3</integer>");
    const auto theme = create<QVVisualThemeLight>();
    EXPECT_EQ(form(theme->gridColor()), "{1,0.5,0,1,sRGBColorSpace}");
    EXPECT_EQ(form(theme->connectorDefault()), "{0.5,0.5,0.5,0.8,sRGBColorSpace}")
        << "not a text, so the default stays";
    EXPECT_EQ(theme->colorForKey("version"), std::nullopt);
    theme->resetColors();
    EXPECT_EQ(form(create<QVVisualThemeLight>()->colorForKey("halo")), "{0,0,1,1,sRGBColorSpace}");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Theme, DamagedFilesLeaveTheDefaults) {
    const std::string kDamaged[] = {"not a property list", "<plist version=\"1.0\"><dict><key>gridColor</key>",
                                    "bplist00\xff\xff", "<plist version=\"1.0\"><array/></plist>"};
    for (const std::string& bytes : kDamaged) {
        const LogCapture reading;
        files.write("Vellicor/styles/light.theme", bytes);
        const auto theme = create<QVVisualThemeLight>();
        EXPECT_EQ(form(theme->gridColor()), "{0,0,0,1,sRGBColorSpace}") << bytes;
        EXPECT_FALSE(theme->loadStoredData());
        EXPECT_THAT(reading.lines(), ::testing::Each(::testing::StartsWith("error reading stored data "))) << bytes;
        EXPECT_THAT(reading.lines(), SizeIs(2)) << bytes;
        theme->resetColors();
        EXPECT_TRUE(theme->loadStoredData()) << "writing makes the file whole";
    }
    fs::remove(file("light.theme"));
    {
        const LogCapture reading;
        fs::create_directory(file("light.theme"));
        EXPECT_EQ(form(create<QVVisualThemeLight>()->gridColor()), "{0,0,0,1,sRGBColorSpace}");
        EXPECT_THAT(reading.lines(), ElementsAre("error reading stored data Is a directory"));
        fs::remove(file("light.theme"));
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
    EXPECT_THAT(log.lines(), ElementsAre("error creating theme directory: Not a directory",
                                         "error creating theme directory: Not a directory"));

    fs::remove(files.path() / "Vellicor/styles");
    fs::create_directories(file("light.theme"));
    const LogCapture writing;
    EXPECT_FALSE(theme->saveFileData());
    EXPECT_THAT(writing.lines(), ElementsAre("failed to write property list Is a directory"));
}

TEST_F(Theme, PreferencesAreTakenOverWhereTheyAreSet) {
    const auto theme = create<QVVisualThemeLight>();
    const ScopedPreference selected("TableSelectedColor", "{0.5,0,0,1,sRGBColorSpace}"),
        connector("ConnectorDefault", "{0,0.5}");
    theme->updateFromPreferences();
    EXPECT_EQ(form(theme->tableSelectedColor()), "{0.5,0,0,1,sRGBColorSpace}");
    EXPECT_EQ(form(theme->connectorDefault()), "{0,0.5,0,1,sRGBColorSpace}");
    EXPECT_EQ(form(theme->tableBackgroundColor()), "{1,1,1,0.8,sRGBColorSpace}");
    EXPECT_EQ(QVVisualTheme::preferenceKeyWithName("TableSelectedColor"), "TableSelectedColor");
    EXPECT_EQ(QVVisualTheme::preferenceKeyWithName("CommentSelectedColor"), std::nullopt);
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
