// vellicor/export/runnable/runnable_run.cpp — what the export of a runnable script remembers until it ends.
#include "vellicor/export/runnable/runnable_run.h"

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string RunnableRun::freeName(std::string_view scope, std::string_view name) {
    const std::string key = text("%@\n", caseFolded(scope));
    std::string free(name);
    std::size_t& next = _nextNumbers[key + caseFolded(name)];
    while (!_names.insert(key + caseFolded(free)).second) free = text("%@_%lu", name, ++next);
    return free;
}

}  // namespace vellicor
