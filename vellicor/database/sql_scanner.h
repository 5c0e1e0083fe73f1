// vellicor/database/sql_scanner.h — SQL text as tokens.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

struct SqlToken {
    enum class Kind { Word, Name, Text, Number, Mark, End };
    Kind kind = Kind::End;
    std::size_t start = 0;  ///< in the text
    std::size_t end = 0;
    std::string value;  ///< a quoted name without its quotes; a word in upper case; else as written

    [[nodiscard]] bool is(std::string_view wordOrMark) const {
        return (kind == Kind::Word || kind == Kind::Mark) && value == wordOrMark;
    }
    /// A word may be a name, too.
    [[nodiscard]] bool isName() const { return kind == Kind::Word || kind == Kind::Name; }
};

/// Remarks are left out. Names stand in "…", `…` or […], texts in '…', where a quote is doubled; `backslashes` escape
/// in texts, too. The last token is always the end.
[[nodiscard]] std::vector<SqlToken> sqlTokens(std::string_view sql, bool backslashes = false);

/// Whether the text is one number, its sign included.
[[nodiscard]] bool isSqlNumber(std::string_view text);

/// The content of a text literal such as 'it''s'; false when the whole is none.
[[nodiscard]] bool contentOfSqlText(std::string_view text, std::string& content, bool backslashes = false);

/// Without remarks, blanks and line breaks between tokens made one blank.
[[nodiscard]] std::string singleLineSql(std::string_view sql);

/// Without the parentheses around the whole.
[[nodiscard]] std::string_view withoutOuterParentheses(std::string_view sql);

}  // namespace vellicor
