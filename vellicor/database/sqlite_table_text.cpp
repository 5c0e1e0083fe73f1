// vellicor/database/sqlite_table_text.cpp — reading statements that SQLite itself has accepted.
#include "vellicor/database/sqlite_table_text.h"

#include "vellicor/database/sql_scanner.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

/// A place among the tokens of a statement.
class StatementReader {
public:
    explicit StatementReader(std::string_view sql) : _sql(sql), _tokens(sqlTokens(sql)) {}

    [[nodiscard]] const SqlToken& peek() const { return _tokens[_place]; }
    [[nodiscard]] bool atEnd() const { return peek().kind == SqlToken::Kind::End; }
    const SqlToken& take() { return atEnd() ? peek() : _tokens[_place++]; }
    bool take(std::string_view word) { return peek().is(word) && (++_place, true); }
    /// Several words in a row, or none of them.
    bool take(std::string_view first, std::string_view second) {
        if (!peek().is(first) || !_tokens[_place + 1].is(second)) return false;
        _place += 2;
        return true;
    }
    std::string name() {
        const SqlToken& token = take();
        return token.kind == SqlToken::Kind::Word ? written(token.start, token.end) : token.value;
    }
    [[nodiscard]] std::string written(std::size_t start, std::size_t end) const {
        return std::string(trimmed(_sql.substr(start, end - start)));
    }
    /// What stands between a parenthesis and its partner, both taken; empty without one.
    std::string inParentheses() {
        if (!peek().is("(")) return {};
        const std::size_t start = take().end;
        std::size_t end = start;
        for (int depth = 1; !atEnd(); end = take().end) {
            depth += peek().is("(") - peek().is(")");
            if (depth > 0) continue;
            take();
            break;
        }
        return written(start, end);
    }
    /// The names of a list of columns.
    std::vector<std::string> names(bool& areSorted) {
        std::vector<std::string> names;
        if (!take("(")) return names;
        while (!atEnd() && !take(")")) {
            names.push_back(name());
            for (; !atEnd() && !peek().is(",") && !peek().is(")"); take())
                areSorted = areSorted || peek().is("DESC") || peek().is("COLLATE");
            take(",");
        }
        return names;
    }
    void skipTo(std::string_view mark) {
        while (!atEnd() && !peek().is(mark)) take();
    }

private:
    std::string_view _sql;
    std::vector<SqlToken> _tokens;
    std::size_t _place = 0;
};

class TableTextReader : StatementReader {
public:
    explicit TableTextReader(std::string_view sql) : StatementReader(sql) {}

    SQLiteTableText read() {
        skipTo("(");
        take();
        while (!atEnd() && !peek().is(")")) {
            if (startsConstraint())
                tableConstraint();
            else
                column();
            take(",");
        }
        return std::move(_text);
    }

private:
    [[nodiscard]] bool startsConstraint() const {
        for (const char* word : {"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN"})
            if (peek().is(word)) return true;
        return false;
    }
    [[nodiscard]] bool atItemEnd() const { return atEnd() || peek().is(",") || peek().is(")"); }

    void column() {
        const std::string column = name();
        SQLiteTableText::Column& facts = _text.columns[lowercased(column)];
        std::string constraint;
        while (!atItemEnd()) {
            if (take("CONSTRAINT")) {
                constraint = name();
                continue;
            }
            if (take("PRIMARY", "KEY")) {
                _text.primaryKeyName = constraint;
                _text.sortsPrimaryKey = _text.sortsPrimaryKey || peek().is("DESC");
            } else if (take("AUTOINCREMENT")) {
                facts.autoIncrement = true;
            } else if (take("UNIQUE")) {
                _text.uniques.push_back({constraint, {column}, true});
            } else if (take("CHECK")) {
                _text.checks.push_back({constraint, inParentheses()});
            } else if (take("COLLATE")) {
                facts.collation = name();
            } else if (take("REFERENCES")) {
                references(constraint);
            } else if (take("AS")) {
                facts.generated = inParentheses();
            } else if (take("DEFAULT")) {
                if (peek().is("(")) {
                    inParentheses();
                } else {
                    take("-");
                    take("+");
                    take();
                }
            } else {
                other();
                continue;  // a name stays for what follows it
            }
            constraint.clear();
        }
    }

