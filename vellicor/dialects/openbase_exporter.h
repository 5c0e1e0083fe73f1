// vellicor/dialects/openbase_exporter.h — OpenBase.
#pragma once

#include "vellicor/export/generic_exporter.h"

namespace vellicor {

/// OpenBase: the generic exporter with names never quoted.
class OpenBaseSQLExporter : public GenericSQLExporter {
public:
    static std::shared_ptr<OpenBaseSQLExporter> exporter() { return create<OpenBaseSQLExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<OpenBaseSQLExporter>();
    }
    [[nodiscard]] std::string_view className() const override { return "OpenBaseSQLExporter"; }
    [[nodiscard]] std::string getName() const override { return "OpenBase"; }
    [[nodiscard]] bool useQuotedIdentifier() const override { return false; }
    [[nodiscard]] bool supportsInlineAutoIncrement() const override { return true; }
};

}  // namespace vellicor
