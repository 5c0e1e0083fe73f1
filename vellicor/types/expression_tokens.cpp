// vellicor/types/expression_tokens.cpp — cutting expressions into words.
#include "vellicor/types/expression_tokens.h"

#include <algorithm>
#include <utility>

#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {
bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}
bool isNamePart(char c) { return isNameStart(c) || isDigit(c) || c == '$' || c == '#'; }
bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isOperator(char c) { return std::string_view("+-*/<>=~!@#%^&|?:").find(c) != std::string_view::npos; }

class Cutter {
public:
    Cutter(TypeDialect dialect, std::string_view text) : _dialect(dialect), _text(text) {}

    ExpressionTokens tokens() {
        while (skipSpace(), _position < _text.size()) {
            const char c = _text[_position];
            if (isNameStart(c))
                addWord();
            else if (isDigit(c) || (c == '.' && isDigit(at(1))))
                addNumber();
            else if (c == '\'')
                add(ExpressionKind::Text, quoted('\''));
            else if (c == '"')
                add(_dialect == TypeDialect::MySQL ? ExpressionKind::Text : ExpressionKind::Name, quoted('"'));
            else if (c == '`')
                add(ExpressionKind::Name, quoted('`'));
            else if (c == '[' && bracketsNames())
                add(ExpressionKind::Name, quoted(']'));
            else
                addSymbol();
        }
        return std::move(_tokens);
    }

private:
    char at(std::size_t ahead) const { return _position + ahead < _text.size() ? _text[_position + ahead] : '\0'; }
    bool bracketsNames() const {
        return _dialect == TypeDialect::SQLServer || _dialect == TypeDialect::Sybase || _dialect == TypeDialect::SQLite;
    }

    void add(ExpressionKind kind, std::string text, std::string prefix = {}) {
        _tokens.push_back({kind, std::move(text), std::exchange(_isSpaced, false), std::move(prefix)});
    }

    void skipSpace() {
        while (_position < _text.size()) {
            const std::size_t start = _position;
            if (isSpace(_text[_position]))
                ++_position;
            else if (_text.substr(_position).starts_with("--"))
                _position = std::min(_text.find('\n', _position), _text.size());
            else if (_text.substr(_position).starts_with("/*"))
                _position = std::min(_text.find("*/", _position), _text.size() - 2) + 2;
            if (_position == start) return;
            _isSpaced = true;
        }
    }

    /// What stands between the quotes; the position goes behind them.
    std::string quoted(char end, bool hasEscapes = false) {
        hasEscapes |= _dialect == TypeDialect::MySQL && end != '`';
        std::string content;
        for (++_position; _position < _text.size(); ++_position) {
            const char c = _text[_position];
            if (c == '\\' && hasEscapes && _position + 1 < _text.size()) {
                content += escaped(_text[++_position]);
            } else if (c == end) {
                if (at(1) != end) break;
                content += _text[++_position];
            } else {
                content += c;
            }
        }
        if (_position < _text.size()) ++_position;
        return content;
    }

    static char escaped(char c) {
        switch (c) {
            case 'n': return '\n';
            case 't': return '\t';
            case 'r': return '\r';
            default: return c;
        }
    }

    void addWord() {
        std::size_t end = _position;
        while (end < _text.size() && isNamePart(_text[end])) ++end;
        std::string word(_text.substr(_position, end - _position));
        _position = end;
        // N'…', B'…', _utf8mb4'…' and their like are texts.
        const std::string prefix = lowercased(word);
        const bool isPrefix =
            prefix == "n" || prefix == "e" || prefix == "b" || prefix == "x" || prefix.starts_with('_');
        if (at(0) == '\'' && isPrefix)
            add(ExpressionKind::Text, quoted('\'', prefix == "e"), prefix);
        else
            add(ExpressionKind::Word, std::move(word));
    }

    void addNumber() {
        std::size_t end = _position;
        const auto isExponentSign = [&] {
            return (_text[end] == '+' || _text[end] == '-') && (_text[end - 1] | 32) == 'e';
        };
        while (end < _text.size() && (isNamePart(_text[end]) || _text[end] == '.' || isExponentSign())) ++end;
        add(ExpressionKind::Number, std::string(_text.substr(_position, end - _position)));
        _position = end;
    }

