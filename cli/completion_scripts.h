// cli/completion_scripts.h — completions as scripts of the shells.
#pragma once

#include <string>

#include "cli/completion_tree.h"

namespace vellicor::cli {

[[nodiscard]] std::string bashCompletion(const CompletionCommand& root);
[[nodiscard]] std::string zshCompletion(const CompletionCommand& root);
[[nodiscard]] std::string fishCompletion(const CompletionCommand& root);

}  // namespace vellicor::cli
