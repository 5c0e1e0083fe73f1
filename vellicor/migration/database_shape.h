// vellicor/migration/database_shape.h — what a create script makes, piece by piece.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "vellicor/model/forward.h"

namespace vellicor {

/// A name as a script spells it, and as the server knows it.
struct SQLName {
    std::string text;
    std::string key;
    [[nodiscard]] bool isEmpty() const { return text.empty(); }
    bool operator==(const SQLName& other) const { return key == other.key; }
};

/// A table's or view's name with its schema, which may be empty.
struct QualifiedName {
    SQLName schema;
    SQLName name;
    [[nodiscard]] std::string text() const { return schema.isEmpty() ? name.text : schema.text + "." + name.text; }
    [[nodiscard]] std::string key() const { return schema.isEmpty() ? name.key : schema.key + "." + name.key; }
    bool operator==(const QualifiedName&) const = default;
};

enum class ColumnPart { Type, Null, NotNull, Default, Counting, Unique, PrimaryKey, Check, Reference, Comment, Other };

/// One column. The words behind its name stand in the order of the script.
struct ColumnShape {
    struct Words {
        ColumnPart part;
        std::string text;    ///< as the script has it
        std::string normal;  ///< for comparisons
    };
    SQLName name;
    std::vector<Words> words;
    std::string comment;               ///< the literal of a statement of its own; empty when none
    bool refusesNull = false;          ///< by itself, by the primary key or by counting
    const SQLField* column = nullptr;  ///< in the document

    /// Empty when the column has no such words.
    [[nodiscard]] std::string text(ColumnPart part) const;
    [[nodiscard]] std::string normal(ColumnPart part) const;
    [[nodiscard]] bool has(ColumnPart part) const;
    /// Everything behind the name but some parts.
    [[nodiscard]] std::string definition(std::initializer_list<ColumnPart> without = {}) const;
};

enum class ConstraintKind { PrimaryKey, Unique, Check, ForeignKey, Index };

/// A primary key, uniqueness, check, foreign key or index of a table, wherever the script writes it.
struct ConstraintShape {
    struct Column {
        SQLName name;
        std::string more;  ///< a size or an order
        bool operator==(const Column&) const = default;
    };
    ConstraintKind kind = ConstraintKind::Index;
    SQLName name;          ///< the script's, or the one that the server gives; empty when nobody knows it
    bool isNamed = false;  ///< by the script
    std::vector<Column> columns;
    QualifiedName target;  ///< of a foreign key
    std::vector<Column> targetColumns;
    std::string words;      ///< an index's type, a check's expression, a key's actions; for comparisons
    std::string statement;  ///< makes it on a table that is there; empty where the dialect has none
    bool inTable = false;   ///< the CREATE TABLE statement holds it
    bool inColumn = false;  ///< among the words of a column

    /// Equal but for the name.
    [[nodiscard]] bool isLike(const ConstraintShape& other) const {
        return kind == other.kind && columns == other.columns && target == other.target &&
               targetColumns == other.targetColumns && words == other.words;
    }
    [[nodiscard]] bool mentions(const SQLName& column) const;
};

struct TableShape {
    QualifiedName name;
    std::vector<ColumnShape> columns;
    std::vector<ConstraintShape> constraints;
    std::string body;     ///< of CREATE TABLE, behind the name
    std::string options;  ///< behind the parentheses
    std::string comment;  ///< the literal of a statement of its own
    const SQLTable* table = nullptr;

    [[nodiscard]] const ColumnShape* columnNamed(const SQLName& name) const;
    /// Null without one.
    [[nodiscard]] const ConstraintShape* primaryKey() const;
};

struct ViewShape {
    QualifiedName name;
    std::string query;
    std::string statement;
    const SQLView* view = nullptr;
};

struct DatabaseShape {
    std::vector<SQLName> schemas;
    std::vector<TableShape> tables;  ///< in the order of the script
    std::vector<ViewShape> views;
    std::vector<std::string> others;  ///< statements about nothing of the above, the user's own included
};

[[nodiscard]] std::string_view wordsFor(ConstraintKind kind);

}  // namespace vellicor
