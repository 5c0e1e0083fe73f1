// vellicor/model/exporter_source.h — where the model gets exporters from; defined beside the registry of dialects.
#pragma once

#include <memory>
#include <string_view>

namespace vellicor {

class SQLExportDialect;

/// A fresh exporter of the dialect of that name (any case); the generic one when no dialect has it.
[[nodiscard]] std::shared_ptr<SQLExportDialect> exporterNamed(std::string_view dialect);
/// The same, with export plug-ins asked for names that no dialect has.
[[nodiscard]] std::shared_ptr<SQLExportDialect> exporterNamedWithPlugins(std::string_view dialect);
/// The class of a registered exporter, or one that exporters are derived from.
[[nodiscard]] bool isExporterClass(std::string_view className);
/// A fresh generic exporter.
[[nodiscard]] std::shared_ptr<SQLExportDialect> defaultExporter();

}  // namespace vellicor
