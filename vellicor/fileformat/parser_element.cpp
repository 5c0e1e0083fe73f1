// vellicor/fileformat/parser_element.cpp — one element of a document while it is being read.
#include "vellicor/fileformat/parser_element.h"

#include "vellicor/model/object.h"
#include "vellicor/model/value_objects.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string loadedText(const LoadedValue& value) {
    if (auto* point = as<SQLPoint>(value.object)) return point->description();
    if (auto* size = as<SQLSize>(value.object)) return size->description();
    return std::string(value.text);
}

}  // namespace

void QVParserElement::restart(std::string_view name, const XMLAttributes& attributes) {
    _name = name;
    _value.clear();
    _attributes = attributes.empty() ? nullptr : std::make_unique<XMLAttributes>(attributes);
    _properties = nullptr;
    _object = nullptr;
    _modelObject = nullptr;
    _valueObject = nullptr;
    _hasElements = false;
}

void QVParserElement::setObject(std::shared_ptr<Loadable> object) {
    _object = std::move(object);
    _modelObject = as<SQLObject>(_object.get());
    _valueObject = _modelObject ? nullptr : as<SQLValue>(_object.get());
}

void QVParserElement::setProperty(std::string_view key, std::string_view toValue) {
    if (!_properties) _properties = std::make_unique<Properties>();
    (*_properties)[std::string(key)].emplace_back(toValue);
}

void QVParserElement::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    log(text("warning - called setSafePropertyValue on QVParserElement with key %@ value %@", key, loadedText(value)));
}

const ClassInfo QVParserElement::kClassInfo{"QVParserElement", nullptr, {}, nullptr};

}  // namespace vellicor