    void addSymbol() {
        std::size_t end = _position + 1;
        if (isOperator(_text[_position]))
            // A sign behind an operator is of the number that follows.
            while (end < _text.size() && isOperator(_text[end]) && _text[end] != '-' && _text[end] != '+') ++end;
        add(ExpressionKind::Symbol, std::string(_text.substr(_position, end - _position)));
        _position = end;
    }

    TypeDialect _dialect;
    std::string_view _text;
    std::size_t _position = 0;
    bool _isSpaced = false;
    ExpressionTokens _tokens;
};

/// The position behind the bracket that closes the one at `open`; the end when none does.
std::size_t behindBracket(const ExpressionTokens& tokens, std::size_t open) {
    int depth = 0;
    for (std::size_t i = open; i < tokens.size(); ++i) {
        depth += tokens[i].isSymbol("(") || tokens[i].isSymbol("[");
        depth -= tokens[i].isSymbol(")") || tokens[i].isSymbol("]");
        if (depth == 0) return i + 1;
    }
    return tokens.size();
}

/// The position behind the type that starts at `start`.
std::size_t behindType(const ExpressionTokens& tokens, std::size_t start) {
    static constexpr std::string_view kMore[] = {"varying", "precision", "with", "without", "time", "zone"};
    std::size_t end = start + 1;
    while (end < tokens.size()) {
        const ExpressionToken& token = tokens[end];
        if (std::ranges::any_of(kMore, [&](std::string_view word) { return token.isWord(word); }))
            ++end;
        else if (token.isSymbol("(") || token.isSymbol("["))
            end = behindBracket(tokens, end);
        else if (token.isSymbol(".") && end + 1 < tokens.size())
            end += 2;
        else
            break;
    }
    return std::min(end, tokens.size());
}

}  // namespace

bool ExpressionToken::isWord(std::string_view word) const {
    return kind == ExpressionKind::Word && equalIgnoringCase(text, word);
}

ExpressionTokens tokensOf(TypeDialect dialect, std::string_view expression) {
    return Cutter(dialect, expression).tokens();
}

void eraseCasts(ExpressionTokens& tokens) {
    for (std::size_t i = 0; i < tokens.size();) {
        if (!tokens[i].isSymbol("::")) {
            ++i;
            continue;
        }
        const auto begin = tokens.begin();
        tokens.erase(begin + static_cast<std::ptrdiff_t>(i),
                     begin + static_cast<std::ptrdiff_t>(behindType(tokens, std::min(i + 1, tokens.size() - 1))));
    }
}

void eraseOuterBrackets(ExpressionTokens& tokens) {
    while (tokens.size() > 2 && tokens.front().isSymbol("(") && behindBracket(tokens, 0) == tokens.size()) {
        tokens.erase(tokens.begin());
        tokens.pop_back();
        tokens.front().isSpaced = false;
    }
}

bool isPlainName(std::string_view name) {
    return !name.empty() && !isDigit(name.front()) &&
           std::ranges::all_of(name, [](char c) { return (c >= 'a' && c <= 'z') || isDigit(c) || c == '_'; });
}

std::string textOf(TypeDialect dialect, const ExpressionTokens& tokens) {
    const bool isMySQL = dialect == TypeDialect::MySQL, hasBrackets = dialect == TypeDialect::SQLServer;
    // A bare name means what its column is called there, in capitals; a quoted one does not.
    const bool foldsNames = dialect == TypeDialect::Oracle || dialect == TypeDialect::OpenBase;
    std::string all;
    for (const ExpressionToken& token : tokens) {
        if (token.isSpaced && !all.empty()) all += ' ';
        if (token.kind == ExpressionKind::Name && foldsNames && isPlainName(token.text)) {
            all += token.text;
        } else if (token.kind == ExpressionKind::Name) {
            const std::string end = isMySQL ? "`" : hasBrackets ? "]" : "\"";
            all += (hasBrackets ? "[" : end) + replacingAll(token.text, end, end + end) + end;
        } else if (token.kind == ExpressionKind::Text) {
            all += textLiteral(isMySQL ? replacingAll(token.text, "\\", "\\\\") : token.text);
        } else {
            all += token.text;
        }
    }
    return all;
}

std::string textLiteral(std::string_view content) { return "'" + replacingAll(content, "'", "''") + "'"; }

}  // namespace vellicor
