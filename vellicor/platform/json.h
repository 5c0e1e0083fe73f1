// vellicor/platform/json.h — values as JSON text.
#pragma once

#include <string>
#include <string_view>

#include "vellicor/platform/value.h"

namespace vellicor {

/// Compact JSON as UTF-8; ill-formed text is repaired, infinite numbers become null.
[[nodiscard]] std::string jsonText(const Value& value);
/// The same with line breaks and an indent of `indent` blanks.
[[nodiscard]] std::string prettyJsonText(const Value& value, int indent = 2);
/// The value of a JSON text. Raises SQLException named "JSONException" with line and column in the reason.
[[nodiscard]] Value valueFromJson(std::string_view text);

}  // namespace vellicor
