// vellicor/platform/color.h — a colour in a colour space, and its text form.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vellicor {

enum class ColorSpace { SRGB, DeviceRGB, CalibratedRGB };

/// Red, green, blue and alpha from 0 to 1 in a colour space.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    ColorSpace space = ColorSpace::SRGB;

    static Color sRGB(double red, double green, double blue, double alpha = 1) {
        return {red, green, blue, alpha, ColorSpace::SRGB};
    }
    static Color white() { return {1, 1, 1, 1, ColorSpace::CalibratedRGB}; }
    static Color clear() { return {0, 0, 0, 0, ColorSpace::SRGB}; }

    /// The colour that a text form describes; null gives calibrated white. Reads as far as the text goes: missing
    /// components keep 0, alpha 1. Without the name of the sRGB space at the end the colour is device RGB.
    static Color colorWithString(const std::optional<std::string>& text);
    /// "{red,green,blue,alpha,sRGBColorSpace}" after conversion to sRGB, the same in every locale.
    [[nodiscard]] std::string string() const;
    /// The same components as a colour in the sRGB space, whose curve the other spaces are taken to share.
    [[nodiscard]] Color convertedToSRGB() const;
    bool operator==(const Color&) const = default;
};

}  // namespace vellicor
