// vellicor/platform/property_list.cpp — property lists over libplist.
#include "vellicor/platform/property_list.h"

#include <locale.h>
#include <plist/plist.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <memory>
#include <utility>

#include "vellicor/platform/base64.h"
#include "vellicor/platform/binary_property_list.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

/// A tree is walked by recursion, here and in the library, so a list with deeper nesting is refused.
constexpr int kDeepestPropertyList = 256;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct NodeDeleter {
    void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

/// While it lives, this thread reads and writes numbers with ".": the library goes through the C locale.
class PointAsDecimalSign {
public:
    PointAsDecimalSign() {
        static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
        _previous = uselocale(plain);
    }
    ~PointAsDecimalSign() { uselocale(_previous); }
    PointAsDecimalSign(const PointAsDecimalSign&) = delete;
    PointAsDecimalSign& operator=(const PointAsDecimalSign&) = delete;

private:
    locale_t _previous;
};

/// False when the lists and dictionaries of an XML form nest too deeply.
bool hasSaneNesting(std::string_view xml) {
    int depth = 0;
    std::size_t start = 0;
    while ((start = xml.find('<', start)) != xml.npos) {
        const std::string_view tag = xml.substr(start + 1);
        // "<!-->" does not close the comment that it opens.
        std::size_t opening = 1;
        std::string_view terminator = ">";
        for (const auto& [open, close] : {std::pair("!--", "-->"), {"![CDATA[", "]]>"}, {"?", "?>"}}) {
            if (!tag.starts_with(open)) continue;
            opening += std::string_view(open).size();
            terminator = close;
        }
        const std::size_t end = xml.find(terminator, start + opening);
        if (end == xml.npos) break;
        if (tag.starts_with("/dict") || tag.starts_with("/array")) --depth;
        if ((tag.starts_with("dict") || tag.starts_with("array")) && xml[end - 1] != '/' &&
            ++depth > kDeepestPropertyList)
            return false;
        start = end;
    }
    return true;
}

/// False when a text of an XML form is long and full of references: the library moves the rest of a text for each of
/// them.
bool hasSaneTexts(std::string_view xml) {
    constexpr std::size_t kMostMoved = 500'000'000;
    for (std::size_t start = 0; start < xml.size();) {
        const std::size_t end = std::min(xml.find('<', start), xml.size());
        const std::string_view text = xml.substr(start, end - start);
        const auto references = static_cast<std::size_t>(std::ranges::count(text, '&'));
        if (references > 0 && text.size() > kMostMoved / references) return false;
        start = end + 1;
    }
    return true;
}

/// A date, stored as seconds since the first moment of 2001, as "2001-01-31T23:59:59Z".
std::string dateText(std::int32_t seconds) {
    using namespace std::chrono;
    const sys_seconds moment = sys_days(year(2001) / January / 1) + std::chrono::seconds(seconds);
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss time(moment - day);
    auto digits = [](auto number, std::size_t width) {
        const std::string text = std::to_string(number);
        return std::string(width > text.size() ? width - text.size() : 0, '0') + text;
    };
    return digits(int{date.year()}, 4) + "-" + digits(unsigned{date.month()}, 2) + "-" +
           digits(unsigned{date.day()}, 2) + "T" + digits(time.hours().count(), 2) + ":" +
           digits(time.minutes().count(), 2) + ":" + digits(time.seconds().count(), 2) + "Z";
}

Value toValue(plist_t node);

Value::List toList(plist_t array) {
    Value::List list;
    list.reserve(plist_array_get_size(array));
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(array, &iterator);
    plist_t element = nullptr;
    for (plist_array_next_item(array, iterator, &element); element; plist_array_next_item(array, iterator, &element))
        list.push_back(toValue(element));
    std::free(iterator);
    return list;
}

Value::Map toMap(plist_t dictionary) {
    Value::Map map;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(dictionary, &iterator);
    while (true) {
        char* key = nullptr;
        plist_t entry = nullptr;
        plist_dict_next_item(dictionary, iterator, &key, &entry);
        const std::unique_ptr<char, decltype(&std::free)> keyOwner(key, &std::free);
        if (!entry || !key) break;
        map.insert_or_assign(repairedUTF8(key), toValue(entry));
    }
    std::free(iterator);
    return map;
}

Value toValue(plist_t node) {
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t flag = 0;
            plist_get_bool_val(node, &flag);
            return Value::boolean(flag != 0);
        }
        case PLIST_UINT: {  // negative numbers arrive as their 64 bits
            std::uint64_t number = 0;
            plist_get_uint_val(node, &number);
            return Value::integer(static_cast<std::int64_t>(number));
        }
        case PLIST_REAL: {
            double number = 0;
            plist_get_real_val(node, &number);
            return Value::real(number);
        }
        case PLIST_STRING: {
            std::uint64_t length = 0;
            const char* text = plist_get_string_ptr(node, &length);
            return repairedUTF8(text ? std::string_view(text, length) : std::string_view());
        }
        case PLIST_DATA: {
            std::uint64_t length = 0;
            const char* bytes = plist_get_data_ptr(node, &length);
            return base64Text(bytes ? std::string_view(bytes, length) : std::string_view());
        }
        case PLIST_DATE: {
            std::int32_t seconds = 0, microseconds = 0;
            plist_get_date_val(node, &seconds, &microseconds);
            return dateText(seconds);
        }
        case PLIST_UID: {
            std::uint64_t number = 0;
            plist_get_uid_val(node, &number);
            return Value::Map{{"CF$UID", Value::integer(static_cast<std::int64_t>(number))}};
        }
        case PLIST_ARRAY: return toList(node);
        case PLIST_DICT: return toMap(node);
        default: return {};
    }
}

