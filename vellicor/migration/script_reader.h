// vellicor/migration/script_reader.h — reads a create script back into its pieces.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "vellicor/migration/database_shape.h"
#include "vellicor/migration/sql_tokens.h"

namespace vellicor {

/// What a server does to a bare name.
enum class NameFolding { None, Lower, Upper };

/// Reads the scripts that exporters write. A statement that is about nothing of a `DatabaseShape` stands among its
/// `others`; whatever a statement says is in some text of the shape, so that two shapes differ when their scripts do in
/// more than white space, remarks and the order of independent statements.
class ScriptReader {
public:
    ScriptReader(const SQLWordRules& rules, NameFolding folding) : _rules(rules), _folding(folding) {}
    [[nodiscard]] DatabaseShape read(std::string_view script);
    /// The name that a token spells.
    [[nodiscard]] SQLName nameOf(std::string_view spelled) const;

private:
    using Token = const SQLToken*;
    struct Range {
        Token begin;
        Token end;
    };

    void readStatement(Range statement);
    bool readCreateTable(Range statement);
    bool readCreateIndex(Range statement);
    bool readAlterTable(Range statement);
    bool readComment(Range statement);
    bool readView(Range statement);
    void readItem(TableShape& table, Range item);
    void readColumn(TableShape& table, Range item);
    /// False when the words make no constraint. `statement` is empty for an item of CREATE TABLE.
    bool readConstraint(TableShape& table, Range item, std::string_view statement);
    void addColumnConstraint(TableShape& table, const ColumnShape& column, ColumnPart part, Range words);

    [[nodiscard]] SQLName nameOf(const SQLToken& token) const { return nameOf(token.text); }
    QualifiedName qualifiedName(Token& at, Token end) const;
    std::vector<ConstraintShape::Column> columnList(Token& at, Token end) const;
    /// The expression with the table's columns marked, so that they can be renamed in it.
    void readExpression(const TableShape& table, Range expression, ConstraintShape& check) const;
    TableShape* tableNamed(const QualifiedName& name);

    SQLWordRules _rules;
    NameFolding _folding;
    DatabaseShape _shape;
    std::unordered_map<std::string, std::size_t> _tables;  // by key
};

/// The words of a check with columns renamed, all at once; by the keys of their former names.
[[nodiscard]] std::string renamedInWords(std::string_view words, const std::unordered_map<std::string, SQLName>& names);

}  // namespace vellicor
