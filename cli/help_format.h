// cli/help_format.h — how the help looks.
#pragma once

#include <memory>

namespace CLI {
class FormatterBase;
}

namespace vellicor::cli {

[[nodiscard]] std::shared_ptr<CLI::FormatterBase> helpFormat();

}  // namespace vellicor::cli
