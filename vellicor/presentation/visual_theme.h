// vellicor/presentation/visual_theme.h — named sets of colours for diagrams and pictures, each kept in a file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "vellicor/model/forward.h"
#include "vellicor/platform/color.h"
#include "vellicor/platform/keyed_archive.h"
#include "vellicor/platform/notifications.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace themeKeys {
inline constexpr const char* schemaBackgroundColor = "schemaBackgroundColor";
inline constexpr const char* gridColor = "gridColor";
inline constexpr const char* pageLineColor = "pageLineColor";
inline constexpr const char* connectorDefault = "connectorDefault";
inline constexpr const char* tableSelectedColor = "tableSelectedColor";
inline constexpr const char* tableNotSelectedColor = "tableNotSelectedColor";
inline constexpr const char* tableBackgroundColor = "tableBackgroundColor";
inline constexpr const char* commentSelectedColor = "commentSelectedColor";
inline constexpr const char* commentNotSelectedColor = "commentNotSelectedColor";
inline constexpr const char* commentBackgroundColor = "commentBackgroundColor";
}  // namespace themeKeys

/// The colours of one theme: its class's defaults, overlaid with what its file in the support folder holds. Nothing
/// that is wrong with the file raises. Belongs to the main thread. Make one with `create<T>()`, which reads the file;
/// each class has one shared instance, which lives as long as the process.
class QVVisualTheme {
public:
    using Colors = std::map<std::string, Color, std::less<>>;

    QVVisualTheme() = default;
    virtual ~QVVisualTheme();
    QVVisualTheme(const QVVisualTheme&) = delete;
    QVVisualTheme& operator=(const QVVisualTheme&) = delete;
    /// The second step of construction: file name, defaults, the file's colours.
    virtual void init();

    [[nodiscard]] static std::shared_ptr<QVVisualTheme> visualTheme();
    /// The shared instance of the theme's own class.
    [[nodiscard]] virtual std::shared_ptr<QVVisualTheme> classVisualTheme() const { return visualTheme(); }
    /// 2 is the theme with dark content; every other value the light one.
    [[nodiscard]] static std::shared_ptr<QVVisualTheme> visualThemeOfType(std::int64_t type);
    [[nodiscard]] static std::shared_ptr<QVVisualTheme> darkTheme();
    [[nodiscard]] static std::shared_ptr<QVVisualTheme> lightTheme();

    // --- what themes override
    virtual void configure() { _fileName = "default.theme"; }
    virtual void setDefaultColors();
    [[nodiscard]] virtual bool useDarkContentArea() const { return false; }
    /// Called after every change of a preference.
    virtual void colorChanged() {}

    // --- colours
    [[nodiscard]] const Colors& colorDictionary() const { return _colorDictionary; }
    /// Null when the theme has no colour of that key.
    [[nodiscard]] std::optional<Color> colorForKey(std::string_view key) const;
    /// Stores the colour and writes the file.
    void setColor(const Color& color, std::string_view key);
    /// Returns the theme's own keys to its defaults, keeps the others, and writes the file.
    void resetColors();
    /// Takes over the table, comment and connector colours that the user's preferences hold. Writes no file.
    void updateFromPreferences();
    /// The name when a preference of that name is set, otherwise null.
    [[nodiscard]] static OptionalText preferenceKeyWithName(std::string_view name);

    [[nodiscard]] std::optional<Color> schemaBackgroundColor() const {
        return colorForKey(themeKeys::schemaBackgroundColor);
    }
    [[nodiscard]] std::optional<Color> gridColor() const { return colorForKey(themeKeys::gridColor); }
    [[nodiscard]] std::optional<Color> pageLineColor() const { return colorForKey(themeKeys::pageLineColor); }
    [[nodiscard]] std::optional<Color> connectorDefault() const { return colorForKey(themeKeys::connectorDefault); }
    [[nodiscard]] std::optional<Color> tableSelectedColor() const { return colorForKey(themeKeys::tableSelectedColor); }
    [[nodiscard]] std::optional<Color> tableNotSelectedColor() const {
        return colorForKey(themeKeys::tableNotSelectedColor);
    }
    [[nodiscard]] std::optional<Color> tableBackgroundColor() const {
        return colorForKey(themeKeys::tableBackgroundColor);
    }
    [[nodiscard]] std::optional<Color> commentSelectedColor() const {
        return colorForKey(themeKeys::commentSelectedColor);
    }
    [[nodiscard]] std::optional<Color> commentNotSelectedColor() const {
        return colorForKey(themeKeys::commentNotSelectedColor);
    }
    [[nodiscard]] std::optional<Color> commentBackgroundColor() const {
        return colorForKey(themeKeys::commentBackgroundColor);
    }

