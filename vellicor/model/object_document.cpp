// vellicor/model/object_document.cpp — model objects as elements, JSON and copies, and what a document may set.
#include <algorithm>
#include <array>

#include "vellicor/model/label.h"
#include "vellicor/model/object.h"
#include "vellicor/model/value_objects.h"
#include "vellicor/platform/json.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

// --- elements

XMLElement SQLObject::exportToXMLNode(const XMLElement* parent) const {
    return parent ? parent->addElement("SQLObject") : XMLElement("SQLObject");
}

void SQLObject::exportPropertiesToXMLNode(const XMLElement& node) const {
    if (!_properties) return;
    _properties->read([&](const PropertyMap& map) {
        std::vector<const PropertyMap::Entry*> entries;
        entries.reserve(map.size());
        for (const PropertyMap::Entry& entry : map) {
            if (!entry.key.view().starts_with(keys::memoryPrefix)) entries.push_back(&entry);
        }
        std::sort(entries.begin(), entries.end(), [](const PropertyMap::Entry* a, const PropertyMap::Entry* b) {
            const int order = compareIgnoringCase(a->key.view(), b->key.view());
            return order ? order < 0 : a->key.view() < b->key.view();
        });
        for (const PropertyMap::Entry* entry : entries) {
            if (const std::string* stored = entry->value.asText()) {
                if (!stored->empty()) node.addCDataElement(entry->key.view(), *stored);
            } else {
                node.addCDataElement(entry->key.view(), entry->value.text());
            }
        }
    });
}

std::string SQLObject::exportPropertiesToXML() const {
    XMLElement properties("properties");
    exportPropertiesToXMLNode(properties);
    return properties.text();
}

void SQLObject::exportLocationToXMLNode(const XMLElement& node) const {
    const auto [place, extent] = frame();
    XMLElement locationNode = node.addElement("location");
    locationNode.addTextElement("x", fixedText(place.x, 2));
    locationNode.addTextElement("y", fixedText(place.y, 2));
    XMLElement sizeNode = node.addElement("size");
    sizeNode.addTextElement("width", fixedText(extent.width, 2));
    sizeNode.addTextElement("height", fixedText(extent.height, 2));
    node.addTextElement("zorder", text("%lu", static_cast<std::uint64_t>(zOrder())));
}

std::string SQLObject::exportToXML() const { return exportToXMLNode().text(); }

std::string SQLObject::quoteForXML(const OptionalText& text) const {
    if (!text) return {};
    return vellicor::text("<![CDATA[%@]]>", replacingAll(*text, "]]>", "]-]>"));
}

// --- lists, JSON, description, copies

std::vector<std::shared_ptr<SQLObject>> SQLObject::flatObjectList() { return {shared_from_this()}; }

Value::Map SQLObject::jsonDictionary() const {
    // The base classes have no type of their own; they stand for any object.
    const std::string_view type = getClassType();
    return {{"ClassType", type == "unknown" ? "SQLObject" : type}};
}

std::string SQLObject::json() const { return jsonText(jsonDictionary()); }

Value SQLObject::propertiesAsJson() const {
    Value::Map map;
    if (_properties) {
        _properties->read([&](const PropertyMap& entries) {
            for (const PropertyMap::Entry& entry : entries) map.emplace(entry.key.string(), entry.value);
        });
    }
    return map;
}

std::string SQLObject::description() const { return text("%@ %@", runtimeDescription(), _name); }

std::string SQLObject::runtimeDescription() const { return text("<%@: %p>", classInfo().name, addressText(this)); }

std::shared_ptr<SQLObject> SQLObject::copyWithZone(void* /*zone*/) const {
    std::shared_ptr<SQLObject> copy = newInstance();
    copy->setName(_name);
    copy->storeName(_name);  // as it is: setting it may split it, or take quotes off, once more
    if (_label) copy->setLabel(copyOf(*_label));
    for (auto& [key, value] : propertiesAsDictionary()) copy->setProperty(key, std::move(value));
    copy->setFrame(frame());
    return copy;
}

// --- reading

void SQLObject::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    if (key == "location") {
        if (const auto* point = as<SQLPoint>(value.object)) setLocation(point->pointValue());
    } else if (key == "size") {
        if (const auto* size = as<SQLSize>(value.object)) setSize(size->sizeValue());
    } else if (value.object) {
        return;  // no other key has a place for one
    } else if (key == "name") {
        setName(std::string(value.text));
    } else if (key == keys::uid) {
        setUid(std::string(value.text));
    } else {
        setPropertyValue(value.text, key);
    }
}

namespace {

/// A point or a size that the reader made. Of another kind it is ignored; a text, which only an element with a capital
/// first letter can bring, becomes a property under that name.
template <class Holder, void (SQLObject::*Set)(const Holder&)>
void applyHolder(Loadable& target, const LoadedValue& value, const char* capitalName) {
    auto& object = dynamic_cast<SQLObject&>(target);
    if (const auto* holder = as<Holder>(value.object))
        (object.*Set)(*holder);
    else if (!value.object)
        object.setProperty(capitalName, value.text);
}

constexpr std::array kObjectSetters{
    propertySetter<&SQLObject::setUid>("uid"),
    setter<&SQLObject::setName>("name"),
    setter<&SQLObject::setComment>("comment"),
    setter<&SQLObject::setDisplayName>("displayName"),
    setter<&SQLObject::setDisplayNamePending>("displayNamePending"),
    setter<&SQLObject::setLabelIndex>("labelIndex"),
    Setter{"location",
           [](Loadable& target, const LoadedValue& value) {
               applyHolder<SQLPoint, &SQLObject::setLocationFromObject>(target, value, "Location");
           },
           true},
    Setter{"size",
           [](Loadable& target, const LoadedValue& value) {
               applyHolder<SQLSize, &SQLObject::setSizeFromObject>(target, value, "Size");
           },
           true},
};

}  // namespace

constinit const ClassInfo SQLObject::kClassInfo{"SQLObject", nullptr, kObjectSetters, nullptr};

}  // namespace vellicor
