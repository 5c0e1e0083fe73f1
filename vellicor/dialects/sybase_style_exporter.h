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
    [[nodiscard]] bool indexesStandInTable() const override { return false; }

    // Names and values
    using GenericSQLExporter::quoteForSQL;
    std::string quoteForSQL(std::string_view text, bool force) override;
    [[nodiscard]] std::vector<std::string> quoteMembersForSQL(const std::vector<std::string>& names);
    [[nodiscard]] OptionalText primaryKeyConstraintName(SQLTable& table) override;
    [[nodiscard]] virtual std::string quotedColumnName(const std::string& name);
    /// A default value as it stands in the column. Kept: it is quoted like a name.
    [[nodiscard]] virtual std::string defaultInColumn(std::string_view value, SQLField& field);

    // Statements
    using GenericSQLExporter::addIndex;
    std::string addIndex(SQLIndex& index, SQLTable& table) override;
    [[nodiscard]] virtual std::string nullOrNotString(SQLField& field);
    std::string exportSQLField(SQLField& field) override;
};

}  // namespace vellicor
