// vellicor/migration/postgresql_migration.h — the words of PostgreSQL.
#pragma once

#include "vellicor/migration/migration_dialect.h"

namespace vellicor {

class PostgreSQLMigration : public MigrationDialect {
public:
    using MigrationDialect::MigrationDialect;
    [[nodiscard]] NameFolding folding() const override { return NameFolding::Lower; }
    void complete(TableShape& table) const override;
    [[nodiscard]] bool isSameType(const std::string& before, const std::string& after) const override;
    [[nodiscard]] bool isTransactional() const override { return true; }
    [[nodiscard]] bool sharesIndexNames() const override { return true; }
    [[nodiscard]] bool canDropSchemas() const override { return true; }
    [[nodiscard]] std::string idempotent(const std::string& sql) const override;
    [[nodiscard]] std::string createSchema(const SQLName& schema) const override;
    [[nodiscard]] std::string moveTable(const QualifiedName& table, const SQLName& schema) const override;
    [[nodiscard]] std::string renameView(const ViewShape& before, const ViewShape& after) const override;
    [[nodiscard]] std::string alterOptions(const TableShape& before, const TableShape& after) const override;
    [[nodiscard]] std::string commentOnTable(const TableShape& table) const override;
    [[nodiscard]] std::string commentOnColumn(const TableShape& table, const ColumnShape& column) const override;
    void alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const override;
    [[nodiscard]] std::string dropConstraint(const TableShape& table, const ConstraintShape& constraint) const override;
    [[nodiscard]] std::string renameConstraint(const TableShape& table, const ConstraintShape& constraint,
                                               const SQLName& before, const SQLName& after) const override;

private:
    /// A name that the server gave, quoted where a script must.
    [[nodiscard]] std::string quoted(const std::string& key) const;
};

}  // namespace vellicor
