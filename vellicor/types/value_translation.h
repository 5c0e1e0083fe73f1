// vellicor/types/value_translation.h — defaults and checks of one dialect in the words of another.
#pragma once

#include <string>
#include <string_view>

#include "vellicor/types/type_translation.h"

namespace vellicor {

struct ValueTranslation {
    /// What is written; empty when the dialect cannot say it.
    std::string text;
    /// `Exact` when it means the same, `Lossy` when it is left out; the reason says why.
    TypeGrade grade = TypeGrade::Exact;
    std::string reason;
    /// A call or word, which is written as it stands; otherwise a value, which is quoted as its type asks.
    bool isExpression = false;
    /// The default numbers rows, as `nextval('s')` does: the column counts.
    bool counts = false;
};

struct DefaultOptions {
    /// The default was marked as an expression; a bare word such as `abc` is one then, not a text.
    bool isExpression = false;
    /// Digits of a second's fraction that the column keeps in `to`; a clock must show as many in MySQL.
    unsigned fraction = 0;
};

/// The default of a column whose type is `type` in `from` and `newType` in `to`. Values keep their text; words for the
/// clock, a new uuid, the user and truth are said as `to` says them; casts go.
[[nodiscard]] ValueTranslation translateDefault(std::string_view from, std::string_view to, std::string_view type,
                                                std::string_view newType, std::string_view value,
                                                DefaultOptions options = {});
/// A condition. Names take the quotes of `to`; operators and functions that every dialect has stay; what only one has
/// is said in words that all know, where there are any.
[[nodiscard]] ValueTranslation translateCheck(std::string_view from, std::string_view to, std::string_view condition);

}  // namespace vellicor
