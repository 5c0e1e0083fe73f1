// vellicor/platform/numbers.cpp — numbers read and written without a locale.
#include "vellicor/platform/numbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

bool startsWithDigit(std::string_view text) { return !text.empty() && isDigit(text.front()); }

/// Removes one leading sign; true when it was a minus.
bool takeSign(std::string_view& text) {
    if (text.empty() || (text.front() != '+' && text.front() != '-')) return false;
    const bool negative = text.front() == '-';
    text.remove_prefix(1);
    return negative;
}

template <class Integer>
Integer leadingInteger(std::string_view text) {
    using Limits = std::numeric_limits<Integer>;
    text = trimmed(text);
    const bool negative = takeSign(text);
    if (!startsWithDigit(text)) text = trimmed(text);
    if (!startsWithDigit(text)) return 0;
    std::uint64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    const std::uint64_t limit = static_cast<std::uint64_t>(Limits::max()) + negative;
    if (result.ec != std::errc() || number > limit) return negative ? Limits::min() : Limits::max();
    return static_cast<Integer>(negative ? 0 - number : number);
}

/// True when a decimal number that does not fit is too large, not too small: its first digit that counts stands left of
/// the point once the exponent has moved it.
bool isLarge(std::string_view number) {
    std::int64_t place = 0;  // of the first digit that counts: 1 for units, 0 for tenths
    bool afterPoint = false, counts = false;
    std::size_t i = 0;
    for (; i < number.size() && (isDigit(number[i]) || (number[i] == '.' && !afterPoint)); ++i) {
        if (number[i] == '.') {
            afterPoint = true;
            continue;
        }
        if (number[i] != '0') counts = true;
        if (!afterPoint && counts) ++place;
        if (afterPoint && !counts) --place;
    }
    if (i < number.size() && (number[i] == 'e' || number[i] == 'E'))
        place += std::clamp<std::int64_t>(integerValue(number.substr(i + 1)), -(1LL << 60), 1LL << 60);
    return place > 0;
}

template <class Real>
Real leadingReal(std::string_view text) {
    text = trimmed(text);
    const bool negative = takeSign(text);
    if (!startsWithDigit(text) && !(text.starts_with('.') && startsWithDigit(text.substr(1)))) return 0;
    Real number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range) {  // both for too large and for too small; `number` is untouched
        const std::string_view read = text.substr(0, static_cast<std::size_t>(result.ptr - text.data()));
        number = isLarge(read) ? std::numeric_limits<Real>::infinity() : 0;
    }
    return negative ? -number : number;
}

}  // namespace

std::int32_t intValue(std::string_view text) { return leadingInteger<std::int32_t>(text); }

std::int64_t integerValue(std::string_view text) { return leadingInteger<std::int64_t>(text); }

double doubleValue(std::string_view text) { return leadingReal<double>(text); }

float floatValue(std::string_view text) { return leadingReal<float>(text); }

bool boolValue(std::string_view text) {
    text = trimmed(text);
    takeSign(text);
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return !text.empty() && std::string_view("YyTt123456789").find(text.front()) != std::string_view::npos;
}

std::string fixedText(double value, int fractionDigits) {
    if (std::isnan(value)) return "nan";  // without the sign that a NaN may carry
    return fmt::format("{:.{}f}", value, std::max(fractionDigits, 0));
}

std::string generalText(double value, int significantDigits) {
    if (std::isnan(value)) return "nan";
    return fmt::format("{:.{}g}", value, std::max(significantDigits, 0));
}

std::string numberText(float value) { return generalText(value, 7); }

std::string numberText(double value) { return generalText(value, 16); }

std::string addressText(const void* address) { return fmt::format("{}", address); }

}  // namespace vellicor
