// vellicor/export/generic_words.h — reserved words of the generic dialect.
#pragma once

#include <span>
#include <string_view>

namespace vellicor {

/// Upper case, in alphabetical order.
[[nodiscard]] std::span<const std::string_view> genericReservedWords();

}  // namespace vellicor
