// vellicor/dialects/sybase_exporter.h — Sybase.
#pragma once

#include "vellicor/dialects/sybase_style_exporter.h"

namespace vellicor {

/// Sybase: batches ended by "go" where the user wants it, and a unique index over the primary key.
class SybaseSQLExporter : public SybaseStyleExporter {
public:
    static std::shared_ptr<SybaseSQLExporter> exporter() { return create<SybaseSQLExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<SybaseSQLExporter>(); }
    [[nodiscard]] std::string_view className() const override { return "SybaseSQLExporter"; }

    [[nodiscard]] std::string getName() const override { return "Sybase"; }
    /// Reads the preference "sybaseUseGo" at every call.
    [[nodiscard]] std::string instructionSeparator() override;
    Statements postLoadAsVectorSQLTable(SQLTable& table) override;

protected:
    /// The unique index over the primary key. Kept: the table is quoted as one name, and no separator follows.
    [[nodiscard]] virtual std::string primaryIndexStatement(SQLTable& table, const std::string& columns);
};

}  // namespace vellicor
