// vellicor/dialects/runnable/sybase_runnable.h — what Sybase's scripts need, beyond the classic text, to run.
#pragma once

#include "vellicor/dialects/runnable/sybase_style_runnable.h"
#include "vellicor/dialects/sybase_exporter.h"

namespace vellicor {

class RunnableSybaseExporter final : public RunnableSybaseStyle<SybaseSQLExporter> {
public:
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<RunnableSybaseExporter>();
    }

protected:
    [[nodiscard]] std::string primaryIndexStatement(SQLTable& table, const std::string& columns) override {
        return text("CREATE UNIQUE INDEX PrimaryIndex on %@ (%@)%@\n", getCanonicalName(table), columns,
                    instructionSeparator());
    }
};

}  // namespace vellicor
