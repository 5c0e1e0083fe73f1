// vellicor/platform/numbers.h — reading numbers out of text and writing them, the same in every locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vellicor {

/// An ASCII digit.
[[nodiscard]] constexpr bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// Leading decimal integer of a text: leading white space, one sign and white space after it are skipped, reading
/// stops at the first other character, no digit gives 0, overflow clamps to the type's limits. ASCII digits only.
[[nodiscard]] std::int32_t intValue(std::string_view text);
[[nodiscard]] std::int64_t integerValue(std::string_view text);
/// Leading decimal number with optional fraction and exponent, always with "."; no digit gives 0, overflow gives
/// plus or minus infinity. "inf", "nan" and hexadecimal forms are not numbers.
[[nodiscard]] double doubleValue(std::string_view text);
/// The same at single precision.
[[nodiscard]] float floatValue(std::string_view text);
/// After leading white space, one sign and zeros: true when Y, y, T, t or a digit 1 to 9 follows.
[[nodiscard]] bool boolValue(std::string_view text);

/// "%.2f", "%f", "%g" of printf in the C locale.
[[nodiscard]] std::string fixedText(double value, int fractionDigits);
[[nodiscard]] std::string generalText(double value, int significantDigits = 6);
/// The text form of a number object: "%.7g" for a float, "%.16g" for a double.
[[nodiscard]] std::string numberText(float value);
[[nodiscard]] std::string numberText(double value);
/// "%p": an address as "0x" and hexadecimal digits, for logs.
[[nodiscard]] std::string addressText(const void* address);

}  // namespace vellicor
