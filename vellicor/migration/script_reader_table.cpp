// vellicor/migration/script_reader_table.cpp — reads a create script back into its pieces: columns and constraints.
#include <algorithm>
#include <array>

#include "vellicor/migration/script_reader.h"

namespace vellicor {

namespace {

using Token = const SQLToken*;

/// What begins a new piece of a column's definition behind its type.
struct Keyword {
    std::string_view word;
    std::string_view next;  // empty: anything
    ColumnPart part;
};
constexpr std::array kKeywords{
    Keyword{"NOT", "NULL", ColumnPart::NotNull},
    Keyword{"NULL", "", ColumnPart::Null},
    Keyword{"DEFAULT", "", ColumnPart::Default},
    Keyword{"UNIQUE", "", ColumnPart::Unique},
    Keyword{"PRIMARY", "KEY", ColumnPart::PrimaryKey},
    Keyword{"CONSTRAINT", "", ColumnPart::Check},
    Keyword{"CHECK", "", ColumnPart::Check},
    Keyword{"REFERENCES", "", ColumnPart::Reference},
    Keyword{"AUTO_INCREMENT", "", ColumnPart::Counting},
    Keyword{"AUTOINCREMENT", "", ColumnPart::Counting},
    Keyword{"IDENTITY", "", ColumnPart::Counting},
    Keyword{"COMMENT", "", ColumnPart::Comment},
    Keyword{"COLLATE", "", ColumnPart::Other},
    Keyword{"CHARACTER", "SET", ColumnPart::Other},
    Keyword{"ON", "UPDATE", ColumnPart::Other},
};

const Keyword* keywordAt(Token at, Token end) {
    const auto matches = [&](const Keyword& keyword) {
        return at->isWord(keyword.word) && (keyword.next.empty() || (at + 1 != end && (at + 1)->isWord(keyword.next)));
    };
    const auto* found = std::ranges::find_if(kKeywords, matches);
    return found == kKeywords.end() ? nullptr : found;
}

/// Behind the piece that begins at `at`.
Token endOfPart(Token at, Token end, ColumnPart part) {
    const Token begin = at;
    if (part == ColumnPart::Reference) return end;  // actions and deferral follow, nothing else does
    if (at->isWord("CONSTRAINT")) at += std::min<std::ptrdiff_t>(2, end - at);
    at += std::min<std::ptrdiff_t>(part == ColumnPart::NotNull || part == ColumnPart::PrimaryKey ? 2 : 1, end - at);
    if (part == ColumnPart::Default && at != end) ++at;  // NULL is a value here
    if (begin->isWord("ON") || begin->isWord("CHARACTER")) at += std::min<std::ptrdiff_t>(2, end - at);
    if (begin->isWord("COLLATE") || begin->isWord("COMMENT")) at += std::min<std::ptrdiff_t>(1, end - at);
    int depth = 0;
    for (Token inner = begin; inner != at; ++inner) depth += inner->isSymbol('(') ? 1 : inner->isSymbol(')') ? -1 : 0;
    while (at != end && (depth > 0 || !keywordAt(at, end))) {
        depth += at->isSymbol('(') ? 1 : at->isSymbol(')') ? -1 : 0;
        ++at;
    }
    return at;
}

bool isConstraintItem(Token at, Token end) {
    const auto next = [&](int offset) { return end - at > offset ? at + offset : nullptr; };
    const Token second = next(1);
    if (!second) return false;
    if (at->isWord("CONSTRAINT")) return true;
    if (at->isWord("PRIMARY") || at->isWord("FOREIGN")) return second->isWord("KEY");
    if (at->isWord("CHECK")) return second->isSymbol('(');
    const bool isKind = at->isWord("UNIQUE") || at->isWord("INDEX") || at->isWord("KEY") || at->isWord("FULLTEXT") ||
                        at->isWord("SPATIAL");
    if (!isKind) return false;
    if (second->isSymbol('(')) return true;
    // A column of such a name has a type behind it: its parentheses hold a number.
    const auto* const open = std::find_if(at, end, [](const SQLToken& token) { return token.isSymbol('('); });
    return open != end && open + 1 != end && (open + 1)->isName();
}

}  // namespace

void ScriptReader::readItem(TableShape& table, Range item) {
    if (isConstraintItem(item.begin, item.end) && readConstraint(table, item, {})) return;
    readColumn(table, item);
}

void ScriptReader::readColumn(TableShape& table, Range item) {
    ColumnShape column;
    Token at = item.begin;
    column.name = nameOf(*at++);
    std::vector<std::pair<ColumnPart, Range>> constraints;
    const auto add = [&](ColumnPart part, Token begin, Token end) {
        column.words.push_back({part, std::string(textOfTokens(begin, end)), normalText(begin, end)});
        const bool isConstraint = part == ColumnPart::Unique || part == ColumnPart::PrimaryKey ||
                                  part == ColumnPart::Check || part == ColumnPart::Reference;
        if (isConstraint) constraints.emplace_back(part, Range{begin, end});
    };
    const Token type = at;
    int depth = 0;
    while (at != item.end && (depth > 0 || !keywordAt(at, item.end))) {
        depth += at->isSymbol('(') ? 1 : at->isSymbol(')') ? -1 : 0;
        ++at;
    }
    if (type != at) add(ColumnPart::Type, type, at);
    while (at != item.end) {
        const ColumnPart part = keywordAt(at, item.end)->part;
        const Token end = endOfPart(at, item.end, part);
        add(part, at, end);
        at = end;
    }
    column.refusesNull = column.has(ColumnPart::NotNull);
    table.columns.push_back(std::move(column));
    const ColumnShape& added = table.columns.back();
    for (const auto& [part, words] : constraints) addColumnConstraint(table, added, part, words);
}

void ScriptReader::addColumnConstraint(TableShape& table, const ColumnShape& column, ColumnPart part, Range words) {
    ConstraintShape constraint;
    constraint.inTable = constraint.inColumn = true;
    Token at = words.begin;
    if (at->isWord("CONSTRAINT") && words.end - at > 2) {
        constraint.name = nameOf(*(at + 1));
        constraint.isNamed = true;
        at += 2;
    }
    const std::string where = " (" + column.name.text + ")";
    switch (part) {
        case ColumnPart::PrimaryKey:
            constraint.kind = ConstraintKind::PrimaryKey;
            constraint.columns.push_back({column.name, {}});
            constraint.statement = "PRIMARY KEY" + where;
            break;
        case ColumnPart::Unique:
            constraint.kind = ConstraintKind::Unique;
            constraint.columns.push_back({column.name, {}});
            constraint.statement = "UNIQUE" + where;
            break;
        case ColumnPart::Reference:
            constraint.kind = ConstraintKind::ForeignKey;
            constraint.columns.push_back({column.name, {}});
            ++at;
            constraint.target = qualifiedName(at, words.end);
            constraint.targetColumns = columnList(at, words.end);
            constraint.words = normalText(at, words.end);
            constraint.statement = "FOREIGN KEY" + where + " " + std::string(textOfTokens(words.begin, words.end));
            break;
        default:
            constraint.kind = ConstraintKind::Check;
            readExpression(table, {at + 1, words.end}, constraint);
            constraint.statement = std::string(textOfTokens(words.begin, words.end));
    }
    if (!constraint.statement.empty())
        constraint.statement = "ALTER TABLE " + table.name.text() + " ADD " + constraint.statement;
    table.constraints.push_back(std::move(constraint));
}

bool ScriptReader::readConstraint(TableShape& table, Range item, std::string_view statement) {
    ConstraintShape constraint;
    Token at = item.begin;
    const Token end = item.end;
    if (at->isWord("CONSTRAINT")) {
        ++at;
        // The name may be missing: the words of the kind stand in its place.
        const bool isUnnamed =
            at != end &&
            (at->isWord("PRIMARY") || at->isWord("UNIQUE") || at->isWord("FOREIGN") || at->isWord("CHECK")) &&
            at + 1 != end && ((at + 1)->isWord("KEY") || (at + 1)->isSymbol('('));
        if (at != end && !isUnnamed) {
            constraint.name = nameOf(*at++);
            constraint.isNamed = true;
        }
    }
    if (at == end) return false;
    const Token kind = at++;
    const auto takeName = [&] {
        if (at != end && at->isName()) {
            if (constraint.name.isEmpty()) constraint.name = nameOf(*at);
            ++at;
        }
    };
    if (kind->isWord("PRIMARY")) {
        constraint.kind = ConstraintKind::PrimaryKey;
        at = std::find_if(at, end, [](const SQLToken& token) { return token.isSymbol('('); });
    } else if (kind->isWord("FOREIGN")) {
        constraint.kind = ConstraintKind::ForeignKey;
        if (at != end) ++at;
        takeName();
    } else if (kind->isWord("CHECK")) {
        constraint.kind = ConstraintKind::Check;
        readExpression(table, {at, end}, constraint);
        at = end;
    } else if (kind->isWord("UNIQUE") && (at == end || at->isSymbol('('))) {
        constraint.kind = ConstraintKind::Unique;
    } else {
        const Token open = std::find_if(at, end, [](const SQLToken& token) { return token.isSymbol('('); });
        Token words = kind;
        while (words != open && !words->isWord("INDEX") && !words->isWord("KEY")) ++words;
        if (open == end || words == open) return false;
        constraint.kind = ConstraintKind::Index;
        constraint.words = normalText(kind, words);
        if (words + 1 != open) {
            constraint.name = nameOf(*(words + 1));
            constraint.isNamed = true;
        }
        at = open;
    }
    if (constraint.kind != ConstraintKind::Check) {
        constraint.columns = columnList(at, end);
        if (constraint.columns.empty()) return false;
    }
    if (constraint.kind == ConstraintKind::ForeignKey) {
        if (at == end || !at->isWord("REFERENCES")) return false;
        ++at;
        constraint.target = qualifiedName(at, end);
        constraint.targetColumns = columnList(at, end);
    }
    constraint.words += normalText(at, end);
    constraint.inTable = statement.empty();
    constraint.statement = constraint.inTable ? "ALTER TABLE " + table.name.text() + " ADD " +
                                                    std::string(textOfTokens(item.begin, item.end))
                                              : std::string(statement);
    table.constraints.push_back(std::move(constraint));
    return true;
}

}  // namespace vellicor
