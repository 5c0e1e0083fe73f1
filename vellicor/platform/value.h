// vellicor/platform/value.h — one tree of plain values for JSON, property lists and archives; and the property value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vellicor {

/// What a property dictionary stores under a key: text as a rule, or a number. Reads convert to text.
class PropertyValue {
public:
    PropertyValue(std::string text) : _value(std::move(text)) {}
    PropertyValue(std::string_view text) : _value(std::string(text)) {}
    PropertyValue(const char* text) : _value(std::string(text)) {}
    PropertyValue(std::nullptr_t) = delete;
    static PropertyValue integer(std::int64_t number) { return {std::in_place, number}; }
    static PropertyValue real(double number) { return {std::in_place, number}; }
    static PropertyValue boolean(bool flag) { return {std::in_place, flag}; }

    bool isText() const { return std::holds_alternative<std::string>(_value); }
    /// The text, or null when the value is a number or a flag.
    const std::string* asText() const { return std::get_if<std::string>(&_value); }
    /// Text as it is; integers in decimal; flags "1" or "0"; reals with up to 16 significant digits.
    std::string text() const;
    using Stored = std::variant<std::string, std::int64_t, double, bool>;
    const Stored& stored() const { return _value; }
    bool operator==(const PropertyValue&) const = default;

private:
    template <class T>
    PropertyValue(std::in_place_t, T plain) : _value(std::in_place_type<T>, plain) {}
    Stored _value;
};

/// A tree of plain values: null, flag, integer, real, text, list or map (keys in byte order).
class Value {
public:
    using List = std::vector<Value>;
    using Map = std::map<std::string, Value, std::less<>>;

    Value() = default;
    Value(std::nullptr_t) {}
    Value(std::string text) : _value(std::move(text)) {}
    Value(std::string_view text) : _value(std::string(text)) {}
    Value(const char* text) : _value(std::string(text)) {}
    Value(List list) : _value(std::move(list)) {}
    Value(Map map) : _value(std::move(map)) {}
    Value(const PropertyValue& property);
    static Value integer(std::int64_t number) { return {std::in_place, number}; }
    static Value real(double number) { return {std::in_place, number}; }
    static Value boolean(bool flag) { return {std::in_place, flag}; }

    bool isNull() const { return std::holds_alternative<std::monostate>(_value); }
    const std::string* asText() const { return std::get_if<std::string>(&_value); }
    const std::int64_t* asInteger() const { return std::get_if<std::int64_t>(&_value); }
    const double* asReal() const { return std::get_if<double>(&_value); }
    const bool* asBoolean() const { return std::get_if<bool>(&_value); }
    const List* asList() const { return std::get_if<List>(&_value); }
    const Map* asMap() const { return std::get_if<Map>(&_value); }
    /// The entry of a map; null when this is no map or has no such key.
    const Value* find(std::string_view key) const;
    bool operator==(const Value&) const = default;

    using Stored = std::variant<std::monostate, bool, std::int64_t, double, std::string, List, Map>;

private:
    template <class T>
    Value(std::in_place_t, T plain) : _value(std::in_place_type<T>, plain) {}
    Stored _value;
};

}  // namespace vellicor
