// vellicor/dialects/built_in_dialects.h — the dialects of this library, in the order of the registry.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "vellicor/model/export_dialect.h"

namespace vellicor {

/// What the registry needs to know of one dialect.
struct BuiltInDialect {
    std::string_view name;  ///< what documents store and look-ups compare; differs from the exporter's own name
    std::shared_ptr<SQLExportDialect> (*exporter)();          ///< of classic text
    std::shared_ptr<SQLExportDialect> (*runnableExporter)();  ///< of scripts that the dialect's own server accepts
    std::span<const std::string_view> drivers;
};

/// In registry order; "generic" first.
[[nodiscard]] std::span<const BuiltInDialect> builtInDialects();

}  // namespace vellicor
