// vellicor/platform/text_format.h — filling the placeholders of a text template in one left-to-right pass.
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace vellicor {

/// One argument of `text`, already turned into what its placeholder prints. A null text prints "(null)".
class TextArgument {
public:
    TextArgument(std::string_view text) : _text(text) {}
    TextArgument(const std::string& text) : _text(text) {}
    TextArgument(const char* text) : _text(text ? std::string_view(text) : kNull) {}
    TextArgument(const std::optional<std::string>& text) : _text(text ? std::string_view(*text) : kNull) {}
    template <std::integral I>
    requires(!std::same_as<I, bool> && !std::same_as<I, char>) TextArgument(I number) {
        _text = {_digits,
                 static_cast<std::size_t>(std::to_chars(_digits, _digits + sizeof _digits, number).ptr - _digits)};
    }
    TextArgument(const TextArgument&) = delete;
    TextArgument& operator=(const TextArgument&) = delete;
    std::string_view view() const { return _text; }

private:
    static constexpr std::string_view kNull = "(null)";
    std::string_view _text;
    char _digits[24];
};

namespace detail {

/// Length of the placeholder at `position`, or 0: %@ %ld %lu %d %p.
constexpr std::size_t placeholderLength(std::string_view form, std::size_t position) {
    std::string_view rest = form.substr(position);
    if (rest.starts_with("%@") || rest.starts_with("%d") || rest.starts_with("%p")) return 2;
    if (rest.starts_with("%ld") || rest.starts_with("%lu")) return 3;
    return 0;
}

constexpr std::size_t placeholderCount(std::string_view form) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < form.size(); ++i) {
        if (std::size_t length = placeholderLength(form, i)) {
            ++count;
            i += length - 1;
        }
    }
    return count;
}

/// A template whose number of placeholders is checked while compiling.
template <class... Args>
struct CheckedForm {
    consteval CheckedForm(const char* form) : text(form) {
        if (placeholderCount(text) != sizeof...(Args)) throw "number of placeholders and arguments differ";
    }
    std::string_view text;
};

std::string fill(std::string_view form, const TextArgument* const* arguments, std::size_t count);

template <class>
using ArgumentOf = TextArgument;

template <class... Args>
std::string fillAll(std::string_view form, const ArgumentOf<Args>&... arguments) {
    const TextArgument* list[] = {&arguments...};
    return fill(form, list, sizeof...(Args));
}

}  // namespace detail

/// `form` with each placeholder (%@ for text, %ld %lu %d for numbers, %p for an address text) replaced by its argument.
/// Substitution is a single pass: a placeholder inside an argument stays as it is.
template <class... Args>
[[nodiscard]] std::string text(std::type_identity_t<detail::CheckedForm<Args...>> form, const Args&... arguments) {
    if constexpr (sizeof...(Args) == 0)
        return std::string(form.text);
    else
        return detail::fillAll<Args...>(form.text, arguments...);
}

}  // namespace vellicor
