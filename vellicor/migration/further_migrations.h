// vellicor/migration/further_migrations.h — the words of the dialects that differ from the shared ones in a few places.
#pragma once

#include "vellicor/migration/postgresql_migration.h"

namespace vellicor {

/// Takes PostgreSQL's words, but alters little of a column.
class RedshiftMigration final : public PostgreSQLMigration {
public:
    using PostgreSQLMigration::PostgreSQLMigration;
    void alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const override;
};

/// Renames, adds and drops columns; everything else inside a table is a matter of rebuilding it.
class SQLiteMigration final : public MigrationDialect {
public:
    using MigrationDialect::MigrationDialect;
    [[nodiscard]] bool isTransactional() const override { return true; }
    [[nodiscard]] bool sharesIndexNames() const override { return true; }
    [[nodiscard]] bool rebuildsTables() const override { return true; }
    void complete(TableShape& table) const override;
    [[nodiscard]] std::string idempotent(const std::string& sql) const override;
    [[nodiscard]] std::string createSchema(const SQLName&) const override { return {}; }
    [[nodiscard]] std::string renameTable(const QualifiedName& before, const QualifiedName& after) const override;
    [[nodiscard]] std::string addColumn(const TableShape& table, const ColumnShape& column,
                                        const ColumnShape* previous) const override;
    [[nodiscard]] std::string dropConstraint(const TableShape& table, const ConstraintShape& constraint) const override;
};

class SQLServerMigration : public MigrationDialect {
public:
    using MigrationDialect::MigrationDialect;
    [[nodiscard]] bool isTransactional() const override { return true; }
    [[nodiscard]] bool keepsIndexedTypes() const override { return true; }
    [[nodiscard]] bool canDropSchemas() const override { return true; }
    [[nodiscard]] std::string beginTransaction() const override { return "BEGIN TRANSACTION"; }
    [[nodiscard]] std::string endTransaction() const override { return "COMMIT TRANSACTION"; }
    [[nodiscard]] std::string idempotent(const std::string& sql) const override;
    [[nodiscard]] std::string renameTable(const QualifiedName& before, const QualifiedName& after) const override;
    [[nodiscard]] std::string moveTable(const QualifiedName& table, const SQLName& schema) const override;
    [[nodiscard]] std::string renameView(const ViewShape& before, const ViewShape& after) const override;
    [[nodiscard]] std::string renameColumn(const TableShape& table, const SQLName& before,
                                           const SQLName& after) const override;
    [[nodiscard]] std::string addColumn(const TableShape& table, const ColumnShape& column,
                                        const ColumnShape* previous) const override;
    [[nodiscard]] std::string dropColumn(const TableShape& table, const ColumnShape& column) const override;
    void alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const override;
    [[nodiscard]] std::string dropConstraint(const TableShape& table, const ConstraintShape& constraint) const override;
    [[nodiscard]] std::string renameConstraint(const TableShape& table, const ConstraintShape& constraint,
                                               const SQLName& before, const SQLName& after) const override;

protected:
    [[nodiscard]] virtual std::string dropDefault(const TableShape& table, const ColumnShape& column) const;
    [[nodiscard]] virtual std::string setDefault(const TableShape& table, const ColumnShape& column) const;
    [[nodiscard]] virtual std::string alterWord() const { return "ALTER COLUMN "; }
    [[nodiscard]] static std::string renamed(const std::string& object, const SQLName& after, std::string_view kind);
};

/// SQL Server's forerunner: the same procedures, MODIFY and REPLACE for columns.
class SybaseMigration final : public SQLServerMigration {
public:
    using SQLServerMigration::SQLServerMigration;
    [[nodiscard]] bool isTransactional() const override { return false; }
    [[nodiscard]] std::string idempotent(const std::string& sql) const override { return sql; }
    [[nodiscard]] std::string moveTable(const QualifiedName&, const SQLName&) const override { return {}; }
    [[nodiscard]] std::string dropConstraint(const TableShape& table, const ConstraintShape& constraint) const override;

protected:
    [[nodiscard]] std::string dropDefault(const TableShape& table, const ColumnShape& column) const override;
    [[nodiscard]] std::string setDefault(const TableShape& table, const ColumnShape& column) const override;
    [[nodiscard]] std::string alterWord() const override { return "MODIFY "; }
};

class OracleMigration final : public MigrationDialect {
public:
    using MigrationDialect::MigrationDialect;
    [[nodiscard]] NameFolding folding() const override { return NameFolding::Upper; }
    [[nodiscard]] bool sharesIndexNames() const override { return true; }
    [[nodiscard]] std::string createSchema(const SQLName&) const override { return {}; }
    [[nodiscard]] std::string renameView(const ViewShape& before, const ViewShape& after) const override;
    [[nodiscard]] std::string addColumn(const TableShape& table, const ColumnShape& column,
                                        const ColumnShape* previous) const override;
    void alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const override;
    [[nodiscard]] std::string dropConstraint(const TableShape& table, const ConstraintShape& constraint) const override;
    [[nodiscard]] std::string renameConstraint(const TableShape& table, const ConstraintShape& constraint,
                                               const SQLName& before, const SQLName& after) const override;
};

/// Adds and drops columns, sets defaults, and renames nothing.
class FileMakerMigration final : public MigrationDialect {
public:
    using MigrationDialect::MigrationDialect;
    [[nodiscard]] bool canRenameColumns() const override { return false; }
    [[nodiscard]] std::string createSchema(const SQLName&) const override { return {}; }
    [[nodiscard]] std::string renameTable(const QualifiedName&, const QualifiedName&) const override { return {}; }
    [[nodiscard]] std::string renameColumn(const TableShape&, const SQLName&, const SQLName&) const override {
        return {};
    }
    void alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const override;
    [[nodiscard]] std::string addConstraint(const TableShape& table, const ConstraintShape& constraint) const override;
    [[nodiscard]] std::string dropConstraint(const TableShape& table, const ConstraintShape& constraint) const override;
};

}  // namespace vellicor
