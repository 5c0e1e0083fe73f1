// vellicor/database/sql_scanner.cpp — cutting SQL text into tokens.
#include "vellicor/database/sql_scanner.h"

#include <algorithm>

#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

bool isWordCharacter(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return ((byte | 0x20) >= 'a' && (byte | 0x20) <= 'z') || isDigit(c) || c == '_' || c == '$' || byte >= 0x80;
}
bool isSqlDigit(char c) { return c >= '0' && c <= '9'; }
bool isSqlBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

class TokenScanner {
public:
    TokenScanner(std::string_view sql, bool backslashes) : _sql(sql), _backslashes(backslashes) {}

    std::vector<SqlToken> tokens() {
        std::vector<SqlToken> tokens;
        while (skip(), _place < _sql.size()) tokens.push_back(next());
        tokens.push_back({SqlToken::Kind::End, _sql.size(), _sql.size(), {}});
        return tokens;
    }

private:
    void skip() {
        while (_place < _sql.size()) {
            const std::string_view rest = _sql.substr(_place);
            if (isSqlBlank(rest.front()))
                ++_place;
            else if (rest.starts_with("--"))
                _place = std::min(_sql.find('\n', _place), _sql.size());
            else if (rest.starts_with("/*"))
                _place = std::min(_sql.find("*/", _place + 2), _sql.size() - 2) + 2;
            else
                return;
        }
    }

    SqlToken next() {
        const std::size_t start = _place;
        const char c = _sql[start];
        SqlToken token{SqlToken::Kind::Mark, start, start, {}};
        if (c == '\'' || c == '"' || c == '`' || c == '[') {
            token.kind = c == '\'' ? SqlToken::Kind::Text : SqlToken::Kind::Name;
            token.value = quoted(c == '[' ? ']' : c);
        } else if (isSqlDigit(c) || (c == '.' && start + 1 < _sql.size() && isSqlDigit(_sql[start + 1]))) {
            token.kind = SqlToken::Kind::Number;
            number();
        } else if (isWordCharacter(c)) {
            token.kind = SqlToken::Kind::Word;
            while (_place < _sql.size() && isWordCharacter(_sql[_place])) ++_place;
        } else {
            ++_place;
        }
        token.end = _place;
        const std::string_view written = _sql.substr(start, _place - start);
        if (token.kind == SqlToken::Kind::Word)
            token.value = uppercased(written);
        else if (token.kind == SqlToken::Kind::Mark || token.kind == SqlToken::Kind::Number)
            token.value = written;
        return token;
    }

    void number() {
        while (_place < _sql.size()) {
            const char c = _sql[_place];
            const bool isSign = (c == '+' || c == '-') && (_sql[_place - 1] | 0x20) == 'e';
            if (!isWordCharacter(c) && c != '.' && !isSign) return;
            ++_place;
        }
    }

    std::string quoted(char end) {
        std::string content;
        for (++_place; _place < _sql.size(); ++_place) {
            char c = _sql[_place];
            if (c == end) {
                if (_place + 1 >= _sql.size() || _sql[_place + 1] != end || end == ']') break;
                ++_place;
            } else if (c == '\\' && _backslashes && end == '\'' && _place + 1 < _sql.size()) {
                c = _sql[++_place];
                if (c == 'n') c = '\n';
                if (c == 't') c = '\t';
                if (c == 'r') c = '\r';
                if (c == '0') c = '\0';
            }
            content += c;
        }
        _place = std::min(_place + 1, _sql.size());
        return content;
    }

    std::string_view _sql;
    bool _backslashes;
    std::size_t _place = 0;
};

}  // namespace

std::vector<SqlToken> sqlTokens(std::string_view sql, bool backslashes) {
    return TokenScanner(sql, backslashes).tokens();
}

bool isSqlNumber(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    std::size_t digits = 0;
    std::size_t dots = 0;
    for (const char c : text) {
        digits += isSqlDigit(c);
        dots += c == '.';
        if (!isSqlDigit(c) && c != '.') return false;
    }
    return digits > 0 && dots < 2;
}

bool contentOfSqlText(std::string_view text, std::string& content, bool backslashes) {
    const auto tokens = sqlTokens(text, backslashes);
    if (tokens.size() != 2 || tokens[0].kind != SqlToken::Kind::Text) return false;
    content = tokens[0].value;
    return true;
}

std::string singleLineSql(std::string_view sql) {
    std::string line;
    std::size_t last = 0;
    for (const SqlToken& token : sqlTokens(sql)) {
        if (!line.empty() && token.start > last && token.kind != SqlToken::Kind::End) line += ' ';
        line += sql.substr(token.start, token.end - token.start);
        last = token.end;
    }
    return line;
}

std::string_view withoutOuterParentheses(std::string_view sql) {
    for (sql = trimmed(sql); sql.starts_with('(') && sql.ends_with(')'); sql = trimmed(sql.substr(1, sql.size() - 2))) {
        int depth = 0;
        const auto tokens = sqlTokens(sql);
        for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {  // up to the last mark but one
            depth += tokens[i].is("(") - tokens[i].is(")");
            if (depth == 0) return sql;
        }
    }
    return sql;
}

}  // namespace vellicor
