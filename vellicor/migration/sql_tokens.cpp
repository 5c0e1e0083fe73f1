// vellicor/migration/sql_tokens.cpp — the words of a script.
#include "vellicor/migration/sql_tokens.h"

#include <algorithm>

namespace vellicor {

namespace {

bool isTokenDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool startsToken(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '@' || c == '#' ||
           static_cast<unsigned char>(c) >= 0x80;
}
bool continuesToken(char c) { return startsToken(c) || isTokenDigit(c) || c == '$'; }
char upperCased(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::size_t endOfQuoted(std::string_view sql, std::size_t open, char close, bool backslashEscapes) {
    for (std::size_t i = open + 1; i < sql.size(); ++i) {
        if (backslashEscapes && sql[i] == '\\')
            ++i;
        else if (sql[i] == close && i + 1 < sql.size() && sql[i + 1] == close)
            ++i;
        else if (sql[i] == close)
            return i + 1;
    }
    return sql.size();
}

std::size_t endAfter(std::string_view sql, std::string_view stop, std::size_t from) {
    const std::size_t found = sql.find(stop, std::min(from, sql.size()));
    return found == std::string_view::npos ? sql.size() : found + stop.size();
}

}  // namespace

bool SQLToken::isWord(std::string_view upperWord) const {
    return kind == Kind::Word && std::ranges::equal(text, upperWord, {}, upperCased);
}

SQLTokens sqlTokens(std::string_view sql, const SQLWordRules& rules) {
    using Kind = SQLToken::Kind;
    SQLTokens tokens;
    for (std::size_t i = 0; i < sql.size();) {
        const char c = sql[i];
        std::size_t end = i + 1;
        Kind kind = Kind::Symbol;
        if (isBlank(c)) {
            i = end;
            continue;
        }
        if (sql.substr(i, 2) == "--" || sql.substr(i, 2) == "/*") {
            i = c == '-' ? endAfter(sql, "\n", i) : endAfter(sql, "*/", i + 2);
            continue;
        }
        if (c == '\'') {
            kind = Kind::Text;
            end = endOfQuoted(sql, i, c, rules.backslashEscapes);
        } else if (c == '"' || c == '`' || (c == '[' && rules.bracketsQuoteNames)) {
            kind = Kind::Name;
            end = endOfQuoted(sql, i, c == '[' ? ']' : c, false);
        } else if (startsToken(c)) {
            kind = Kind::Word;
            while (end < sql.size() && continuesToken(sql[end])) ++end;
        } else if (isTokenDigit(c)) {
            kind = Kind::Number;
            while (end < sql.size() && (continuesToken(sql[end]) || sql[end] == '.')) ++end;
        }
        tokens.push_back({kind, sql.substr(i, end - i)});
        i = end;
    }
    return tokens;
}

std::string_view textOfTokens(const SQLToken* begin, const SQLToken* end) {
    if (begin == end) return {};
    const char* start = begin->text.data();
    const SQLToken& last = *(end - 1);
    return {start, static_cast<std::size_t>(last.text.data() + last.text.size() - start)};
}

std::string normalText(const SQLToken* begin, const SQLToken* end) {
    std::string normal;
    for (const SQLToken* token = begin; token != end; ++token) {
        const bool glued = normal.empty() || normal.back() == '(' || token->isSymbol(')') || token->isSymbol(',') ||
                           token->isSymbol('(') || token->isSymbol('.') || normal.back() == '.';
        if (!glued) normal += ' ';
        for (const char c : token->text) normal += token->kind == SQLToken::Kind::Word ? upperCased(c) : c;
    }
    return normal;
}

}  // namespace vellicor
