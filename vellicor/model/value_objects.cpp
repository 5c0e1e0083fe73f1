// vellicor/model/value_objects.cpp — points and sizes as the reader fills them.
#include "vellicor/model/value_objects.h"

#include <array>

#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

void SQLValue::setSafePropertyValue(const LoadedValue& /*value*/, std::string_view key) {
    log(text("SQLValue setSafePropertyValue called with key %@", key));
}

std::shared_ptr<SQLPoint> SQLPoint::pointWithPoint(Point point) {
    auto made = create<SQLPoint>();
    made->setPoint(point);
    return made;
}

void SQLPoint::setXAsString(std::string_view text) { setX(doubleValue(text)); }

void SQLPoint::setYAsString(std::string_view text) { setY(doubleValue(text)); }

std::string SQLPoint::description() const { return _point.description(); }

void SQLPoint::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    if (value.object) return;
    if (key == "x")
        setX(doubleValue(value.text));
    else if (key == "y")
        setY(doubleValue(value.text));
}

std::shared_ptr<SQLSize> SQLSize::sizeWithSize(Size size) {
    auto made = create<SQLSize>();
    made->setSize(size);
    return made;
}

// Kept: single precision, so that a size read this way is rounded to it while a point is not.
void SQLSize::setWidthAsString(std::string_view text) { setWidth(double{floatValue(text)}); }

void SQLSize::setHeightAsString(std::string_view text) { setHeight(double{floatValue(text)}); }

std::string SQLSize::description() const { return _size.description(); }

void SQLSize::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    if (value.object) return;
    if (key == "width")
        setWidth(doubleValue(value.text));
    else if (key == "height")
        setHeight(doubleValue(value.text));
}

namespace {

constexpr std::array kPointSetters{setter<&SQLPoint::setXAsString>("x"), setter<&SQLPoint::setYAsString>("y")};
constexpr std::array kSizeSetters{setter<&SQLSize::setWidthAsString>("width"),
                                  setter<&SQLSize::setHeightAsString>("height")};

}  // namespace

constinit const ClassInfo SQLValue::kClassInfo{"SQLValue", nullptr, {}, nullptr};
constinit const ClassInfo SQLPoint::kClassInfo{"SQLPoint", &SQLValue::kClassInfo, kPointSetters,
                                               makeLoadable<SQLPoint>};
constinit const ClassInfo SQLSize::kClassInfo{"SQLSize", &SQLValue::kClassInfo, kSizeSetters, makeLoadable<SQLSize>};

}  // namespace vellicor