    // --- colours that are the same in every theme
    [[nodiscard]] Color frameColor() const { return Color::sRGB(0, 0, 0); }
    [[nodiscard]] Color textColor() const { return Color::sRGB(0, 0, 0); }
    [[nodiscard]] Color backgroundColor() const { return Color::white(); }
    [[nodiscard]] Color objectIconColor() const { return Color::sRGB(0, 0, 0); }
    [[nodiscard]] Color lineColor() const { return Color::sRGB(0, 0, 0); }
    [[nodiscard]] Color labelTextColor() const { return Color::sRGB(0, 0, 0); }
    [[nodiscard]] Color objectIconColorReversed() const { return Color::sRGB(0.5, 0.5, 0.5); }
    [[nodiscard]] Color objectHandleColorBackground() const { return Color::sRGB(0.5, 0.5, 0.5); }
    [[nodiscard]] Color connectorHandleColor() const { return Color::sRGB(0.5, 0.5, 0.5); }
    [[nodiscard]] Color lineColorSelected() const { return Color::sRGB(1, 0, 0); }
    [[nodiscard]] Color connectorHandleColorSelected() const { return Color::sRGB(1, 0, 0); }
    [[nodiscard]] Color objectHandleColor() const { return Color::sRGB(0.4, 0.4, 1.0, 0.9); }
    [[nodiscard]] Color connectorIsSource() const { return Color::sRGB(0.8, 0.2, 0.2); }
    [[nodiscard]] Color connectorIsDest() const { return Color::sRGB(0.2, 0.8, 0.2); }

    // --- archive and file
    void encodeWithCoder(KeyedArchiver& coder) const;
    /// A theme of class T with the archived colours over its own.
    template <class T>
    [[nodiscard]] static std::shared_ptr<T> initWithCoder(const KeyedUnarchiver& coder) {
        auto theme = create<T>();
        theme->mergeColors(coder.decode("colorDictionary"));
        return theme;
    }
    [[nodiscard]] const std::string& fileName() const { return _fileName; }
    /// The theme's file in the sub-folder "styles" of the support folder, which is made; null, and a log line, when
    /// that cannot be.
    [[nodiscard]] std::optional<std::filesystem::path> getStorageFileURL() const;
    /// Lays the file's colours over the present ones, keys that no theme knows included. False when there is no file or
    /// it cannot be understood.
    bool loadStoredData();
    /// The text form of every colour by key.
    [[nodiscard]] Value::Map exportColorDictionary() const;
    /// Replaces the file in one step. False, and a log line, when that fails.
    bool saveFileData() const;

protected:
    std::string _fileName;
    Colors _colorDictionary;

private:
    /// Adds the colours of a map of text forms; other kinds of value are skipped.
    void mergeColors(const Value* textForms);

    Observation _preferences;
};

class QVVisualThemeLight : public QVVisualTheme {
public:
    [[nodiscard]] static std::shared_ptr<QVVisualTheme> visualTheme();
    [[nodiscard]] std::shared_ptr<QVVisualTheme> classVisualTheme() const override { return visualTheme(); }
    void configure() override { _fileName = "light.theme"; }
};

/// Kept: has the file of the base theme, so each of the two overwrites what the other saved.
class QVVisualThemeDark : public QVVisualTheme {
public:
    [[nodiscard]] static std::shared_ptr<QVVisualTheme> visualTheme();
    [[nodiscard]] std::shared_ptr<QVVisualTheme> classVisualTheme() const override { return visualTheme(); }
};

/// The theme whose content area is dark too.
class QVVisualThemeDarkContent : public QVVisualThemeDark {
public:
    [[nodiscard]] static std::shared_ptr<QVVisualTheme> visualTheme();
    [[nodiscard]] std::shared_ptr<QVVisualTheme> classVisualTheme() const override { return visualTheme(); }
    void configure() override { _fileName = "darkContent.theme"; }
    void setDefaultColors() override;
    [[nodiscard]] bool useDarkContentArea() const override { return true; }
};

}  // namespace vellicor
