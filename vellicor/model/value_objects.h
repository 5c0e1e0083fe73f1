// vellicor/model/value_objects.h — the small holders that the reader fills: a point and a size.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "vellicor/model/class_info.h"
#include "vellicor/util/rectangle.h"

namespace vellicor {

/// A value that is no model object. It stores nothing itself.
class SQLValue : public Loadable {
public:
    void init() {}
    /// Logs that it was called; the base has nothing to store.
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;
};

/// A point, read from the element "location".
class SQLPoint : public SQLValue {
public:
    static std::shared_ptr<SQLPoint> pointWithPoint(Point point);
    void setPoint(Point point) { _point = point; }
    [[nodiscard]] Point pointValue() const { return _point; }
    void setX(double x) { _point.x = x; }
    void setY(double y) { _point.y = y; }
    void setXAsString(std::string_view text);
    void setYAsString(std::string_view text);
    /// "{x, y}".
    [[nodiscard]] std::string description() const;
    /// Takes "x" and "y"; ignores other keys.
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    Point _point;
};

/// A size, read from the element "size".
class SQLSize : public SQLValue {
public:
    static std::shared_ptr<SQLSize> sizeWithSize(Size size);
    void setSize(Size size) { _size = size; }
    [[nodiscard]] Size sizeValue() const { return _size; }
    void setWidth(double width) { _size.width = width; }
    void setHeight(double height) { _size.height = height; }
    /// Texts of widths and heights are read at single precision, unlike those of points.
    void setWidthAsString(std::string_view text);
    void setHeightAsString(std::string_view text);
    /// "{width, height}".
    [[nodiscard]] std::string description() const;
    /// Takes "width" and "height"; ignores other keys.
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    Size _size;
};

}  // namespace vellicor
