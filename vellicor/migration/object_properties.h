// vellicor/migration/object_properties.h — everything that a document says of one object, as a list of texts.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "vellicor/model/object.h"

namespace vellicor {

struct ObjectProperty {
    std::string key;    ///< as documents spell it
    std::string value;  ///< never empty: an empty property counts as absent
    bool isLayout = false;
};

/// The name by which an object that is referred to is listed.
using ReferenceName = std::function<std::string(const SQLObject&)>;

/// Each key stands once. Identity (the uid), what is derived from other objects and what lives in memory only are left
/// out. Of an index and a foreign key the columns are among them, of a table its components are not.
[[nodiscard]] std::vector<ObjectProperty> propertiesOfObject(const SQLObject& object, const ReferenceName& nameOf);

}  // namespace vellicor
