// vellicor/dialects/word_list.h — lists of words that a dialect knows, such as its types.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

namespace vellicor {

using WordList = std::span<const std::string_view>;

/// Exactly that word.
[[nodiscard]] inline bool holds(WordList words, std::string_view word) {
    return std::ranges::find(words, word) != words.end();
}

}  // namespace vellicor
