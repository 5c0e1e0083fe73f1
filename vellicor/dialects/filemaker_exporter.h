// vellicor/dialects/filemaker_exporter.h — FileMaker.
#pragma once

#include "vellicor/export/generic_exporter.h"

namespace vellicor {

/// FileMaker: tables and column indexes only; no foreign keys, views or checks.
class FilemakerExporter : public GenericSQLExporter {
public:
    static std::shared_ptr<FilemakerExporter> exporter() { return create<FilemakerExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<FilemakerExporter>(); }
    [[nodiscard]] std::string_view className() const override { return "FilemakerExporter"; }

    // Answers
    [[nodiscard]] std::string getName() const override { return "FileMaker"; }
    [[nodiscard]] std::string getQuoteIdentifierString() const override { return "\""; }
    [[nodiscard]] bool useQuotedIdentifier() const override { return true; }
    [[nodiscard]] bool supportsInlineAutoIncrement() const override { return false; }
    [[nodiscard]] bool supportsViews() const override { return false; }
    [[nodiscard]] bool supportsCheckConstraints() const override { return false; }
    [[nodiscard]] bool indexesStandInTable() const override { return false; }
    [[nodiscard]] bool supportsForeignKeys() const override { return false; }
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override;

    // Silences: what FileMaker does not have
    std::string alterSQLIndex(SQLIndex&, SQLIndex&) override { return {}; }
    SourceNodePtr primaryKeyBlock(SQLTable&) override { return QVSourceNode::node(); }

    // Types
    [[nodiscard]] bool typeHasSize(std::string_view type) override;
    [[nodiscard]] std::string fieldType(SQLField& field) override;
    /// The database's own name of a type as a driver reports it; an unknown one unchanged.
    [[nodiscard]] std::string jdbcFieldTypeFromNative(std::string_view type) const;

    // Statements
    std::string exportSQLField(SQLField& field) override;
    std::string alterType(SQLField& field, SQLField& curField) override;
    std::string createFieldIndexOnField(SQLField& field, SQLTable& table) override;
    std::string dropIndex(SQLField& field, SQLTable& table) override;
};

}  // namespace vellicor