/// The library takes texts as they are and up to a zero byte: what XML 1.0 cannot hold is dropped before.
std::string writable(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    for (char character : repairedUTF8(text)) {
        const bool control = static_cast<unsigned char>(character) < 0x20;
        if (!control || character == '\t' || character == '\n' || character == '\r') result += character;
    }
    return replacingAll(replacingAll(result, "\xEF\xBF\xBE", ""), "\xEF\xBF\xBF", "");  // U+FFFE and U+FFFF
}

/// The node of a value; null when there is a null in it.
Node toNode(const Value& value) {
    if (const bool* flag = value.asBoolean()) return Node(plist_new_bool(*flag));
    if (const std::int64_t* number = value.asInteger())
        return Node(plist_new_uint(static_cast<std::uint64_t>(*number)));
    if (const double* number = value.asReal()) return Node(plist_new_real(*number));
    if (const std::string* text = value.asText()) return Node(plist_new_string(writable(*text).c_str()));
    if (const Value::List* list = value.asList()) {
        Node array(plist_new_array());
        for (const Value& element : *list) {
            Node child = toNode(element);
            if (!child) return nullptr;
            plist_array_append_item(array.get(), child.release());
        }
        return array;
    }
    if (const Value::Map* map = value.asMap()) {
        Node dictionary(plist_new_dict());
        for (const auto& [key, entry] : *map) {
            Node child = toNode(entry);
            if (!child) return nullptr;
            plist_dict_set_item(dictionary.get(), writable(key).c_str(), child.release());
        }
        return dictionary;
    }
    return nullptr;
}

}  // namespace

std::optional<Value> valueFromPropertyList(std::string_view bytes, std::string& error) {
    const PointAsDecimalSign scope;
    plist_t read = nullptr;
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
        error = "the property list is too large";
        return std::nullopt;
    }
    if (isBinaryPropertyList(bytes)) {
        if (!binaryPropertyListIsSound(bytes, kDeepestPropertyList)) {
            error = "the binary property list is damaged or nested too deeply";
            return std::nullopt;
        }
        plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &read);
    } else {
        if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
        if (!hasSaneNesting(bytes)) {
            error = "the property list is nested too deeply";
            return std::nullopt;
        }
        if (!hasSaneTexts(bytes)) {
            error = "a text of the property list has too many references such as &amp; to be read";
            return std::nullopt;
        }
        plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &read);
    }
    const Node root(read);
    if (!root) {
        error = "not a property list in XML or binary form";
        return std::nullopt;
    }
    return toValue(root.get());
}

std::optional<std::string> propertyListText(const Value& value, std::string& error) {
    const PointAsDecimalSign scope;
    const Node root = toNode(value);
    if (!root) {
        error = "a property list cannot hold a null value";
        return std::nullopt;
    }
    char* text = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(root.get(), &text, &length);
    const std::unique_ptr<char, decltype(&plist_to_xml_free)> owner(text, &plist_to_xml_free);
    if (!text) {
        error = "the property list cannot be written";
        return std::nullopt;
    }
    return std::string(text, length);
}

}  // namespace vellicor
