// vellicor/model/object_peer.cpp — stacking order, fonts and schema names of peers.
#include "vellicor/model/object_peer.h"

#include <array>

#include "vellicor/model/container.h"
#include "vellicor/model/object_style.h"

namespace vellicor {

SQLObjectPeer::~SQLObjectPeer() { releaseStyle(); }

// --- stacking

namespace {

SQLContainer* documentHolding(const SQLObjectPeer& object) {
    SQLObject* holder = object.container();
    return holder ? holder->asContainer() : nullptr;
}

}  // namespace

std::int64_t SQLObjectPeer::zOrder() const {
    SQLContainer* document = documentHolding(*this);
    return document ? document->zorderForObject(*this) : 0;
}

void SQLObjectPeer::setZOrder(std::int64_t zOrder) {
    if (SQLContainer* document = documentHolding(*this))
        document->setZorderForObject(*this, zOrder);
    else
        setProperty(keys::zorder, PropertyValue::integer(zOrder));
}

void SQLObjectPeer::setZOrderFromString(std::string_view text) { setZOrder(integerValue(text)); }

// --- schema names

NameParts SQLObjectPeer::splitNameBySchema(std::string_view name, bool splitSchema) {
    enum class State { Outside, AfterBackslashOutside, Inside, AfterBackslashInside };
    State state = State::Outside;
    char quote = 0;  // 0 until the first quote character
    bool foundDot = false;
    std::string first;
    std::string second;
    for (char c : name) {  // bytes will do: everything looked for is ASCII
        std::string& current = foundDot ? second : first;
        switch (state) {
            case State::Outside:
                if (quote ? c == quote : c == '"' || c == '\'' || c == '`') {
                    quote = c;
                    state = State::Inside;
                } else if (c == '.' && splitSchema) {
                    foundDot = true;  // Kept: further dots are dropped
                } else {
                    current += c;
                    if (c == '\\') state = State::AfterBackslashOutside;
                }
                break;
            case State::AfterBackslashOutside:
                current += c;
                state = State::Outside;
                break;
            case State::Inside:
                if (c == quote)
                    state = State::Outside;
                else if (c == '\\')
                    state = State::AfterBackslashInside;
                else
                    current += c;
                break;
            case State::AfterBackslashInside:
                if (c != quote) current += '\\';
                current += c;
                state = State::Inside;
                break;
        }
    }
    if (foundDot) return {std::move(second), std::move(first)};
    return {std::move(first), {}};
}

std::string SQLObjectPeer::trimName(std::string_view name) { return splitNameBySchema(name, false).baseName; }

// --- fonts

namespace {

void setFontPair(QVObjectStyle& style, const std::optional<Font>& font, const char* key, const char* boldKey) {
    style.setFont(font, key);
    if (font) style.setFont(FontManager::shared().convertedToBold(*font), boldKey);
}

}  // namespace

void SQLObjectPeer::setObjectFont(const std::optional<Font>& font) {
    setFontPair(*objectStyle(), font, fontKeys::objectFont, fontKeys::boldObjectFont);
}

Font SQLObjectPeer::objectFont() const { return objectStyle()->fontWithInheritanceForKey(fontKeys::objectFont); }

void SQLObjectPeer::setBoldObjectFont(const std::optional<Font>& font) {
    objectStyle()->setFont(font, fontKeys::boldObjectFont);
}

Font SQLObjectPeer::boldObjectFont() const {
    return objectStyle()->fontWithInheritanceForKey(fontKeys::boldObjectFont);
}

void SQLObjectPeer::setObjectTitleFont(const std::optional<Font>& font) {
    setFontPair(*objectStyle(), font, fontKeys::objectTitleFont, fontKeys::boldObjectTitleFont);
}

Font SQLObjectPeer::objectTitleFont() const {
    return objectStyle()->fontWithInheritanceForKey(fontKeys::objectTitleFont);
}

void SQLObjectPeer::setBoldObjectTitleFont(const std::optional<Font>& font) {
    objectStyle()->setFont(font, fontKeys::boldObjectTitleFont);
}

Font SQLObjectPeer::boldObjectTitleFont() const {
    return objectStyle()->fontWithInheritanceForKey(fontKeys::boldObjectTitleFont);
}

void SQLObjectPeer::resetFonts() {
    setObjectFont(std::nullopt);
    setBoldObjectFont(std::nullopt);
    setObjectTitleFont(std::nullopt);
    setBoldObjectFont(std::nullopt);  // Kept: not the bold title font, which stays as it is.
}

std::shared_ptr<QVObjectStyle> SQLObjectPeer::objectStyle() const {
    if (auto style = _objectStyle.get()) return style;
    const auto fresh = create<QVObjectStyle>();
    fresh->setStyledObject(const_cast<SQLObjectPeer*>(this));
    return _objectStyle.setIfNull(fresh);
}

void SQLObjectPeer::setObjectStyle(std::shared_ptr<QVObjectStyle> style) {
    releaseStyle();
    if (style) style->setStyledObject(this);
    _objectStyle.set(std::move(style));
}

void SQLObjectPeer::releaseStyle() {
    const auto style = _objectStyle.get();
    if (style && style->styledObject() == this) style->setStyledObject(nullptr);
}

// --- document

void SQLObjectPeer::exportPropertiesToXMLNode(const XMLElement& node) const {
    SQLObject::exportPropertiesToXMLNode(node);
    if (const auto style = _objectStyle.get(); style && !style->isEmpty()) style->exportToXMLNode(&node);
}

std::shared_ptr<SQLObject> SQLObjectPeer::copyWithZone(void* zone) const {
    auto copy = SQLObject::copyWithZone(zone);
    if (const auto style = _objectStyle.get()) as<SQLObjectPeer>(copy.get())->setObjectStyle(copyOf(*style));
    return copy;
}

namespace {

constexpr std::array kPeerSetters{
    setter<&SQLObjectPeer::setZOrder>("zOrder"),
    setter<&SQLObjectPeer::setZOrderFromString>("zOrderFromString"),
    setter<&SQLObjectPeer::setHasViewPeer>("hasViewPeer"),
    setter<&SQLObjectPeer::setMustValidateName>("mustValidateName"),
    setter<&SQLObjectPeer::setDidChangeNameDuringValidation>("didChangeNameDuringValidation"),
};

}  // namespace

constinit const ClassInfo SQLObjectPeer::kClassInfo{"SQLObjectPeer", &SQLObject::kClassInfo, kPeerSetters, nullptr};

}  // namespace vellicor
