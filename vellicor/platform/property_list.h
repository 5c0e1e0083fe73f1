// vellicor/platform/property_list.h — property lists: XML and binary read, XML written.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "vellicor/platform/value.h"

namespace vellicor {

/// The value of a property list in XML or binary form; null with a reason in `error` when it cannot be read, among
/// them those with a text of tens of thousands of references. Dates and
/// binary data read as text (data as Base64).
[[nodiscard]] std::optional<Value> valueFromPropertyList(std::string_view bytes, std::string& error);
/// The XML form; null with a reason in `error` when the value cannot be written (a null inside it).
[[nodiscard]] std::optional<std::string> propertyListText(const Value& value, std::string& error);

}  // namespace vellicor
