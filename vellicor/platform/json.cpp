// vellicor/platform/json.cpp — values to JSON and back.
#include "vellicor/platform/json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "vellicor/platform/exception.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// A tree is walked by recursion, so a text with deeper nesting is refused.
constexpr std::size_t kDeepestJson = 1000;

nlohmann::json toJson(const Value& value) {
    if (const bool* flag = value.asBoolean()) return *flag;
    if (const std::int64_t* number = value.asInteger()) return *number;
    if (const double* number = value.asReal()) return *number;
    if (const std::string* text = value.asText()) return *text;
    if (const Value::List* list = value.asList()) {
        nlohmann::json array = nlohmann::json::array();
        for (const Value& element : *list) array.push_back(toJson(element));
        return array;
    }
    if (const Value::Map* map = value.asMap()) {
        nlohmann::json object = nlohmann::json::object();
        for (const auto& [key, entry] : *map) object.emplace(key, toJson(entry));
        return object;
    }
    return nullptr;
}

/// Receives the events of the JSON reader and builds the value, so that no second tree exists.
class ValueBuilder : public nlohmann::json_sax<nlohmann::json> {
public:
    explicit ValueBuilder(std::string_view text) : _text(text) {}

    Value takeResult() { return std::move(_result); }

    bool null() override { return add(Value()); }
    bool boolean(bool flag) override { return add(Value::boolean(flag)); }
    bool number_integer(number_integer_t number) override { return add(Value::integer(number)); }
    bool number_unsigned(number_unsigned_t number) override {
        if (std::in_range<std::int64_t>(number)) return add(Value::integer(static_cast<std::int64_t>(number)));
        return add(Value::real(static_cast<double>(number)));
    }
    bool number_float(number_float_t number, const string_t&) override { return add(Value::real(number)); }
    bool string(string_t& text) override { return add(Value(std::move(text))); }
    bool binary(binary_t&) override { return false; }  // no such thing in a JSON text

    bool start_object(std::size_t) override { return open(Value::Map()); }
    bool start_array(std::size_t) override { return open(Value::List()); }
    bool key(string_t& name) override {
        _open.back().key = std::move(name);
        return true;
    }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception& error) override {
        fail(position, error.what());
        return false;
    }

private:
    struct Open {
        std::variant<Value::List, Value::Map> content;
        std::string key;  // of the entry that is being read
    };

    bool add(Value value) {
        if (_open.empty())
            _result = std::move(value);
        else if (auto* list = std::get_if<Value::List>(&_open.back().content))
            list->push_back(std::move(value));
        else
            std::get<Value::Map>(_open.back().content).insert_or_assign(std::move(_open.back().key), std::move(value));
        return true;
    }

    template <class Content>
    bool open(Content content) {
        if (_open.size() == kDeepestJson)
            throw SQLException("JSONException", text("more than %lu levels of nesting", kDeepestJson));
        _open.push_back({std::move(content), {}});
        return true;
    }

    bool close() {
        Open closed = std::move(_open.back());
        _open.pop_back();
        return add(std::visit([](auto& content) { return Value(std::move(content)); }, closed.content));
    }

    /// `position` counts the bytes read, the one that did not fit included.
    [[noreturn]] void fail(std::size_t position, std::string_view message) const {
        const std::string_view read = _text.substr(0, position ? position - 1 : 0);
        const auto line = std::count(read.begin(), read.end(), '\n') + 1;
        const std::size_t column = read.size() - (read.rfind('\n') + 1) + 1;  // npos + 1 is 0
        if (const std::size_t end = message.find("] "); end != message.npos) message.remove_prefix(end + 2);
        if (message.starts_with("parse error")) message.remove_prefix(message.find(": ") + 2);  // states the place too
        throw SQLException("JSONException", text("line %ld, column %lu: %@", line, column, message));
    }

    std::string_view _text;
    std::vector<Open> _open;
    Value _result;
};

}  // namespace

std::string jsonText(const Value& value) {
    return toJson(value).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string prettyJsonText(const Value& value, int indent) {
    return toJson(value).dump(std::max(indent, 0), ' ', false, nlohmann::json::error_handler_t::replace);
}

Value valueFromJson(std::string_view text) {
    ValueBuilder builder(text);
    nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
    return builder.takeResult();
}

}  // namespace vellicor
