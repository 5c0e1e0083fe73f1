// cli/match_option.h — the option that says which objects of two documents are the same.
#pragma once

#include <string>

#include "vellicor/migration/object_matcher.h"

namespace CLI {
class App;
}

namespace vellicor::cli {

/// --match uid|name|auto
void addMatchOption(CLI::App& command, std::string& value);
[[nodiscard]] MatchMode matchMode(const std::string& value);

}  // namespace vellicor::cli
