// vellicor/types/value_words.h — what the dialects say for the clock, a new uuid and the like, as data.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "vellicor/types/type_families.h"

namespace vellicor {

/// Between the alternatives of a cell: no dialect's text holds it.
inline constexpr char kWordEnd = ';';

enum class ValueMeaning : std::uint8_t { Now, Today, TimeOfDay, NewUuid, User };

/// What a default means: in each dialect the words that are understood, the first of which is written. Lower case,
/// without blanks; a last "%" is the clock's precision with its brackets.
struct ValueWords {
    ValueMeaning meaning;
    /// In the order of `TypeDialect`, alternatives apart by `kWordEnd`; empty when the dialect cannot say it.
    std::string_view words[10];
};
[[nodiscard]] std::span<const ValueWords> valueWords();

/// A function of conditions: its names in each dialect, in the order of `TypeDialect`, alternatives apart by `kWordEnd`
/// and the first written; empty where there is none.
struct FunctionWords {
    std::string_view names[10];
};
[[nodiscard]] std::span<const FunctionWords> functionWords();

/// Whether the alternatives of a cell hold the word, without regard to case.
[[nodiscard]] bool hasWord(std::string_view cell, std::string_view word);
/// What is written of a cell.
[[nodiscard]] constexpr std::string_view writtenWord(std::string_view cell) {
    return cell.substr(0, cell.find(kWordEnd));
}

}  // namespace vellicor
