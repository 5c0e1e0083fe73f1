// vellicor/migration/migration_dialect.h — the statements that change what a create script made, in one dialect.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/migration/migration_statement.h"
#include "vellicor/migration/script_reader.h"
#include "vellicor/migration/type_change.h"

namespace vellicor {

/// One column before and after; both have the name that it has by now.
struct ColumnChange {
    const ColumnShape& before;
    const ColumnShape& after;
    bool type = false;
    bool nullability = false;
    bool defaultValue = false;
    bool counting = false;
    bool comment = false;
    bool other = false;  ///< collations and whatever else stands in the definition
    [[nodiscard]] bool any() const { return type || nullability || defaultValue || counting || comment || other; }
};

/// Answers statements without a separator; the empty text where the dialect cannot say it. Names in shapes are spelled
/// as the create script spells them. The base speaks the words that most servers share.
class MigrationDialect {
public:
    explicit MigrationDialect(GenericSQLExporter& exporter) : _exporter(exporter) {}
    virtual ~MigrationDialect() = default;
    MigrationDialect(const MigrationDialect&) = delete;
    MigrationDialect& operator=(const MigrationDialect&) = delete;
    /// By the name of the exporter.
    [[nodiscard]] static std::unique_ptr<MigrationDialect> of(GenericSQLExporter& exporter);

    // --- reading
    [[nodiscard]] virtual SQLWordRules wordRules() const;
    [[nodiscard]] virtual NameFolding folding() const { return NameFolding::None; }
    /// Adds what the server makes of a script by itself: names of constraints, columns that refuse null.
    virtual void complete(TableShape& table) const;
    [[nodiscard]] virtual bool isSameType(const std::string& before, const std::string& after) const;

    // --- answers
    [[nodiscard]] virtual bool isTransactional() const { return false; }
    /// Indexes of all tables of a schema share one list of names, with the tables.
    [[nodiscard]] virtual bool sharesIndexNames() const { return false; }
    /// Changes inside a table are made by a new table that takes the old one's place.
    [[nodiscard]] virtual bool rebuildsTables() const { return false; }
    /// Checks, indexes and keys over a column stand in the way of changing its type.
    [[nodiscard]] virtual bool keepsIndexedTypes() const { return false; }
    /// A key needs an index of its own table, and brings one along where there is none.
    [[nodiscard]] virtual bool keysNeedIndexes() const { return false; }
    /// A column that counts must lead a key at any time.
    [[nodiscard]] virtual bool countsOnlyInKeys() const { return false; }
    [[nodiscard]] virtual bool canRenameColumns() const { return true; }
    [[nodiscard]] virtual bool canDropSchemas() const { return false; }
    [[nodiscard]] virtual std::string beginTransaction() const { return "BEGIN"; }
    [[nodiscard]] virtual std::string endTransaction() const { return "COMMIT"; }
    /// Where the statement may stand twice without harm, in words of the dialect.
    [[nodiscard]] virtual std::string idempotent(const std::string& sql) const { return sql; }

    // --- schemas, tables, views
    [[nodiscard]] virtual std::string createSchema(const SQLName& schema) const;
    [[nodiscard]] virtual std::string dropSchema(const SQLName& schema) const;
    [[nodiscard]] virtual std::string renameTable(const QualifiedName& before, const QualifiedName& after) const;
    [[nodiscard]] virtual std::string moveTable(const QualifiedName& table, const SQLName& schema) const;
    [[nodiscard]] virtual std::string dropTable(const TableShape& table) const;
    [[nodiscard]] virtual std::string renameView(const ViewShape& before, const ViewShape& after) const;
    [[nodiscard]] virtual std::string dropView(const ViewShape& view) const;
    /// What changes the words behind a table's parentheses; the base cannot.
    [[nodiscard]] virtual std::string alterOptions(const TableShape& before, const TableShape& after) const;
    [[nodiscard]] virtual std::string commentOnTable(const TableShape& table) const;
    [[nodiscard]] virtual std::string commentOnColumn(const TableShape& table, const ColumnShape& column) const;

    // --- columns
    [[nodiscard]] virtual std::string renameColumn(const TableShape& table, const SQLName& before,
                                                   const SQLName& after) const;
    /// `previous` is null for the first column. Uniqueness, keys and checks come in statements of their own.
    [[nodiscard]] virtual std::string addColumn(const TableShape& table, const ColumnShape& column,
                                                const ColumnShape* previous) const;
    [[nodiscard]] virtual std::string dropColumn(const TableShape& table, const ColumnShape& column) const;
    /// In the order in which they run. A part that the dialect cannot change becomes a gap.
    virtual void alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const;

    // --- constraints and indexes
    [[nodiscard]] virtual std::string addConstraint(const TableShape& table, const ConstraintShape& constraint) const;
    [[nodiscard]] virtual std::string dropConstraint(const TableShape& table, const ConstraintShape& constraint) const;
    [[nodiscard]] virtual std::string renameConstraint(const TableShape& table, const ConstraintShape& constraint,
                                                       const SQLName& before, const SQLName& after) const;

    [[nodiscard]] GenericSQLExporter& exporter() const { return _exporter; }

protected:
    [[nodiscard]] static std::string alterTable(const TableShape& table) {
        return "ALTER TABLE " + table.name.text() + " ";
    }
    [[nodiscard]] static std::string quotedText(std::string_view content);
    [[nodiscard]] static std::string columnNames(const ConstraintShape& constraint);
    [[nodiscard]] static Verdict verdictOf(const TypeChange& change, Verdict atLeast = Verdict::Rewrites);
    /// What refusing null means for rows that are there.
    static void addNotNull(std::string sql, const ColumnChange& change, MigrationSteps& steps);
    /// Fills null in with the new default before it is refused; nothing without a default.
    static void fillNulls(const TableShape& table, const ColumnChange& change, MigrationSteps& steps);

private:
    GenericSQLExporter& _exporter;
};

}  // namespace vellicor
