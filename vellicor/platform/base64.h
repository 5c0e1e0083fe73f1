// vellicor/platform/base64.h — bytes as Base64 text.
#pragma once

#include <string>
#include <string_view>

namespace vellicor {

/// The standard alphabet with padding, 64 characters a line, a line feed between two lines and none at the end.
[[nodiscard]] std::string base64Text(std::string_view bytes);
/// The bytes of a Base64 text with lines of any length: white space is skipped, reading stops at the first "=" or other
/// character outside the alphabet, bits that make no whole byte are dropped.
[[nodiscard]] std::string bytesFromBase64(std::string_view text);

}  // namespace vellicor
