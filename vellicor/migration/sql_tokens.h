// vellicor/migration/sql_tokens.h — the words of a script.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

/// What the words of a dialect look like.
struct SQLWordRules {
    bool bracketsQuoteNames = false;  ///< "[a b]" is a name
    bool backslashEscapes = false;    ///< inside a text literal
};

/// One word; `text` is a piece of the script, its quotes included.
struct SQLToken {
    enum class Kind { Word, Name, Text, Number, Symbol };  ///< `Name`: in quotes
    Kind kind;
    std::string_view text;

    [[nodiscard]] bool isSymbol(char c) const { return kind == Kind::Symbol && text.front() == c; }
    /// A bare word, without regard to case; `upper` is in upper case.
    [[nodiscard]] bool isWord(std::string_view upper) const;
    [[nodiscard]] bool isName() const { return kind == Kind::Word || kind == Kind::Name; }
};
using SQLTokens = std::vector<SQLToken>;

/// The words of a script, which must outlive them; remarks are left out. A script that ends inside a literal or a
/// remark ends there.
[[nodiscard]] SQLTokens sqlTokens(std::string_view sql, const SQLWordRules& rules);
/// The piece of the script from the first token to the last; empty for none.
[[nodiscard]] std::string_view textOfTokens(const SQLToken* begin, const SQLToken* end);
/// The tokens with one blank between them, none inside parentheses and before commas: equal for what differs only in
/// white space and the case of bare words.
[[nodiscard]] std::string normalText(const SQLToken* begin, const SQLToken* end);

}  // namespace vellicor
