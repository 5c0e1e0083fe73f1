// vellicor/dialects/sql_server_exporter.h — SQL Server.
#pragma once

#include "vellicor/dialects/sybase_style_exporter.h"

namespace vellicor {

/// SQL Server: names in brackets, unique columns as named table constraints, one ALTER COLUMN per changed column.
class SQLServerExporter : public SybaseStyleExporter {
public:
    static std::shared_ptr<SQLServerExporter> exporter() { return create<SQLServerExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<SQLServerExporter>(); }
    [[nodiscard]] std::string_view className() const override { return "SQLServerExporter"; }

    // Answers
    [[nodiscard]] std::string getName() const override { return "SQLServer"; }
    [[nodiscard]] std::string getStartingQuoteIdentifierString() const override { return "["; }
    [[nodiscard]] std::string getEndingQuoteIdentifierString() const override { return "]"; }
    [[nodiscard]] std::string instructionSeparator() override { return ";"; }
    [[nodiscard]] bool addForeignKeyConstraintName() const override { return true; }
    [[nodiscard]] bool supportsAlterSQLIndex() const override { return false; }
    [[nodiscard]] std::string getIndexKeyword(SQLIndex& index) override;
    /// Constraints only when they are exactly "UNIQUE" or "CHECK".
    [[nodiscard]] bool checkIndexValid(SQLIndex& index) override;
    std::string alterPrimaryKey(SQLField&, SQLField&) override { return {}; }

    // Types
    [[nodiscard]] static std::span<const std::string_view> typesWithSize();
    [[nodiscard]] static std::span<const std::string_view> typesWithEntries() { return {}; }
    [[nodiscard]] static std::span<const std::string_view> typesWithoutSize();
    [[nodiscard]] bool typeHasSize(std::string_view type) override;
    [[nodiscard]] std::string fieldType(SQLField& field) override;

    // Statements
    [[nodiscard]] std::string nullOrNotString(SQLField& field) override;
    SourceNodePtr primaryKeyBlock(SQLTable& table) override;
    std::string addColumn(SQLField& field) override;
    std::string dropSQLIndex(SQLIndex& index) override;
    using GenericSQLExporter::dropPrimaryKeyInstruction;
    /// A null or blank name: a script that finds the name, or a warning, as the preferences say.
    std::string dropPrimaryKeyInstruction(SQLTable& table, const OptionalText& constraintName);
    Statements alterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject* extra) override;
    std::string alterColumnSpecification(SQLField& field, SQLField& curField);
};

}  // namespace vellicor
