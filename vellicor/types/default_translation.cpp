// vellicor/types/default_translation.cpp — defaults in the words of another dialect.
#include <algorithm>
#include <optional>

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/types/expression_tokens.h"
#include "vellicor/types/value_translation.h"
#include "vellicor/types/value_words.h"

namespace vellicor {

namespace {

struct Default {
    TypeDialect from, to;
    std::optional<TypeFamily> family, newFamily;
    DefaultOptions options;

    [[nodiscard]] bool isText() const { return family == TypeFamily::Text || family == TypeFamily::Enumeration; }
};

ValueTranslation value(std::string text) { return {std::move(text), TypeGrade::Exact, {}, false, false}; }
ValueTranslation expression(std::string text) { return {std::move(text), TypeGrade::Exact, {}, true, false}; }
ValueTranslation lost(std::string reason) { return {{}, TypeGrade::Lossy, std::move(reason), false, false}; }

std::string_view dialectName(TypeDialect dialect) { return typeDialectNames()[static_cast<std::size_t>(dialect)]; }

std::optional<bool> truthOf(std::string_view word) {
    static constexpr std::string_view kTrue[] = {"true", "t", "1", "yes", "y", "on"};
    static constexpr std::string_view kFalse[] = {"false", "f", "0", "no", "n", "off"};
    const auto isWord = [&](std::string_view own) { return equalIgnoringCase(own, word); };
    if (std::ranges::any_of(kTrue, isWord)) return true;
    if (std::ranges::any_of(kFalse, isWord)) return false;
    return std::nullopt;
}

ValueTranslation truth(const Default& column, bool isTrue) {
    const bool hasWords =
        column.newFamily == TypeFamily::Boolean &&
        (column.to == TypeDialect::Generic || column.to == TypeDialect::Postgres || column.to == TypeDialect::Redshift);
    return expression(hasWords ? (isTrue ? "TRUE" : "FALSE") : (isTrue ? "1" : "0"));
}

/// The word without blanks and without the precision of a clock.
std::string plainWord(std::string_view text) {
    std::string word = removingCharacters(text, " \t\r\n");
    const std::size_t open = word.rfind('(');
    if (open != std::string::npos && word.ends_with(')') && open + 2 < word.size() &&
        word.find_first_not_of("0123456789", open + 1) == word.size() - 1)
        word.resize(open);
    return word;
}

std::optional<ValueTranslation> meaningOf(const Default& column, std::string_view text) {
    const std::string word = plainWord(text);
    for (const ValueWords& row : valueWords()) {
        bool isMeant = hasWord(row.words[static_cast<std::size_t>(column.from)], word);
        if (column.from == TypeDialect::Generic)
            isMeant = std::ranges::any_of(row.words, [&](std::string_view cell) { return hasWord(cell, word); });
        if (!isMeant && !hasWord(removingCharacters(row.words[static_cast<std::size_t>(column.from)], "%"), word))
            continue;
        ValueMeaning meaning = row.meaning;
        const bool isClock = meaning == ValueMeaning::Now || meaning == ValueMeaning::TimeOfDay;
        if (isClock && column.newFamily == TypeFamily::Date) meaning = ValueMeaning::Today;
        if (meaning == ValueMeaning::Now && column.newFamily == TypeFamily::Time) meaning = ValueMeaning::TimeOfDay;
        const auto said = std::ranges::find(valueWords(), meaning, &ValueWords::meaning);
        const std::string_view cell = writtenWord(said->words[static_cast<std::size_t>(column.to)]);
        if (cell.empty())
            return lost(vellicor::text("%@ has no word for %@ in a default", dialectName(column.to), text));
        // A clock as a text is only for who casts by itself.
        const bool casts = column.to == TypeDialect::Generic || column.to == TypeDialect::SQLite ||
                           column.to == TypeDialect::Postgres || column.to == TypeDialect::Redshift;
        if (column.newFamily == TypeFamily::Text && row.meaning != ValueMeaning::NewUuid &&
            row.meaning != ValueMeaning::User && !casts)
            return lost(vellicor::text("%@ takes no time as the default of a text", dialectName(column.to)));
        if (!cell.ends_with('%')) return expression(std::string(cell));
        const bool isFine = column.newFamily == TypeFamily::Timestamp && column.options.fraction != 0;
        const std::string digits =
            isFine ? vellicor::text("(%lu)", std::uint64_t{column.options.fraction}) : std::string();
        return expression(std::string(cell.substr(0, cell.size() - 1)) + digits);
    }
    return std::nullopt;
}

bool isHex(std::string_view text) { return text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos; }

ValueTranslation bytes(const Default& column, const std::string& hex) {
    switch (column.to) {
        case TypeDialect::Postgres: return expression(text("'\\x%@'", hex));
        case TypeDialect::Oracle: return expression(text("'%@'", hex));
        case TypeDialect::SQLServer:
        case TypeDialect::Sybase: return expression("0x" + hex);
        case TypeDialect::Redshift:
        case TypeDialect::FileMaker:
        case TypeDialect::OpenBase: return lost("bytes have no literal");
        default: return expression(text("X'%@'", hex));
    }
}

ValueTranslation literal(const Default& column, const ExpressionToken& token) {
    if (token.prefix == "b" && column.family == TypeFamily::Boolean)
        if (const auto isTrue = truthOf(token.text)) return truth(column, *isTrue);
    if (token.prefix == "b" && column.newFamily == TypeFamily::Bits)
        return expression(text("%@'%@'", column.to == TypeDialect::MySQL ? "b" : "B", token.text));
    if (token.prefix == "x" && column.newFamily == TypeFamily::Binary) return bytes(column, token.text);
    if (column.family == TypeFamily::Binary && token.text.starts_with("\\x") && isHex(token.text.substr(2)))
        return bytes(column, token.text.substr(2));
    if (column.family == TypeFamily::Boolean)
        if (const auto isTrue = truthOf(token.text)) return truth(column, *isTrue);
    return value(textOf(column.to == TypeDialect::MySQL ? TypeDialect::Generic : column.to, {token}));
}

bool isSigned(const ExpressionTokens& tokens) {
    return tokens.size() == 2 && tokens[1].kind == ExpressionKind::Number &&
           (tokens[0].isSymbol("-") || tokens[0].isSymbol("+"));
}

ValueTranslation calculated(const Default& column, std::string_view text) {
    ValueTranslation made = translateCheck(dialectName(column.from), dialectName(column.to), text);
    if (made.grade == TypeGrade::Exact) made.text = vellicor::text("(%@)", made.text);
    return made;
}

}  // namespace

ValueTranslation translateDefault(std::string_view from, std::string_view to, std::string_view type,
                                  std::string_view newType, std::string_view text, DefaultOptions options) {
    const auto source = typeDialectNamed(from), target = typeDialectNamed(to);
    const std::string_view plain = trimmed(text);
    if (!source || !target || source == target || plain.empty())
        return {std::string(text), TypeGrade::Exact, {}, options.isExpression, false};
    const Default column{*source, *target, familyOfType(from, type), familyOfType(to, newType), options};
    if (equalIgnoringCase(plain, "null")) return expression("NULL");
    // A text that nobody called an expression is a text, whatever it says.
    const bool isQuoted = plain.size() >= 2 && plain.starts_with('\'') && plain.ends_with('\'');
    ExpressionTokens tokens = tokensOf(*source, plain);
    const bool hasCast = std::ranges::any_of(tokens, [](const auto& token) { return token.isSymbol("::"); });
    if (column.isText() && !options.isExpression && !isQuoted && !hasCast) return value(std::string(text));

    if (auto meant = meaningOf(column, plain)) return *meant;
    eraseCasts(tokens);
    eraseOuterBrackets(tokens);
    if (tokens.empty()) return value({});
    if (auto meant = meaningOf(column, textOf(*source, tokens)); meant && tokens.front().kind == ExpressionKind::Word)
        return *meant;
    if (tokens.front().isWord("nextval")) return {{}, TypeGrade::Exact, {}, true, true};
    if (tokens.size() == 1) {
        const ExpressionToken& token = tokens.front();
        if (token.isWord("NULL")) return expression("NULL");
        if (token.kind == ExpressionKind::Text) return literal(column, token);
        if (token.kind == ExpressionKind::Number && token.text.starts_with("0x") &&
            column.newFamily == TypeFamily::Binary)
            return bytes(column, token.text.substr(2));
        if (column.family == TypeFamily::Boolean || token.kind == ExpressionKind::Word)
            if (const auto isTrue = truthOf(token.text); isTrue && !column.isText()) return truth(column, *isTrue);
    }
    const bool isNumber = (tokens.size() == 1 && tokens[0].kind == ExpressionKind::Number) || isSigned(tokens);
    if (isNumber) return {textOf(*target, tokens), TypeGrade::Exact, {}, options.isExpression, false};
    const bool isCall = std::ranges::any_of(tokens, [](const auto& token) { return token.isSymbol("("); });
    if (!options.isExpression && !isCall) return value(std::string(text));
    return calculated(column, textOf(*source, tokens));
}

}  // namespace vellicor
