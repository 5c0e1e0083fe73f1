// cli/dialect_names.h — dialects as people name them.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/model/forward.h"

namespace vellicor {
class SQLContainer;
}

namespace vellicor::cli {

class Messages;

/// Registered dialects, then the export types of plug-ins.
[[nodiscard]] std::vector<std::string> dialectNames();
/// The dialect of a name or alias in any case, as the registry spells it. An unknown one is a `Failure` with the list.
[[nodiscard]] std::string dialectNamed(std::string_view name);
/// What a document is written in when nobody says otherwise: its own dialect, "generic" when it names none. One that is
/// not known becomes "generic", with a warning.
[[nodiscard]] std::string dialectOf(const SQLContainer& document, Messages& messages);
/// A fresh exporter; null for the type of a plug-in that has none.
[[nodiscard]] std::shared_ptr<SQLExportDialect> exporterOrNull(std::string_view dialect);
/// The same, where its absence is a `Failure`.
[[nodiscard]] std::shared_ptr<SQLExportDialect> exporterFor(std::string_view dialect);

}  // namespace vellicor::cli
