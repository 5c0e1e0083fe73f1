// vellicor/export/runnable/runnable_text.cpp — names, values and comments as servers read them.
#include "vellicor/export/runnable/runnable_text.h"

#include <algorithm>

#include "vellicor/export/sql_identifiers.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string runnableTextLiteral(std::string_view content) { return "'" + replacingAll(content, "'", "''") + "'"; }

std::string runnableLiteral(std::string_view value) {
    const bool isQuoted = value.size() >= 2 && value.starts_with('\'') && value.ends_with('\'');
    const std::string_view content = isQuoted ? value.substr(1, value.size() - 2) : value;
    // Inside quotes a quote is already escaped by a backslash or by doubling.
    return runnableTextLiteral(isQuoted ? replacingAll(replacingAll(content, "\\'", "'"), "''", "'")
                                        : std::string(content));
}

std::string runnableExpression(std::string_view value) {
    const std::string_view expression = trimmed(value);
    const bool standsBare = isSimpleToken(expression) || isTextLiteral(expression) || expression.starts_with('(');
    return standsBare ? std::string(value) : text("(%@)", expression);
}

std::string runnableComment(std::string_view comment) {
    // A comment may not end early: what follows would run as SQL. Nor may it open another, which some servers nest.
    std::string content = replacingAll(replacingAll(comment, "*/", "* /"), "/*", "/ *");
    if (content.ends_with('/')) content += ' ';
    return content;
}

bool isRemark(std::string_view sql) {
    sql = trimmed(sql);
    return sql.starts_with("/*") && sql.ends_with("*/") && sql.find("*/") + 2 == sql.size();
}

bool endsInRemark(std::string_view sql) { return sql.substr(sql.rfind('\n') + 1).find("--") != std::string_view::npos; }

bool isRefusedBare(std::string_view name, bool isReservedWord) {
    // Who decided about a kind of quoting is obeyed; nobody having decided, the server does.
    const Preferences& preferences = Preferences::shared();
    const auto mayQuote = [&](const char* key) {
        return !preferences.objectForKey(key) || preferences.boolForKey(key);
    };
    if (isReservedWord) return mayQuote(prefs::quoteReservedWords);
    const bool isDigit = !name.empty() && name.front() >= '0' && name.front() <= '9';
    const bool isWord = !isDigit && std::ranges::all_of(name, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == ' ' ||
               static_cast<unsigned char>(c) >= 0x80;
    });
    return !isWord && mayQuote(prefs::autoQuoteIdentifiersWithInvalidCharacters);
}

}  // namespace vellicor
