// vellicor/dialects/sybase_style_exporter.h — what SQL Server and Sybase have in common.
#pragma once

#include "vellicor/export/generic_exporter.h"

namespace vellicor {

/// IDENTITY columns, names and defaults quoted by brackets where they need it, indexes as statements.
class SybaseStyleExporter : public GenericSQLExporter {
public:
    // Answers
    [[nodiscard]] bool supportsIndexPostLoad() const override { return true; }
    [[nodiscard]] bool supportsViews() const override { return true; }
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override;
    std::string exportSQLIndex(SQLIndex&) override { return {}; }  // indexes are statements of their own

    // Names and values
    using GenericSQLExporter::quoteForSQL;
    std::string quoteForSQL(std::string_view text, bool force) override;
    [[nodiscard]] std::vector<std::string> quoteMembersForSQL(const std::vector<std::string>& names);
    [[nodiscard]] OptionalText primaryKeyConstraintName(SQLTable& table) override;
    [[nodiscard]] std::string quotedColumnName(const std::string& name);

    /// In runnable scripts numbers, calls and words such as CURRENT_TIMESTAMP stay bare.
    [[nodiscard]] bool shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) override;

    // Statements
    using GenericSQLExporter::addIndex;
    std::string addIndex(SQLIndex& index, SQLTable& table) override;
    [[nodiscard]] virtual std::string nullOrNotString(SQLField& field);
    std::string exportSQLField(SQLField& field) override;
};

}  // namespace vellicor
