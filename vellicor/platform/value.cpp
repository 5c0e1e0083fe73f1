// vellicor/platform/value.cpp — property values as text and as plain values.
#include "vellicor/platform/value.h"

#include "vellicor/platform/numbers.h"

namespace vellicor {

std::string PropertyValue::text() const {
    struct {
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
        std::string operator()(double number) const { return numberText(number); }
        std::string operator()(bool flag) const { return flag ? "1" : "0"; }
    } asText;
    return std::visit(asText, _value);
}

Value::Value(const PropertyValue& property) {
    std::visit([this](const auto& stored) { _value = stored; }, property.stored());
}

const Value* Value::find(std::string_view key) const {
    const Map* map = asMap();
    if (!map) return nullptr;
    const auto entry = map->find(key);
    return entry == map->end() ? nullptr : &entry->second;
}

}  // namespace vellicor
