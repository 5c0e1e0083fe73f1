// vellicor/export/runnable/runnable_run.h — what the export of a runnable script remembers until it ends.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "vellicor/export/export_run.h"
#include "vellicor/export/runnable/script_losses.h"

namespace vellicor {

class RunnableRun : public ExportRun {
public:
    RunnableRun(SQLContainer& container, std::shared_ptr<ScriptLosses> losses)
        : ExportRun(container), _losses(std::move(losses)) {}

    /// The name, or a numbered one when this script has used it in the scope already.
    [[nodiscard]] std::string freeName(std::string_view scope, std::string_view name);
    [[nodiscard]] ScriptLosses& losses() { return *_losses; }

private:
    std::unordered_set<std::string> _names;                     // scope, line feed, folded name
    std::unordered_map<std::string, std::size_t> _nextNumbers;  // by the same
    std::shared_ptr<ScriptLosses> _losses;                      // read when the run is over
};

}  // namespace vellicor
