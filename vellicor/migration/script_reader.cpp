// vellicor/migration/script_reader.cpp — reads a create script back into its pieces: statements.
#include "vellicor/migration/script_reader.h"

#include <algorithm>

#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

bool isSeparator(const SQLToken& token) { return token.isSymbol(';') || token.isWord("GO"); }

/// Marks a column inside the words of a check; no script holds the character.
constexpr char kPlaceMark = '\x01';
std::string marked(const std::string& key) { return kPlaceMark + key + kPlaceMark; }

}  // namespace

SQLName ScriptReader::nameOf(std::string_view spelled) const {
    SQLName name{std::string(spelled), std::string(spelled)};
    const char first = spelled.empty() ? '\0' : spelled.front();
    if (spelled.size() >= 2 && (first == '"' || first == '`' || (first == '[' && _rules.bracketsQuoteNames))) {
        const std::string close(1, first == '[' ? ']' : first);
        name.key = replacingAll(spelled.substr(1, spelled.size() - 2), close + close, close);
    } else if (_folding != NameFolding::None) {
        name.key = _folding == NameFolding::Lower ? lowercased(spelled) : uppercased(spelled);
    }
    return name;
}

DatabaseShape ScriptReader::read(std::string_view script) {
    _shape = {};
    _tables.clear();
    const SQLTokens tokens = sqlTokens(script, _rules);
    const SQLToken* const end = tokens.data() + tokens.size();
    for (const SQLToken* begin = tokens.data(); begin != end;) {
        const SQLToken* const stop = std::find_if(begin, end, isSeparator);
        if (begin != stop) readStatement({begin, stop});
        begin = stop == end ? end : stop + 1;
    }
    return std::move(_shape);
}

void ScriptReader::readStatement(Range statement) {
    const bool isRead = readCreateTable(statement) || readCreateIndex(statement) || readAlterTable(statement) ||
                        readComment(statement) || readView(statement);
    if (!isRead) _shape.others.emplace_back(textOfTokens(statement.begin, statement.end));
}

TableShape* ScriptReader::tableNamed(const QualifiedName& name) {
    const auto found = _tables.find(name.key());
    return found == _tables.end() ? nullptr : &_shape.tables[found->second];
}

QualifiedName ScriptReader::qualifiedName(Token& at, Token end) const {
    QualifiedName name;
    if (at == end || !at->isName()) return name;
    name.name = nameOf(*at++);
    if (end - at >= 2 && at->isSymbol('.') && (at + 1)->isName()) {
        name.schema = name.name;
        name.name = nameOf(*(at + 1));
        at += 2;
    }
    return name;
}

namespace {

const SQLToken* skipIfNotExists(const SQLToken* at, const SQLToken* end) {
    const bool stands = end - at >= 3 && at->isWord("IF") && (at + 1)->isWord("NOT") && (at + 2)->isWord("EXISTS");
    return stands ? at + 3 : at;
}

/// The parenthesis that closes the one at `open`, or the end.
const SQLToken* closing(const SQLToken* open, const SQLToken* end) {
    int depth = 0;
    for (const SQLToken* at = open; at != end; ++at) {
        if (at->isSymbol('(')) ++depth;
        if (at->isSymbol(')') && --depth == 0) return at;
    }
    return end;
}

}  // namespace

bool ScriptReader::readCreateTable(Range statement) {
    auto [at, end] = statement;
    if (end - at < 4 || !at->isWord("CREATE") || !(at + 1)->isWord("TABLE")) return false;
    at = skipIfNotExists(at + 2, end);
    const QualifiedName name = qualifiedName(at, end);
    if (at == end || !at->isSymbol('(')) return false;
    TableShape& table = _shape.tables.emplace_back();
    _tables.emplace(name.key(), _shape.tables.size() - 1);
    table.name = name;
    table.body = std::string(textOfTokens(at, end));
    const SQLToken* const close = closing(at, end);
    int depth = 0;
    std::vector<Range> items;
    const SQLToken* start = ++at;
    for (; at < close; ++at) {
        if (at->isSymbol('(')) ++depth;
        if (at->isSymbol(')')) --depth;
        if (!at->isSymbol(',') || depth > 0) continue;
        items.push_back({start, at});
        start = at + 1;
    }
    if (start < close) items.push_back({start, close});
    for (const Range& item : items)
        if (item.begin != item.end) readItem(table, item);
    if (close != end) table.options = std::string(textOfTokens(close + 1, end));
    return true;
}

bool ScriptReader::readCreateIndex(Range statement) {
    auto [at, end] = statement;
    if (at == end || !at->isWord("CREATE")) return false;
    const SQLToken* const keyword =
        std::find_if(at, std::min(at + 5, end), [](const SQLToken& token) { return token.isWord("INDEX"); });
    if (keyword == end || !keyword->isWord("INDEX")) return false;
    ConstraintShape index;
    index.words = normalText(at + 1, keyword);
    at = skipIfNotExists(keyword + 1, end);
    if (at != end && !at->isWord("ON")) {
        index.name = nameOf(*at++);
        index.isNamed = true;
    }
    if (at == end || !at->isWord("ON")) return false;
    ++at;
    TableShape* table = tableNamed(qualifiedName(at, end));
    const SQLToken* const open = std::find_if(at, end, [](const SQLToken& token) { return token.isSymbol('('); });
    if (!table || open == end) return false;
    index.words += " " + normalText(at, open);
    at = open;
    index.columns = columnList(at, end);
    index.words += normalText(at, end);
    index.statement = std::string(textOfTokens(statement.begin, end));
    table->constraints.push_back(std::move(index));
    return true;
}

