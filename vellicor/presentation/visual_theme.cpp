// vellicor/presentation/visual_theme.cpp — default colours, preferences, and the files of themes.
#include "vellicor/presentation/visual_theme.h"

#include <system_error>
#include <utility>

#include "vellicor/platform/exception.h"
#include "vellicor/platform/files.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/property_list.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/plugins/file_system_manager.h"
#include "vellicor/plugins/prefs.h"

namespace vellicor {

namespace {

/// The one instance of a theme class, made on first use and never destroyed.
template <class Theme>
std::shared_ptr<QVVisualTheme> sharedTheme() {
    static const auto& theme = *new std::shared_ptr<QVVisualTheme>(create<Theme>());
    return theme;
}

constexpr std::pair<const char*, const char*> kColorPreferences[] = {
    {themeKeys::commentBackgroundColor, prefs::commentBackgroundColor},
    {themeKeys::commentSelectedColor, prefs::commentSelectedColor},
    {themeKeys::commentNotSelectedColor, prefs::commentNotSelectedColor},
    {themeKeys::tableBackgroundColor, prefs::tableBackgroundColor},
    {themeKeys::tableSelectedColor, prefs::tableSelectedColor},
    {themeKeys::tableNotSelectedColor, prefs::tableNotSelectedColor},
    {themeKeys::connectorDefault, prefs::connectorDefault},
};

}  // namespace

void QVVisualTheme::init() {
    configure();
    _colorDictionary.clear();
    setDefaultColors();
    loadStoredData();
    _preferences = NotificationCenter::observe(notifications::preferencesChanged, nullptr,
                                               [this](std::string_view, const void*) { colorChanged(); });
}

QVVisualTheme::~QVVisualTheme() = default;

std::shared_ptr<QVVisualTheme> QVVisualTheme::visualTheme() { return sharedTheme<QVVisualTheme>(); }
std::shared_ptr<QVVisualTheme> QVVisualThemeLight::visualTheme() { return sharedTheme<QVVisualThemeLight>(); }
std::shared_ptr<QVVisualTheme> QVVisualThemeDark::visualTheme() { return sharedTheme<QVVisualThemeDark>(); }
std::shared_ptr<QVVisualTheme> QVVisualThemeDarkContent::visualTheme() {
    return sharedTheme<QVVisualThemeDarkContent>();
}

std::shared_ptr<QVVisualTheme> QVVisualTheme::visualThemeOfType(std::int64_t type) {
    return type == 2 ? darkTheme() : lightTheme();
}

std::shared_ptr<QVVisualTheme> QVVisualTheme::darkTheme() { return QVVisualThemeDarkContent::visualTheme(); }
std::shared_ptr<QVVisualTheme> QVVisualTheme::lightTheme() { return QVVisualThemeLight::visualTheme(); }

void QVVisualTheme::setDefaultColors() {
    const std::pair<const char*, Color> defaults[] = {
        {themeKeys::schemaBackgroundColor, Color::sRGB(1, 1, 1)},
        {themeKeys::gridColor, Color::sRGB(0, 0, 0)},
        {themeKeys::connectorDefault, Color::sRGB(0.5, 0.5, 0.5, 0.8)},
        {themeKeys::tableSelectedColor, Color::sRGB(0.0, 0.59, 0.27, 0.6)},
        {themeKeys::tableNotSelectedColor, Color::sRGB(0.38, 0.88, 0.31, 0.8)},
        {themeKeys::tableBackgroundColor, Color::sRGB(1.0, 1.0, 1.0, 0.8)},
        {themeKeys::commentSelectedColor, Color::sRGB(0.0, 0.27, 0.59, 0.6)},
        {themeKeys::commentNotSelectedColor, Color::sRGB(0.38, 0.46, 0.88, 0.8)},
        {themeKeys::commentBackgroundColor, Color::sRGB(1.0, 1.0, 1.0, 0.8)},
    };
    for (const auto& [key, color] : defaults) _colorDictionary.insert_or_assign(key, color);
}

void QVVisualThemeDarkContent::setDefaultColors() {
    QVVisualThemeDark::setDefaultColors();
    constexpr double kLightGrey = 2.0 / 3;
    const std::pair<const char*, Color> defaults[] = {
        {themeKeys::schemaBackgroundColor, Color::sRGB(0.117647, 0.117647, 0.117647)},
        {themeKeys::pageLineColor, Color::sRGB(kLightGrey, kLightGrey, kLightGrey)},
        {themeKeys::connectorDefault, Color::sRGB(1.0, 1.0, 1.0, 0.8)},
        {themeKeys::commentSelectedColor, Color::sRGB(0.6, 0.87, 0.99, 0.6)},
        {themeKeys::commentNotSelectedColor, Color::sRGB(0.68, 0.76, 0.98, 0.8)},
    };
    for (const auto& [key, color] : defaults) _colorDictionary.insert_or_assign(key, color);
}

std::optional<Color> QVVisualTheme::colorForKey(std::string_view key) const {
    auto found = _colorDictionary.find(key);
    return found == _colorDictionary.end() ? std::nullopt : std::optional(found->second);
}

void QVVisualTheme::setColor(const Color& color, std::string_view key) {
    _colorDictionary.insert_or_assign(std::string(key), color);
    saveFileData();
}

void QVVisualTheme::resetColors() {
    setDefaultColors();
    saveFileData();
}

void QVVisualTheme::updateFromPreferences() {
    for (const auto& [key, name] : kColorPreferences) {
        if (const OptionalText preference = preferenceKeyWithName(name))
            _colorDictionary.insert_or_assign(key, SQLPrefs::sharedPrefs().colorForKey(*preference));
    }
}

OptionalText QVVisualTheme::preferenceKeyWithName(std::string_view name) {
    return Preferences::shared().objectForKey(name) ? OptionalText(name) : std::nullopt;
}

void QVVisualTheme::encodeWithCoder(KeyedArchiver& coder) const {
    coder.encode(exportColorDictionary(), "colorDictionary");
}

void QVVisualTheme::mergeColors(const Value* textForms) {
    if (!textForms || !textForms->asMap()) return;
    for (const auto& [key, value] : *textForms->asMap()) {
        if (const std::string* form = value.asText())
            _colorDictionary.insert_or_assign(key, Color::colorWithString(*form));
    }
}

std::optional<std::filesystem::path> QVVisualTheme::getStorageFileURL() const {
    try {
        const std::filesystem::path folder = QVFileSystemManager::sharedManager().applicationSupportURL() / "styles";
        std::error_code error;
        std::filesystem::create_directories(folder, error);
        if (!error) return folder / _fileName;
        log(text("error creating theme directory: %@", error.message()));
    } catch (const SQLException& exception) {
        log(text("error creating theme directory: %@", exception.reason()));
    }
    return std::nullopt;
}

bool QVVisualTheme::loadStoredData() {
    const auto file = getStorageFileURL();
    std::string error;
    std::error_code ignored;
    if (!file || !std::filesystem::exists(*file, ignored)) return false;
    const auto bytes = readFile(*file, error);
    if (bytes && bytes->empty()) return false;
    const auto list = bytes ? valueFromPropertyList(*bytes, error) : std::nullopt;
    if (!list || !list->asMap()) {
        log(text("error reading stored data %@", list ? "the property list holds no dictionary" : error));
        return false;
    }
    mergeColors(&*list);
    return true;
}

Value::Map QVVisualTheme::exportColorDictionary() const {
    Value::Map textForms;
    for (const auto& [key, color] : _colorDictionary) textForms.insert_or_assign(key, color.string());
    return textForms;
}

bool QVVisualTheme::saveFileData() const {
    std::string error;
    const auto bytes = propertyListText(exportColorDictionary(), error);
    if (!bytes) {
        log(text("failed to write property list %@", error));
        return false;
    }
    const auto file = getStorageFileURL();
    if (!file) return false;
    if (writeFileAtomically(*file, *bytes, error)) return true;
    log(text("failed to write property list %@", error));
    return false;
}

}  // namespace vellicor
