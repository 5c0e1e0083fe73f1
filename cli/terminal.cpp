// cli/terminal.cpp — asking the system and the environment.
#include "cli/terminal.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace vellicor::cli {

bool errorsGoToTerminal() {
    const char* kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && (!kind || std::string_view(kind) != "dumb");
}

bool errorsTakeColour() {
    const char* refused = std::getenv("NO_COLOR");
    return errorsGoToTerminal() && (!refused || !*refused);
}

}  // namespace vellicor::cli
