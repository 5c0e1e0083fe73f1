// vellicor/export/sql_identifiers.h — the names that stand in a user's piece of SQL, and the shape of its values.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

/// One name or bare word of a statement.
struct SQLIdentifier {
    std::size_t begin;  ///< of the identifier, its quotes included
    std::size_t end;    ///< behind it
    std::string name;   ///< without quotes
};

/// The identifiers of a text in order, in double quotes, back-quotes, brackets or bare; keywords are among them. Text
/// literals and comments are skipped.
[[nodiscard]] std::vector<SQLIdentifier> identifiersIn(std::string_view sql);

/// "'…'" whose inner quotes are doubled: one whole text literal.
[[nodiscard]] bool isTextLiteral(std::string_view value);
/// A word or a number, possibly with a sign.
[[nodiscard]] bool isSimpleToken(std::string_view value);
/// A call, an array, something in parentheses or with operators behind a literal, or a word for the present time.
[[nodiscard]] bool isExpression(std::string_view value);
/// A word or call that means the present time, with or without a precision.
[[nodiscard]] bool isPresentTime(std::string_view value);

}  // namespace vellicor
