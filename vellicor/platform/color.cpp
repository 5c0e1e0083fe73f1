// vellicor/platform/color.cpp — reading and writing the text form of colours.
#include "vellicor/platform/color.h"

#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::string_view kSRGBName = "sRGBColorSpace";

/// Reads token after token; what is not there leaves the place as it is. Blanks in front of a token are skipped.
class ColorScanner {
public:
    explicit ColorScanner(std::string_view text) : _rest(text) {}

    bool word(std::string_view expected) {
        skipBlanks();
        if (!equalIgnoringCase(_rest.substr(0, expected.size()), expected)) return false;
        _rest.remove_prefix(expected.size());
        return true;
    }

    /// Stores the next number at single precision.
    void number(double& value) {
        skipBlanks();
        if (std::size_t size = numberSize()) {
            value = floatValue(_rest.substr(0, size));
            _rest.remove_prefix(size);
        }
    }

private:
    void skipBlanks() {
        std::size_t start = _rest.find_first_not_of("\n\r\t ");
        _rest.remove_prefix(start == std::string_view::npos ? _rest.size() : start);
    }

    char at(std::size_t position) const { return position < _rest.size() ? _rest[position] : '\0'; }

    std::size_t afterDigits(std::size_t position) const {
        while (isDigit(at(position))) ++position;
        return position;
    }

    /// Sign, digits with an optional point, and an exponent if it has digits; 0 without any digit.
    std::size_t numberSize() const {
        std::size_t start = at(0) == '+' || at(0) == '-' ? 1 : 0;
        std::size_t end = afterDigits(start);
        std::size_t digits = end - start;
        if (at(end) == '.') {
            std::size_t fractionEnd = afterDigits(end + 1);
            digits += fractionEnd - end - 1;
            end = fractionEnd;
        }
        if (digits == 0) return 0;
        if (at(end) != 'e' && at(end) != 'E') return end;
        std::size_t exponent = at(end + 1) == '+' || at(end + 1) == '-' ? end + 2 : end + 1;
        return isDigit(at(exponent)) ? afterDigits(exponent) : end;
    }

    std::string_view _rest;
};

}  // namespace

Color Color::colorWithString(const std::optional<std::string>& text) {
    if (!text) return white();
    ColorScanner scanner(*text);
    Color color;
    scanner.word("{");
    scanner.number(color.red);
    for (double* component : {&color.green, &color.blue, &color.alpha}) {
        scanner.word(",");
        scanner.number(*component);
    }
    scanner.word(",");
    color.space = scanner.word(kSRGBName) ? ColorSpace::SRGB : ColorSpace::DeviceRGB;
    return color;
}

std::string Color::string() const {
    Color color = convertedToSRGB();
    return text("{%@,%@,%@,%@,%@}", generalText(color.red), generalText(color.green), generalText(color.blue),
                generalText(color.alpha), kSRGBName);
}

Color Color::convertedToSRGB() const { return sRGB(red, green, blue, alpha); }

}  // namespace vellicor
