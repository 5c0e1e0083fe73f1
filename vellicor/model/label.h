// vellicor/model/label.h — a named colour that objects can carry.
#pragma once

#include <atomic>
#include <cstdint>

#include "vellicor/model/object.h"

namespace vellicor {

class SQLObjectLabel : public SQLObject {
public:
    using SQLObject::SQLObject;
    static std::shared_ptr<SQLObjectLabel> labelWithName(const OptionalText& name, const Color& color);
    [[nodiscard]] std::string_view getClassType() const override { return "SQLObjectLabel"; }

    void setName(const OptionalText& name) override;
    /// In the sRGB space.
    [[nodiscard]] const Color& color() const { return _color; }
    void setColor(const Color& color);
    [[nodiscard]] std::string colorString() const { return _color.string(); }
    void setColorString(const OptionalText& text) { setColor(Color::colorWithString(text)); }
    [[nodiscard]] bool isExpanded() const { return _isExpanded; }
    void setIsExpanded(bool flag) { _isExpanded = flag; }
    void setExpanded(bool flag) { _isExpanded = flag; }
    [[nodiscard]] bool isHidden() const { return _isHidden; }
    void setIsHidden(bool flag) { _isHidden = flag; }
    void setHidden(bool flag) { _isHidden = flag; }
    [[nodiscard]] bool isDefault() const { return _isDefault; }
    void setIsDefault(bool flag) { _isDefault = flag; }

    [[nodiscard]] std::string description() const override;
    void propertyDidChange(std::string_view key) override;
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLObjectLabel>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    friend class SQLObjectLabelManager;
    /// How often labels that stand in a list have changed what they are found by: name, colour, uid.
    [[nodiscard]] static std::uint64_t changeCount() { return _changeCount; }
    void identityDidChange();

    Color _color = Color::clear();
    bool _isExpanded = false;
    bool _isHidden = false;
    bool _isDefault = false;
    bool _isListed = false;  // stands, or stood, in a manager's list
    static std::atomic<std::uint64_t> _changeCount;
};

}  // namespace vellicor
