// cli/terminal.h — what may be written to standard error.
#pragma once

namespace vellicor::cli {

/// Standard error goes to a terminal that understands control sequences.
[[nodiscard]] bool errorsGoToTerminal();
/// The same, unless the user set NO_COLOR.
[[nodiscard]] bool errorsTakeColour();

}  // namespace vellicor::cli
