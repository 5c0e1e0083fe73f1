// cli/commands.h — one function a command: its options, and what it does with them.
#pragma once

namespace CLI {
class App;
}

namespace vellicor::cli {

struct Session;

/// Each adds its command to `app`. The command sets the session's `run` when the command line names it.
void addExportCommand(CLI::App& app, Session& session);
void addImportCommand(CLI::App& app, Session& session);
void addInfoCommand(CLI::App& app, Session& session);
void addDiffCommand(CLI::App& app, Session& session);
void addAlterCommand(CLI::App& app, Session& session);
void addConvertCommand(CLI::App& app, Session& session);
void addDialectsCommand(CLI::App& app, Session& session);
void addPrefsCommand(CLI::App& app, Session& session);
void addHelpCommand(CLI::App& app, Session& session);
void addCompletionCommand(CLI::App& app, Session& session);

}  // namespace vellicor::cli
