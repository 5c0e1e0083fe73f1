// cli/command_names.h — finding commands in the description of the command line.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vellicor::cli {

/// The names of the commands directly below, in the order of the help.
[[nodiscard]] std::vector<std::string> subcommandNames(const CLI::App& app);
/// The options that the command takes itself, with their dashes.
[[nodiscard]] std::vector<std::string> optionNames(const CLI::App& command);
/// "vellicor prefs set".
[[nodiscard]] std::string fullName(const CLI::App& command);
/// What --help shows of it.
[[nodiscard]] std::string helpFor(const CLI::App& command);
/// The command that the last words of the command line belong to.
[[nodiscard]] const CLI::App& chosenCommand(const CLI::App& app);
/// What to say about a word that is no command below `above`: the nearest one, and where all are listed.
[[nodiscard]] std::string unknownCommand(const CLI::App& above, const std::string& name);
/// The command of the words `path` below `app`; an unknown one is a `Failure` that names the nearest.
[[nodiscard]] const CLI::App& commandNamed(const CLI::App& app, const std::vector<std::string>& path);

}  // namespace vellicor::cli
