// vellicor/fileformat/parser_element.h — one element of a document while it is being read.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/model/class_info.h"
#include "vellicor/platform/xml_events.h"

namespace vellicor {

/// An entry of the reader's stack. What an element without an object holds is kept nowhere.
class QVParserElement : public Loadable {
public:
    using Properties = std::unordered_map<std::string, std::vector<std::string>, TextHash, std::equal_to<>>;

    QVParserElement(std::string_view name, const XMLAttributes& attributes) { restart(name, attributes); }
    /// Makes the entry stand for another element; its texts keep their memory.
    void restart(std::string_view name, const XMLAttributes& attributes);

    [[nodiscard]] const std::string& name() const { return _name; }
    /// The character data so far, white space included.
    [[nodiscard]] const std::string& value() const { return _value; }
    void appendValue(std::string_view text) { _value += text; }
    /// Null when the element carries none.
    [[nodiscard]] const XMLAttributes* attributes() const { return _attributes.get(); }

    /// What was made for the element; null for a property element.
    [[nodiscard]] const std::shared_ptr<Loadable>& object() const { return _object; }
    void setObject(std::shared_ptr<Loadable> object);
    /// The object as a model object; null for a value object and for a property element.
    [[nodiscard]] SQLObject* modelObject() const { return _modelObject; }
    /// The object as a point or a size; null for everything else.
    [[nodiscard]] SQLValue* valueObject() const { return _valueObject; }
    /// Whether an element began inside this one.
    [[nodiscard]] bool hasElements() const { return _hasElements; }
    void setHasElements() { _hasElements = true; }
    /// What the elements inside are set on: the object, or this entry when there is none.
    [[nodiscard]] Loadable& target() { return _object ? *_object : *this; }

    /// Appends to the list of `key`.
    void setProperty(std::string_view key, std::string_view toValue);
    /// Null until the first was set.
    [[nodiscard]] const Properties* properties() const { return _properties.get(); }

    /// Only logs: an element inside a property element belongs to nothing.
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    std::string _name;
    std::string _value;
    std::unique_ptr<XMLAttributes> _attributes;  // null when there are none, as in most elements
    std::shared_ptr<Loadable> _object;
    SQLObject* _modelObject = nullptr;  // `_object`, or null
    SQLValue* _valueObject = nullptr;   // `_object`, or null
    std::unique_ptr<Properties> _properties;
    bool _hasElements = false;
};

}  // namespace vellicor
