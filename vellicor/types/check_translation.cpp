// vellicor/types/check_translation.cpp — conditions in the words of another dialect.
#include <algorithm>
#include <optional>

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/types/expression_tokens.h"
#include "vellicor/types/value_translation.h"
#include "vellicor/types/value_words.h"

namespace vellicor {

namespace {

// Words that mean the same everywhere.
constexpr std::string_view kCommonWords[] = {"AND",  "OR",   "NOT",  "IN",   "IS",   "NULL", "BETWEEN",
                                             "LIKE", "CASE", "WHEN", "THEN", "ELSE", "END"};
// Words of SQL that are no names of columns, and mean something in some dialects only.
constexpr std::string_view kForeignWords[] = {"ALL",
                                              "ANY",
                                              "ARRAY",
                                              "BINARY",
                                              "CAST",
                                              "COLLATE",
                                              "CURRENT_DATE",
                                              "CURRENT_TIME",
                                              "DIV",
                                              "DISTINCT",
                                              "ESCAPE",
                                              "EXISTS",
                                              "EXTRACT",
                                              "GLOB",
                                              "ILIKE",
                                              "INTERVAL",
                                              "ISNULL",
                                              "LOCALTIME",
                                              "MATCH",
                                              "MOD",
                                              "NOTNULL",
                                              "OVERLAPS",
                                              "REGEXP",
                                              "RLIKE",
                                              "SELECT",
                                              "SIMILAR",
                                              "SOME",
                                              "SYSDATE",
                                              "UNIQUE",
                                              "XOR",
                                              "CURRENT_TIMESTAMP"};
constexpr std::string_view kCommonSymbols[] = {"=", "<>", "<", ">", "<=", ">=", "+", "-", "*", "(", ")", ",", "."};

bool isAmong(std::span<const std::string_view> words, std::string_view word) {
    return std::ranges::any_of(words, [&](std::string_view own) { return equalIgnoringCase(own, word); });
}

bool hasTruthWords(TypeDialect dialect) {
    return dialect == TypeDialect::Generic || dialect == TypeDialect::OpenBase || dialect == TypeDialect::Postgres ||
           dialect == TypeDialect::Redshift || dialect == TypeDialect::MySQL || dialect == TypeDialect::SQLite;
}

/// "= ANY (ARRAY[…])" is "IN (…)", "<> ALL (ARRAY[…])" is "NOT IN (…)".
void writeListsAsIn(ExpressionTokens& tokens) {
    for (std::size_t i = 0; i + 4 < tokens.size(); ++i) {
        const bool isAny = tokens[i].isSymbol("=") && tokens[i + 1].isWord("ANY");
        if (!isAny && !(tokens[i].isSymbol("<>") && tokens[i + 1].isWord("ALL"))) continue;
        std::size_t list = i + 2, brackets = 0;
        while (list < tokens.size() && tokens[list].isSymbol("(")) ++list, ++brackets;
        if (brackets == 0 || list + 1 >= tokens.size() || !tokens[list].isWord("ARRAY") ||
            !tokens[list + 1].isSymbol("["))
            continue;
        std::size_t end = list + 2;
        while (end < tokens.size() && !tokens[end].isSymbol("]")) ++end;
        if (end + brackets >= tokens.size()) continue;
        ExpressionTokens in;
        if (!isAny) in.push_back({ExpressionKind::Word, "NOT", true, {}});
        in.push_back({ExpressionKind::Word, "IN", true, {}});
        in.push_back({ExpressionKind::Symbol, "(", true, {}});
        for (std::size_t k = list + 2; k < end; ++k) in.push_back(tokens[k]);
        if (end > list + 2) in[isAny ? 2 : 3].isSpaced = false;
        in.push_back({ExpressionKind::Symbol, ")", false, {}});
        const auto at = [&](std::size_t position) { return tokens.begin() + static_cast<std::ptrdiff_t>(position); };
        tokens.erase(at(i), at(end + 1 + brackets));
        tokens.insert(at(i), in.begin(), in.end());
    }
}

/// Says one token in the words of `to`; answers what cannot be said, or nothing.
std::optional<std::string> sayToken(TypeDialect from, TypeDialect to, ExpressionTokens& tokens, std::size_t i) {
    ExpressionToken& token = tokens[i];
    const auto setSymbol = [&](const char* text) { token.text = text; };
    const auto isTold = [&](const ExpressionToken& other) { return text("'%@' has no counterpart", other.text); };
    switch (token.kind) {
        case ExpressionKind::Name:
        case ExpressionKind::Number: return std::nullopt;
        case ExpressionKind::Text: {
            const bool isText =
                token.prefix.empty() || token.prefix == "n" || token.prefix == "e" || token.prefix.starts_with('_');
            if (!isText) return text("%@'%@' is written in another way", token.prefix, token.text);
            return std::nullopt;
        }
        case ExpressionKind::Symbol:
            if (token.text == "==") setSymbol("=");
            if (token.text == "!=") setSymbol("<>");
            if (token.text == "~~" || token.text == "!~~") {
                const bool isNegated = token.text == "!~~";
                token = {ExpressionKind::Word, isNegated ? "NOT LIKE" : "LIKE", true, {}};
                return std::nullopt;
            }
            if (isAmong(kCommonSymbols, token.text)) return std::nullopt;
            if (token.text == "%" && from != TypeDialect::Oracle && to != TypeDialect::Oracle &&
                to != TypeDialect::FileMaker)
                return std::nullopt;
            if (token.text == "||" && from != TypeDialect::MySQL && to != TypeDialect::MySQL &&
                to != TypeDialect::SQLServer && to != TypeDialect::Sybase)
                return std::nullopt;
            // A quotient of whole numbers is whole in some, and not in MySQL and Oracle.
            if (token.text == "/" && (from == TypeDialect::MySQL || from == TypeDialect::Oracle) ==
                                         (to == TypeDialect::MySQL || to == TypeDialect::Oracle))
                return std::nullopt;
            return isTold(token);
        case ExpressionKind::Word: break;
    }
    if (isAmong(kCommonWords, token.text)) return std::nullopt;
    if (token.isWord("TRUE") || token.isWord("FALSE")) {
        if (!hasTruthWords(to)) token = {ExpressionKind::Number, token.isWord("TRUE") ? "1" : "0", token.isSpaced, {}};
        return std::nullopt;
    }
    if (isAmong(kForeignWords, token.text)) return isTold(token);
    if (i + 1 == tokens.size() || !tokens[i + 1].isSymbol("(")) return std::nullopt;
    for (const FunctionWords& function : functionWords()) {
        if (!hasWord(function.names[static_cast<std::size_t>(from)], token.text)) continue;
        const std::string_view cell = function.names[static_cast<std::size_t>(to)];
        if (cell.empty()) break;
        if (!hasWord(cell, token.text)) token.text = writtenWord(cell);
        return std::nullopt;
    }
    return text("the function %@ has no counterpart", token.text);
}

}  // namespace

ValueTranslation translateCheck(std::string_view from, std::string_view to, std::string_view condition) {
    const auto source = typeDialectNamed(from), target = typeDialectNamed(to);
    if (!source || !target || source == target) return {std::string(condition), TypeGrade::Exact, {}, true, false};
    ExpressionTokens tokens = tokensOf(*source, condition);
    eraseCasts(tokens);
    writeListsAsIn(tokens);
    for (std::size_t i = 0; i < tokens.size(); ++i)
        if (auto trouble = sayToken(*source, *target, tokens, i))
            return {{}, TypeGrade::Lossy, std::move(*trouble), true, false};
    return {textOf(*target, tokens), TypeGrade::Exact, {}, true, false};
}

}  // namespace vellicor
