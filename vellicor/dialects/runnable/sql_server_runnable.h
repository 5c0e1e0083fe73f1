// vellicor/dialects/runnable/sql_server_runnable.h — what SQL Server's scripts need, beyond the classic text, to run.
#pragma once

#include "vellicor/dialects/runnable/sybase_style_runnable.h"
#include "vellicor/dialects/sql_server_exporter.h"

namespace vellicor {

class RunnableSQLServerExporter final : public RunnableSybaseStyle<SQLServerExporter> {
public:
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<RunnableSQLServerExporter>();
    }

    using RunnableSybaseStyle::addIndex;
    /// A constraint by ALTER TABLE; there is no statement that creates one.
    std::string addIndex(SQLIndex& index, SQLTable& table) override;
    std::string dropSQLIndex(SQLIndex& index) override;
};

}  // namespace vellicor
