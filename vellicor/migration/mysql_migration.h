// vellicor/migration/mysql_migration.h — the words of MySQL.
#pragma once

#include "vellicor/migration/migration_dialect.h"

namespace vellicor {

class MySQLMigration final : public MigrationDialect {
public:
    using MigrationDialect::MigrationDialect;
    [[nodiscard]] SQLWordRules wordRules() const override {
        return {.bracketsQuoteNames = false, .backslashEscapes = true};
    }
    void complete(TableShape& table) const override;
    [[nodiscard]] bool isSameType(const std::string& before, const std::string& after) const override;
    [[nodiscard]] bool keysNeedIndexes() const override { return true; }
    [[nodiscard]] bool countsOnlyInKeys() const override { return true; }
    [[nodiscard]] bool canDropSchemas() const override { return true; }
    [[nodiscard]] std::string idempotent(const std::string& sql) const override;
    [[nodiscard]] std::string createSchema(const SQLName& schema) const override;
    [[nodiscard]] std::string renameTable(const QualifiedName& before, const QualifiedName& after) const override;
    [[nodiscard]] std::string renameView(const ViewShape& before, const ViewShape& after) const override;
    [[nodiscard]] std::string alterOptions(const TableShape& before, const TableShape& after) const override;
    [[nodiscard]] std::string addColumn(const TableShape& table, const ColumnShape& column,
                                        const ColumnShape* previous) const override;
    void alterColumn(const TableShape& table, const ColumnChange& change, MigrationSteps& steps) const override;
    [[nodiscard]] std::string dropConstraint(const TableShape& table, const ConstraintShape& constraint) const override;
    [[nodiscard]] std::string renameConstraint(const TableShape& table, const ConstraintShape& constraint,
                                               const SQLName& before, const SQLName& after) const override;
};

}  // namespace vellicor
