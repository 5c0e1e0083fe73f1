// vellicor/util/rectangle.h — points, sizes and rectangles of the canvas, in canvas points.
#pragma once

#include <algorithm>
#include <string>

#include "vellicor/platform/numbers.h"

namespace vellicor {

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
    /// "{x, y}" with up to 17 significant digits.
    [[nodiscard]] std::string description() const { return "{" + generalText(x, 17) + ", " + generalText(y, 17) + "}"; }
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
    /// "{width, height}" with up to 17 significant digits.
    [[nodiscard]] std::string description() const {
        return "{" + generalText(width, 17) + ", " + generalText(height, 17) + "}";
    }
};

struct Rect {
    Point origin;
    Size size;
    bool operator==(const Rect&) const = default;
    /// True unless both sides are greater than zero.
    [[nodiscard]] bool isEmpty() const { return !(size.width > 0 && size.height > 0); }
    /// "{{x, y}, {width, height}}".
    [[nodiscard]] std::string description() const {
        return "{" + origin.description() + ", " + size.description() + "}";
    }
};

/// The smallest rectangle around both. An empty one does not count, wherever it lies; of two empty ones the union is
/// the zero rectangle.
[[nodiscard]] inline Rect unionRect(const Rect& a, const Rect& b) {
    if (a.isEmpty()) return b.isEmpty() ? Rect{} : b;
    if (b.isEmpty()) return a;
    const Point least{std::min(a.origin.x, b.origin.x), std::min(a.origin.y, b.origin.y)};
    const Point most{std::max(a.origin.x + a.size.width, b.origin.x + b.size.width),
                     std::max(a.origin.y + a.size.height, b.origin.y + b.size.height)};
    return {least, {most.x - least.x, most.y - least.y}};
}

}  // namespace vellicor
