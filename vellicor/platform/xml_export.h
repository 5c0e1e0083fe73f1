// vellicor/platform/xml_export.h — elements as documents hold them.
#pragma once

#include <string_view>

#include "vellicor/platform/xml_element.h"

namespace vellicor {

/// Small makers of document elements.
class XMLExport {
public:
    /// `<name><![CDATA[value]]></name>` as an element of its own.
    [[nodiscard]] static XMLElement cdataElementWithName(std::string_view name, std::string_view stringValue);
    /// The same, appended to `parent`.
    static void addCDataElement(const XMLElement& parent, std::string_view name, std::string_view stringValue) {
        parent.addCDataElement(name, stringValue);
    }
    /// The start of an object's element: a child of `parent`, or the root of a tree of its own without one.
    [[nodiscard]] static XMLElement element(std::string_view name, const XMLElement* parent) {
        return parent ? parent->addElement(name) : XMLElement(name);
    }
};

}  // namespace vellicor
