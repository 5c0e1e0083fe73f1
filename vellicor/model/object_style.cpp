// vellicor/model/object_style.cpp — fonts of one object, inherited, written and read.
#include "vellicor/model/object_style.h"

#include <algorithm>
#include <array>

#include "vellicor/model/object_peer.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

void QVObjectStyle::setFont(const std::optional<Font>& font, const OptionalText& key) {
    if (!key) {
        log(text("[WARN] Attempted to set font on %@ with nil key",
                 _parent ? OptionalText(_parent->description()) : std::nullopt));
    } else if (!font) {
        _fonts.erase(*key);
    } else {
        _hasFontSetting = true;
        _fonts.insert_or_assign(*key, *font);
    }
}

std::optional<Font> QVObjectStyle::fontForKey(std::string_view key) const {
    auto found = _fonts.find(key);
    return found == _fonts.end() ? std::nullopt : std::optional(found->second);
}

Font QVObjectStyle::fontWithInheritanceForKey(std::string_view key) const {
    const auto* holder = as<SQLObjectPeer>(container());
    if (holder && !_hasFontSetting) return holder->objectStyle()->fontWithInheritanceForKey(key);
    return fontForKey(key).value_or(defaultFontForKey(key));
}

Font QVObjectStyle::defaultFontForKey(std::string_view key) {
    if (key == fontKeys::boldObjectFont || key == fontKeys::boldObjectTitleFont) return boldDefaultFont();
    if (key == fontKeys::objectTitleFont) return defaultTitleFont();
    return defaultFont();
}

Font QVObjectStyle::defaultFont() { return FontManager::shared().userFont(); }

Font QVObjectStyle::boldDefaultFont() { return FontManager::shared().convertedToBold(defaultFont()); }

Font QVObjectStyle::defaultTitleFont() { return boldDefaultFont(); }

SQLObject* QVObjectStyle::container() const { return _parent ? _parent->container() : nullptr; }

void QVObjectStyle::setContainer(SQLObject* container) { _parent = as<SQLObjectPeer>(container); }

XMLElement QVObjectStyle::exportToXMLNode(const XMLElement* parent) const {
    XMLElement node = parent ? parent->addElement("QVObjectStyle") : XMLElement("QVObjectStyle");
    std::vector<std::pair<std::string_view, const Font*>> fonts;
    for (const auto& [key, font] : _fonts) fonts.emplace_back(key, &font);
    std::stable_sort(fonts.begin(), fonts.end(),
                     [](const auto& a, const auto& b) { return compareIgnoringCase(a.first, b.first) < 0; });
    for (const auto& [key, font] : fonts) {
        XMLElement element = node.addElement("font");
        element.setAttribute("key", key);
        element.setAttribute("name", font->name);
        element.setAttribute("size", fixedText(font->size, 6));
    }
    return node;
}

namespace {

using Attributes = std::map<std::string, std::string, std::less<>>;

OptionalText attribute(const Attributes& attributes, std::string_view name) {
    auto found = attributes.find(name);
    return found == attributes.end() ? std::nullopt : OptionalText(found->second);
}

std::string listed(const Attributes& attributes) {
    std::string lines;
    for (const auto& [name, value] : attributes) lines += text("    %@ = %@;\n", name, value);
    return text("{\n%@}", lines);
}

}  // namespace

void QVObjectStyle::addProperty(std::string_view name, const Attributes& fromDictionary) {
    if (name != "font") {
        log(text("QVObjectStyle doesn't support %@ keys", name));
        return;
    }
    const std::string fontName = attribute(fromDictionary, "name").value_or("");
    const double size = floatValue(attribute(fromDictionary, "size").value_or(""));
    if (auto font = FontManager::shared().fontWithName(fontName, size))
        setFont(font, attribute(fromDictionary, "key"));
    else
        log(text("failed to read font %@", listed(fromDictionary)));
}

std::shared_ptr<SQLObject> QVObjectStyle::copyWithZone(void* /*zone*/) const {
    auto copy = create<QVObjectStyle>();
    copy->_fonts = _fonts;
    return copy;
}

namespace {

constexpr std::array kObjectStyleSetters{setter<&QVObjectStyle::setHasFontSetting>("hasFontSetting")};

}  // namespace

constinit const ClassInfo QVObjectStyle::kClassInfo{"QVObjectStyle", &SQLObject::kClassInfo, kObjectStyleSetters,
                                                    makeLoadable<QVObjectStyle>};

}  // namespace vellicor
