// vellicor/model/object_style.h — the fonts that one model object carries.
#pragma once

#include <map>

#include "vellicor/model/object.h"
#include "vellicor/platform/font.h"

namespace vellicor {

namespace fontKeys {
inline constexpr const char* objectFont = "objectFont";
inline constexpr const char* boldObjectFont = "boldObjectFont";
inline constexpr const char* objectTitleFont = "objectTitleFont";
inline constexpr const char* boldObjectTitleFont = "boldObjectTitleFont";
}  // namespace fontKeys

/// A set of fonts by key. Its parent is the model object that carries it; a style without settings of its own defers to
/// the document's style.
class QVObjectStyle : public SQLObject {
public:
    using SQLObject::SQLObject;
    [[nodiscard]] std::string_view getClassType() const override { return "QVObjectStyle"; }

    /// Null removes the key; a null key is logged and changes nothing.
    void setFont(const std::optional<Font>& font, const OptionalText& key);
    /// The stored font; null when none.
    [[nodiscard]] std::optional<Font> fontForKey(std::string_view key) const;
    [[nodiscard]] Font fontWithInheritanceForKey(std::string_view key) const;
    [[nodiscard]] static Font defaultFontForKey(std::string_view key);
    [[nodiscard]] static Font defaultFont();
    [[nodiscard]] static Font boldDefaultFont();
    [[nodiscard]] static Font defaultTitleFont();
    [[nodiscard]] bool isEmpty() const { return _fonts.empty(); }
    /// True from the first font that was stored, also after its removal.
    [[nodiscard]] bool hasFontSetting() const { return _hasFontSetting; }
    void setHasFontSetting(bool flag) { _hasFontSetting = flag; }

    /// The model object that carries the style; not owned.
    [[nodiscard]] SQLObjectPeer* styledObject() const { return _parent; }
    void setStyledObject(SQLObjectPeer* parent) { _parent = parent; }
    /// The carrying object's container.
    [[nodiscard]] SQLObject* container() const override;
    void setContainer(SQLObject* container) override;

    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    /// Reads one "font" element's attributes "key", "name" and "size"; logs fonts that do not exist and other names.
    void addProperty(std::string_view name, const std::map<std::string, std::string, std::less<>>& fromDictionary);
    /// Kept: the copy has the fonts but counts as without settings, so it defers to the document.
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<QVObjectStyle>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    std::map<std::string, Font, std::less<>> _fonts;
    SQLObjectPeer* _parent = nullptr;  // cleared when the object dies
    bool _hasFontSetting = false;
};

}  // namespace vellicor