bool ScriptReader::readAlterTable(Range statement) {
    auto [at, end] = statement;
    if (end - at < 5 || !at->isWord("ALTER") || !(at + 1)->isWord("TABLE")) return false;
    at += 2;
    TableShape* table = tableNamed(qualifiedName(at, end));
    if (!table || at == end || !at->isWord("ADD")) return false;
    return readConstraint(*table, {at + 1, end}, textOfTokens(statement.begin, end));
}

bool ScriptReader::readComment(Range statement) {
    auto [at, end] = statement;
    if (end - at < 6 || !at->isWord("COMMENT") || !(at + 1)->isWord("ON")) return false;
    const bool isColumn = (at + 2)->isWord("COLUMN");
    if (!isColumn && !(at + 2)->isWord("TABLE")) return false;
    const SQLToken* const is = std::find_if(at + 3, end, [](const SQLToken& token) { return token.isWord("IS"); });
    if (is == end || is + 1 == end) return false;
    const std::string literal(textOfTokens(is + 1, end));
    at += 3;
    const SQLToken* const nameEnd = isColumn ? is - 2 : is;  // the last two tokens are the dot and the column
    TableShape* table = nameEnd > at ? tableNamed(qualifiedName(at, nameEnd)) : nullptr;
    if (!table) return false;
    if (!isColumn) {
        table->comment = literal;
        return true;
    }
    const auto column = std::ranges::find(table->columns, nameOf(*(is - 1)), &ColumnShape::name);
    if (column == table->columns.end()) return false;
    column->comment = literal;
    return true;
}

bool ScriptReader::readView(Range statement) {
    auto [at, end] = statement;
    if (end - at < 3 || !at->isWord("CREATE")) return false;
    ++at;
    if (at->isWord("SCHEMA")) {
        at = skipIfNotExists(at + 1, end);
        if (at == end) return false;
        _shape.schemas.push_back(nameOf(*at));
        return true;
    }
    if (end - at > 2 && at->isWord("OR") && (at + 1)->isWord("REPLACE")) at += 2;
    if (!at->isWord("VIEW")) return false;
    ++at;
    ViewShape view;
    view.name = qualifiedName(at, end);
    if (at == end || !at->isWord("AS")) return false;
    view.query = normalText(at + 1, end);
    view.statement = std::string(textOfTokens(statement.begin, end));
    _shape.views.push_back(std::move(view));
    return true;
}

std::vector<ConstraintShape::Column> ScriptReader::columnList(Token& at, Token end) const {
    std::vector<ConstraintShape::Column> columns;
    if (at == end || !at->isSymbol('(')) return columns;
    const SQLToken* const close = closing(at, end);
    const SQLToken* start = ++at;
    int depth = 0;
    for (; start < close; ++at) {
        if (at != close && at->isSymbol('(')) ++depth;
        if (at != close && at->isSymbol(')')) --depth;
        if (at != close && (depth > 0 || !at->isSymbol(','))) continue;
        if (start != at) columns.push_back({nameOf(*start), normalText(start + 1, at)});
        start = at + 1;
    }
    at = close == end ? end : close + 1;
    return columns;
}

void ScriptReader::readExpression(const TableShape& table, Range expression, ConstraintShape& check) const {
    for (const SQLToken* token = expression.begin; token != expression.end; ++token) {
        const ColumnShape* column = nullptr;
        if (token->isName()) {
            const std::string folded = caseFolded(nameOf(*token).key);
            const auto found = std::ranges::find_if(
                table.columns, [&](const ColumnShape& candidate) { return caseFolded(candidate.name.key) == folded; });
            if (found != table.columns.end()) column = &*found;
        }
        if (!check.words.empty()) check.words += ' ';
        check.words += column ? marked(column->name.key) : normalText(token, token + 1);
        if (column && !check.mentions(column->name)) check.columns.push_back({column->name, {}});
    }
}

std::string renamedInWords(std::string_view words, const std::unordered_map<std::string, SQLName>& names) {
    std::string renamed;
    for (std::size_t start = 0; start <= words.size();) {
        const std::size_t open = words.find(kPlaceMark, start);
        const std::size_t close = open == std::string_view::npos ? open : words.find(kPlaceMark, open + 1);
        if (close == std::string_view::npos) return renamed + std::string(words.substr(start));
        const std::string key(words.substr(open + 1, close - open - 1));
        const auto name = names.find(key);
        renamed +=
            std::string(words.substr(start, open - start)) + marked(name == names.end() ? key : name->second.key);
        start = close + 1;
    }
    return renamed;
}

}  // namespace vellicor
