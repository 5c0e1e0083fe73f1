// vellicor/model/object_peer.h — objects that may stand directly in a document: stacking order, fonts, schema names.
#pragma once

#include "vellicor/model/object.h"
#include "vellicor/platform/font.h"

namespace vellicor {

/// The two halves of a name such as `sales.orders`.
struct NameParts {
    std::string baseName;
    std::string schemaPart;  // empty when there is none
    bool operator==(const NameParts&) const = default;
};

/// Base of tables, table components, comments, the document info and the document itself.
class SQLObjectPeer : public SQLObject {
public:
    using SQLObject::SQLObject;
    ~SQLObjectPeer() override;

    [[nodiscard]] std::string_view getClassType() const override { return "unknown"; }
    [[nodiscard]] bool getHasViewPeer() const { return _hasViewPeer; }
    void setHasViewPeer(bool flag) { _hasViewPeer = flag; }

    /// Asks the container; 0 while detached, whatever was stored.
    [[nodiscard]] std::int64_t zOrder() const override;
    [[nodiscard]] std::int64_t getZOrder() const { return zOrder(); }
    /// Hands the number to the container; while detached it waits in the property `zorder`.
    void setZOrder(std::int64_t zOrder);
    void setZOrderFromString(std::string_view text);

    /// Splits at unquoted dots, quotes removed; the first quote character met is the one that counts. With
    /// `splitSchema` false only the quotes go.
    [[nodiscard]] static NameParts splitNameBySchema(std::string_view name, bool splitSchema);
    [[nodiscard]] static NameParts splitNameBySchema(std::string_view name) { return splitNameBySchema(name, true); }
    static NameParts splitNameBySchema(std::string_view name, const char*) = delete;
    /// The name without its quotes.
    [[nodiscard]] static std::string trimName(std::string_view name);

    // Fonts live in the object style; a missing one comes from the document's style, then the platform. Setting a font
    // also stores its bold form.
    void setObjectFont(const std::optional<Font>& font);
    [[nodiscard]] Font objectFont() const;
    void setBoldObjectFont(const std::optional<Font>& font);
    [[nodiscard]] Font boldObjectFont() const;
    void setObjectTitleFont(const std::optional<Font>& font);
    [[nodiscard]] Font objectTitleFont() const;
    void setBoldObjectTitleFont(const std::optional<Font>& font);
    [[nodiscard]] Font boldObjectTitleFont() const;
    void resetFonts();
    /// Never null: made when first asked for, by whichever thread.
    [[nodiscard]] std::shared_ptr<QVObjectStyle> objectStyle() const;
    /// The style's parent becomes this object.
    void setObjectStyle(std::shared_ptr<QVObjectStyle> style);

    /// The base's, then the style's element unless the style is empty.
    void exportPropertiesToXMLNode(const XMLElement& node) const override;

    [[nodiscard]] bool didChangeNameDuringValidation() const { return _didChangeNameDuringValidation; }
    void setDidChangeNameDuringValidation(bool flag) { _didChangeNameDuringValidation = flag; }
    [[nodiscard]] bool mustValidateName() const { return _mustValidateName; }
    void setMustValidateName(bool flag) { _mustValidateName = flag; }
    /// True for fields: they take part in forced type matching.
    [[nodiscard]] bool hasCocoa() const { return _hasCocoa; }
    void setHasCocoa(bool flag) { _hasCocoa = flag; }

    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLObjectPeer>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    void releaseStyle();

    bool _hasViewPeer = false;  // the object has a view on the canvas
    bool _hasCocoa = false;
    bool _didChangeNameDuringValidation = false;
    bool _mustValidateName = false;
    mutable AtomicProperty<std::shared_ptr<QVObjectStyle>> _objectStyle;  // null until first asked for
};

}  // namespace vellicor
