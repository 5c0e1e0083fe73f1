// vellicor/export/sql_identifiers.cpp — the names that stand in a user's piece of SQL, and the shape of its values.
#include "vellicor/export/sql_identifiers.h"

#include <algorithm>

#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

bool isWordStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}
bool isWordPart(char c) { return isWordStart(c) || isDigit(c) || c == '$'; }

/// The position behind the next `stop`, or the end.
std::size_t behind(std::string_view sql, std::string_view stop, std::size_t from) {
    const std::size_t found = sql.find(stop, std::min(from, sql.size()));
    return found == std::string_view::npos ? sql.size() : found + stop.size();
}

/// The position behind the quote that closes the one at `open`; a doubled one does not close.
std::size_t behindQuote(std::string_view sql, std::size_t open, char close) {
    for (std::size_t i = open + 1; i < sql.size(); ++i) {
        if (sql[i] != close) continue;
        if (i + 1 < sql.size() && sql[i + 1] == close && close != ']')
            ++i;
        else
            return i + 1;
    }
    return sql.size();
}

std::string_view leadingWord(std::string_view value) {
    if (value.empty() || !isWordStart(value.front())) return {};
    const auto end = std::ranges::find_if(value, [](char c) { return !isWordPart(c) && c != '.'; });
    return value.substr(0, static_cast<std::size_t>(end - value.begin()));
}

}  // namespace

std::vector<SQLIdentifier> identifiersIn(std::string_view sql) {
    std::vector<SQLIdentifier> found;
    for (std::size_t i = 0; i < sql.size();) {
        const char c = sql[i];
        std::size_t end = i + 1;
        if (c == '\'') {
            end = behindQuote(sql, i, c);
        } else if (sql.substr(i, 2) == "--") {
            end = behind(sql, "\n", i);
        } else if (sql.substr(i, 2) == "/*") {
            end = behind(sql, "*/", i + 2);
        } else if (c == '"' || c == '`' || c == '[') {
            const char close = c == '[' ? ']' : c;
            end = behindQuote(sql, i, close);
            const std::string quote(1, close);
            if (end > i + 1)
                found.push_back({i, end, replacingAll(sql.substr(i + 1, end - i - 2), quote + quote, quote)});
        } else if (isWordStart(c) || isDigit(c)) {
            while (end < sql.size() && isWordPart(sql[end])) ++end;
            if (isWordStart(c)) found.push_back({i, end, std::string(sql.substr(i, end - i))});
        }
        i = end;
    }
    return found;
}

bool isTextLiteral(std::string_view value) {
    if (value.size() < 2 || value.front() != '\'' || value.back() != '\'') return false;
    const std::string_view content = value.substr(1, value.size() - 2);
    return replacingAll(content, "''", "").find('\'') == std::string::npos;
}

bool isSimpleToken(std::string_view value) {
    if (value.starts_with('+') || value.starts_with('-')) value.remove_prefix(1);
    return !value.empty() && std::ranges::all_of(value, [](char c) { return isWordPart(c) || c == '.'; });
}

bool isExpression(std::string_view value) {
    value = trimmed(value);
    if (isPresentTime(value) || value.starts_with('(')) return true;
    if (value.starts_with('\'')) return !isTextLiteral(value) && std::ranges::count(value, '\'') % 2 == 0;
    const std::string_view rest = trimmed(value.substr(leadingWord(value).size()));
    return rest.size() < value.size() && (rest.starts_with('(') || rest.starts_with('['));
}

bool isPresentTime(std::string_view value) {
    static constexpr std::string_view kWords[] = {"CURRENT_DATE", "CURRENT_TIME", "CURRENT_TIMESTAMP", "LOCALTIME",
                                                  "LOCALTIMESTAMP"};
    const std::string_view word = leadingWord(trimmed(value));
    const std::string_view rest = trimmed(trimmed(value).substr(word.size()));
    const bool isCall =
        rest.size() >= 2 && rest.front() == '(' && rest.back() == ')' &&
        std::ranges::all_of(rest.substr(1, rest.size() - 2), [](char c) { return isDigit(c) || c == ' '; });
    if (equalIgnoringCase(word, "NOW")) return isCall;
    return (rest.empty() || isCall) &&
           std::ranges::any_of(kWords, [&](std::string_view known) { return equalIgnoringCase(known, word); });
}

}  // namespace vellicor
