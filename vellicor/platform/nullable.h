// vellicor/platform/nullable.h — an argument that may be null, however its caller spells null.
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <utility>

namespace vellicor {

/// What an optional T is made of, null pointers apart.
template <class From, class T>
concept MakesOptional = std::convertible_to<From, std::optional<T>> && !std::convertible_to<From, const char*>;

/// An optional T, made of texts, that also takes null pointers: `nullptr` and a null `const char*` are null, as
/// `std::nullopt` is, and never reach T.
template <class T>
class Nullable : public std::optional<T> {
public:
    Nullable(std::nullptr_t) {}
    Nullable(const char* text) : std::optional<T>(text ? std::optional<T>(text) : std::nullopt) {}
    template <MakesOptional<T> From>
    Nullable(From&& from) : std::optional<T>(std::forward<From>(from)) {}
};

}  // namespace vellicor
