// vellicor/fileformat/model_classes.h — what an element name may make.
#pragma once

#include <memory>
#include <string_view>

#include "vellicor/model/class_info.h"

namespace vellicor {

/// A new object for an element: of the class of that name, a point for "location", a size for "size". Null for a name
/// that is no class: the element is a property. Raises "XML Security Exception" for a class that documents may not
/// create.
[[nodiscard]] std::shared_ptr<Loadable> objectForElement(std::string_view elementName);

}  // namespace vellicor