    void tableConstraint() {
        std::string constraint;
        if (take("CONSTRAINT")) constraint = name();
        if (take("PRIMARY", "KEY")) {
            _text.primaryKeyName = constraint;
            if (const auto names = this->names(_text.sortsPrimaryKey); take("AUTOINCREMENT") && !names.empty())
                _text.columns[lowercased(names.front())].autoIncrement = true;
        } else if (take("UNIQUE")) {
            bool ignored = false;
            auto columns = names(ignored);
            _text.uniques.push_back({constraint, std::move(columns), false});
        } else if (take("CHECK")) {
            _text.checks.push_back({constraint, inParentheses()});
        } else if (take("FOREIGN", "KEY")) {
            inParentheses();
            take("REFERENCES");
            references(constraint);
        }
        while (!atItemEnd()) other();
    }

    /// Behind the word REFERENCES.
    void references(const std::string& constraint) {
        SQLiteTableText::ForeignKey key{constraint, false, false};
        name();
        inParentheses();
        while (!atItemEnd()) {
            if (take("ON")) {
                take();  // DELETE or UPDATE
                const bool hasTwoWords = peek().is("SET") || peek().is("NO");
                take();
                if (hasTwoWords) take();
            } else if (take("MATCH")) {
                take();
            } else if (take("NOT", "DEFERRABLE")) {
                initially();
            } else if (take("DEFERRABLE")) {
                key.deferrable = true;
                key.initiallyDeferred = initially();
            } else {
                break;
            }
        }
        _text.foreignKeys.push_back(std::move(key));
    }
    bool initially() { return take("INITIALLY") && take().is("DEFERRED"); }

    void other() {
        if (take("ON", "CONFLICT")) _text.hasConflictClauses = true;
        if (peek().is("("))
            inParentheses();
        else if (!atItemEnd())
            take();
    }

    SQLiteTableText _text;
};

}  // namespace

SQLiteTableText SQLiteTableText::parse(std::string_view sql) { return TableTextReader(sql).read(); }

SQLiteViewText SQLiteViewText::parse(std::string_view sql) {
    StatementReader reader(sql);
    SQLiteViewText view;
    while (!reader.atEnd() && !reader.peek().is("AS")) {
        if (reader.peek().is("(")) {
            view.listsColumns = true;
            reader.inParentheses();
        } else {
            reader.take();
        }
    }
    const std::size_t start = reader.take().end;
    view.query = reader.written(start, sql.size());
    return view;
}

SQLiteIndexText SQLiteIndexText::parse(std::string_view sql) {
    StatementReader reader(sql);
    SQLiteIndexText index;
    reader.skipTo("(");
    reader.take();
    while (!reader.atEnd() && !reader.peek().is(")")) {
        const std::size_t start = reader.peek().start;
        std::size_t end = start;
        bool isOption = false;
        while (!reader.atEnd() && !reader.peek().is(",") && !reader.peek().is(")")) {
            isOption = isOption || reader.peek().is("COLLATE") || reader.peek().is("ASC") || reader.peek().is("DESC");
            if (reader.peek().is("(")) {
                reader.inParentheses();
                if (!isOption) end = reader.peek().start;
            } else {
                const std::size_t tokenEnd = reader.take().end;
                if (!isOption) end = tokenEnd;
            }
        }
        index.parts.push_back(reader.written(start, end));
        reader.take(",");
    }
    reader.take(")");
    if (reader.take("WHERE")) index.condition = reader.written(reader.peek().start, sql.size());
    return index;
}

}  // namespace vellicor
