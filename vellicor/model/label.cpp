// vellicor/model/label.cpp — one label.
#include "vellicor/model/label.h"

#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_export.h"

namespace vellicor {

std::atomic<std::uint64_t> SQLObjectLabel::_changeCount = 0;

std::shared_ptr<SQLObjectLabel> SQLObjectLabel::labelWithName(const OptionalText& name, const Color& color) {
    auto label = create<SQLObjectLabel>();
    label->setName(name);
    label->setColor(color);
    return label;
}

void SQLObjectLabel::setName(const OptionalText& name) {
    SQLObject::setName(name);
    identityDidChange();
}

void SQLObjectLabel::setColor(const Color& color) {
    _color = color.convertedToSRGB();
    identityDidChange();
}

std::string SQLObjectLabel::description() const {
    return text("%@ - name = %@, color = %@, uid = %@", SQLObject::description(), name(), colorString(), uid());
}

void SQLObjectLabel::propertyDidChange(std::string_view key) {
    SQLObject::propertyDidChange(key);
    if (key == keys::uid) identityDidChange();
}

void SQLObjectLabel::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    if (key == "colorString")
        setColorString(std::string(value.text));
    else if (key == "expanded")
        setIsExpanded(boolValue(value.text));
    else if (key == "hidden")
        setIsHidden(boolValue(value.text));
    else
        SQLObject::setSafePropertyValue(value, key);
}

XMLElement SQLObjectLabel::exportToXMLNode(const XMLElement* parent) const {
    const XMLElement element = XMLExport::element("SQLObjectLabel", parent);
    element.addCDataElement("name", getName());
    element.addCDataElement("colorString", colorString());
    if (_isHidden) element.addTextElement("hidden", "1");
    if (_isExpanded) element.addTextElement("expanded", "1");
    exportPropertiesToXMLNode(element);
    return element;
}

std::shared_ptr<SQLObject> SQLObjectLabel::copyWithZone(void* zone) const {
    auto copy = as<SQLObjectLabel>(SQLObject::copyWithZone(zone));
    copy->_color = _color;
    copy->_isExpanded = _isExpanded;
    copy->_isHidden = _isHidden;
    copy->_isDefault = _isDefault;
    return copy;
}

void SQLObjectLabel::identityDidChange() {
    if (_isListed) ++_changeCount;
}

namespace {

constexpr Setter kLabelSetters[] = {
    setter<&SQLObjectLabel::setColorString>("colorString"), propertySetter<&SQLObjectLabel::setHidden>("hidden"),
    setter<&SQLObjectLabel::setIsHidden>("isHidden"),       setter<&SQLObjectLabel::setExpanded>("expanded"),
    setter<&SQLObjectLabel::setIsExpanded>("isExpanded"),   setter<&SQLObjectLabel::setIsDefault>("isDefault"),
};

}  // namespace

const ClassInfo SQLObjectLabel::kClassInfo{"SQLObjectLabel", &SQLObject::kClassInfo, kLabelSetters,
                                           makeLoadable<SQLObjectLabel>};

}  // namespace vellicor
