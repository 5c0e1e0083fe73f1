// vellicor/dialects/oracle_exporter.h — Oracle.
#pragma once

#include "vellicor/export/generic_exporter.h"

namespace vellicor {

/// Oracle: MODIFY for changed columns, two delete actions and no update actions.
class OracleSQLExporter : public GenericSQLExporter {
public:
    static std::shared_ptr<OracleSQLExporter> exporter() { return create<OracleSQLExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<OracleSQLExporter>(); }
    [[nodiscard]] std::string_view className() const override { return "OracleSQLExporter"; }

    // Answers
    [[nodiscard]] std::string getName() const override { return "Oracle"; }
    [[nodiscard]] std::string getQuoteIdentifierString() const override { return "\""; }
    [[nodiscard]] bool supportsInlineAutoIncrement() const override { return false; }
    [[nodiscard]] bool supportsViews() const override { return true; }
    [[nodiscard]] bool supportsIndexPostLoad() const override { return true; }
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override;
    [[nodiscard]] bool indexesStandInTable() const override { return false; }
    [[nodiscard]] std::string getDeleteActionStringForCode(std::uint64_t code) override;
    [[nodiscard]] std::string getUpdateActionStringForCode(std::uint64_t) override { return {}; }
    [[nodiscard]] std::string fieldType(SQLField& field) override;
    [[nodiscard]] std::string viewCreateStringPart(std::string_view name) override;

    // Statements
    using GenericSQLExporter::addIndex;
    std::string addIndex(SQLIndex& index, SQLTable& table) override;
    std::string addField(SQLField& field, SQLTable& table) override;
    std::string addColumn(SQLField& field) override;
    std::string dropSQLField(SQLField& field) override;
    Statements alterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject* extra) override;
    std::string alterColumnSpecification(SQLField& field, SQLField& curField);
    std::string alterDefault(SQLField& field, SQLField& curField);

private:
    SourceNodePtr modifyNode(SQLField& field, SQLTable& table);
};

}  // namespace vellicor
