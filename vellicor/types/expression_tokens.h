// vellicor/types/expression_tokens.h — the words of an SQL expression.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vellicor/types/type_families.h"

namespace vellicor {

struct ExpressionToken {
    enum class Kind : unsigned char { Word, Name, Text, Number, Symbol };
    Kind kind = Kind::Symbol;
    /// A word or symbol as written; a quoted name or text without its quotes.
    std::string text;
    bool isSpaced = false;  ///< white space stands before it
    /// What stood before the quote of a text, in lower case: "n", "b", "x", "e", "_utf8mb4".
    std::string prefix;

    [[nodiscard]] bool isSymbol(std::string_view symbol) const { return kind == Kind::Symbol && text == symbol; }
    [[nodiscard]] bool isWord(std::string_view word) const;
};
using ExpressionKind = ExpressionToken::Kind;
using ExpressionTokens = std::vector<ExpressionToken>;

/// Comments are white space. Quotes are those of the dialect: in MySQL double ones hold a text, and a backslash
/// escapes.
[[nodiscard]] ExpressionTokens tokensOf(TypeDialect dialect, std::string_view expression);
/// Takes out casts such as `::character varying(20)`.
void eraseCasts(ExpressionTokens& tokens);
/// Takes away brackets that hold the whole.
void eraseOuterBrackets(ExpressionTokens& tokens);
/// The text that the tokens make in a dialect, names in its quotes.
[[nodiscard]] std::string textOf(TypeDialect dialect, const ExpressionTokens& tokens);
/// Lower-case letters, digits and "_" only: a name that means the same with quotes and without.
[[nodiscard]] bool isPlainName(std::string_view name);
/// A text in the quotes of SQL.
[[nodiscard]] std::string textLiteral(std::string_view content);

}  // namespace vellicor
