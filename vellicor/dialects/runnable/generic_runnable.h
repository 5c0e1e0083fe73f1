// vellicor/dialects/runnable/generic_runnable.h — scripts of the neutral dialect that shall run.
#pragma once

#include "vellicor/export/generic_words.h"
#include "vellicor/export/runnable/runnable_exporter.h"

namespace vellicor {

/// Answers what exactly the generic exporter answers, and dialects over it do not.
class RunnableGenericExporter final : public RunnableExporter<GenericSQLExporter> {
public:
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<RunnableGenericExporter>();
    }
    [[nodiscard]] bool supportsViews() const override { return true; }
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override { return genericReservedWords(); }
};

}  // namespace vellicor
