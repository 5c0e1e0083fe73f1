// vellicor/dialects/sqlite_exporter.h — SQLite.
#pragma once

#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/field.h"

namespace vellicor {

/// SQLite: all that CREATE TABLE can hold goes inline; most ALTERs answer nothing or say why.
class SQLiteExporter : public GenericSQLExporter {
public:
    static std::shared_ptr<SQLiteExporter> exporter() { return create<SQLiteExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<SQLiteExporter>(); }
    [[nodiscard]] std::string_view className() const override { return "SQLiteExporter"; }

    // Answers
    [[nodiscard]] std::string getName() const override { return "SQLite"; }
    [[nodiscard]] std::string getQuoteIdentifierString() const override { return "\""; }
    [[nodiscard]] std::string getQuoteDefaultString() const override { return "'"; }
    [[nodiscard]] std::string autoIncrementKeyword() override { return "AUTOINCREMENT"; }
    [[nodiscard]] bool supportsIndexPostLoad() const override { return true; }
    [[nodiscard]] bool supportsInlineAutoIncrement() const override { return true; }
    [[nodiscard]] bool supportsIfNotExists() const override { return true; }
    [[nodiscard]] bool supportsIfNotExistsSQLIndex() const override { return true; }
    [[nodiscard]] bool supportsViews() const override { return true; }
    [[nodiscard]] bool usePrimaryKeyConstraintName() const override { return false; }
    [[nodiscard]] bool supportsIndexPrefixSize() const override { return false; }
    [[nodiscard]] bool supportsDropSQLConstraint() const override { return false; }
    [[nodiscard]] bool addForeignKeyConstraintName() const override { return false; }
    [[nodiscard]] bool indexesStandInTable() const override { return false; }
    [[nodiscard]] bool keysStandInTable() const override { return true; }
    [[nodiscard]] bool canAlterConstraints() const override { return false; }
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override;
    std::string alterType(SQLField&, SQLField&) override { return {}; }  // no column changes

    // Statements
    std::string exportSQLContainer(SQLContainer& container) override;
    [[nodiscard]] SQLTable::Components fieldListForTable(SQLTable& table) override;
    std::string exportSQLField(SQLField& field) override;
    SourceNodePtr primaryKeyBlock(SQLTable& table) override;
    std::string quoteDefaultValue(std::string_view value, SQLField& field) override;
    [[nodiscard]] bool fieldIsIntegerType(const SQLField& field) const;
    [[nodiscard]] bool fieldIsFirstIntegerPK(const SQLField& field) const;
    std::string addIndex(SQLIndex& index, SQLTable& table) override;
    using GenericSQLExporter::addIndex;
    [[nodiscard]] std::string prefixForIndexedProperty(SQLField& field) override;
    std::string dropIndex(SQLField& field, SQLTable& table) override;
    std::string alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) override;
    std::string dropSQLField(SQLField& field) override;
    std::string dropSQLConstraint(SQLConstraint& constraint) override;

protected:
    /// True for a column by which the server counts rows, when it is the only one of the primary key. Kept: the type
    /// must be spelt exactly so, unlike in `fieldIsIntegerType`.
    [[nodiscard]] virtual bool countsRows(const SQLField& field) const {
        return field.getAutoIncrement() && field.getType() == "INTEGER";
    }
};

}  // namespace vellicor
