// vellicor/platform/xml_export.cpp — elements as documents hold them.
#include "vellicor/platform/xml_export.h"

namespace vellicor {

XMLElement XMLExport::cdataElementWithName(std::string_view name, std::string_view stringValue) {
    XMLElement element(name);
    element.addCData(stringValue);
    return element;
}

}  // namespace vellicor
