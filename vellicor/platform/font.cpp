// vellicor/platform/font.cpp — the built-in font manager, which works on font names alone.
#include "vellicor/platform/font.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "vellicor/platform/guarded.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

constexpr const char* kUserFontName = "Helvetica";
constexpr double kUserFontSize = 12;

bool containsAny(std::string_view folded, std::initializer_list<std::string_view> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view word) { return folded.find(word) != std::string_view::npos; });
}

/// A font name is a family and, behind the last "-", a face: "Helvetica-BoldOblique".
std::size_t facePosition(const std::string& name) {
    std::size_t dash = name.rfind('-');
    return dash == std::string::npos ? name.size() : dash + 1;
}

bool isBoldFace(std::string_view face) { return containsAny(caseFolded(face), {"bold", "heavy", "black"}); }

/// The shared manager; null stands for the one built in. Never destroyed, since destructors of statics may still ask.
Guarded<std::shared_ptr<FontManager>>& replacement() {
    static auto& manager = *new Guarded<std::shared_ptr<FontManager>>;
    return manager;
}

}  // namespace

FontManager& FontManager::shared() {
    static auto& builtIn = *new FontManager;
    auto manager = replacement().lock();
    return *manager ? **manager : builtIn;
}

void FontManager::setShared(std::shared_ptr<FontManager> manager) { *replacement().lock() = std::move(manager); }

std::optional<Font> FontManager::fontWithName(const std::string& name, double size) const {
    if (name.empty() || !(size > 0)) return std::nullopt;
    return Font{name, size, isBoldFace(std::string_view(name).substr(facePosition(name)))};
}

Font FontManager::convertedToBold(const Font& font) const {
    if (font.bold) return font;
    // The name carries the trait, since a document stores a font by name and size only.
    std::size_t position = facePosition(font.name);
    std::string face = caseFolded(std::string_view(font.name).substr(position));
    Font bold{font.name, font.size, true};
    if (isBoldFace(face)) return bold;
    if (containsAny(face, {"italic"}))
        bold.name.replace(position, std::string::npos, "BoldItalic");
    else if (containsAny(face, {"oblique"}))
        bold.name.replace(position, std::string::npos, "BoldOblique");
    else if (containsAny(face, {"regular", "roman", "book", "medium", "light", "thin"}))
        bold.name.replace(position, std::string::npos, "Bold");
    else
        bold.name += "-Bold";
    return bold;
}

Font FontManager::userFont() const { return {kUserFontName, kUserFontSize, false}; }

}  // namespace vellicor
