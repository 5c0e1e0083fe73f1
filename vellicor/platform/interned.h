// vellicor/platform/interned.h — texts that exist once in the process and compare by address.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace vellicor {

/// A pointer to the one copy of a text; as cheap to copy and to compare as a pointer. Made for keys, which are few and
/// come again and again: the copies live until the process ends. Any thread may make one.
class InternedText {
public:
    /// The empty text.
    InternedText();
    InternedText(std::string_view text);
    InternedText(const std::string& text) : InternedText(std::string_view(text)) {}
    InternedText(const char* text) : InternedText(std::string_view(text)) {}

    [[nodiscard]] std::string_view view() const { return *_text; }
    /// The shared copy itself; valid until the process ends.
    [[nodiscard]] const std::string& string() const { return *_text; }
    bool operator==(const InternedText&) const = default;

private:
    friend struct std::hash<InternedText>;
    const std::string* _text;
};

}  // namespace vellicor

template <>
struct std::hash<vellicor::InternedText> {
    std::size_t operator()(const vellicor::InternedText& text) const {
        return std::hash<const std::string*>{}(text._text);
    }
};
