// cli/command_line.h — the whole command line: its description, and what is said when it is wrong.
#pragma once

namespace CLI {
class App;
}

namespace vellicor::cli {

struct Session;

/// Adds the tool's own options and every command.
void describeCommandLine(CLI::App& app, Session& session);
/// False when the line asked for help or the version only, which are then printed. A line that is wrong is a `Failure`
/// that says what to write instead.
[[nodiscard]] bool parseCommandLine(CLI::App& app, const Session& session, int argc, const char* const* argv);

}  // namespace vellicor::cli
