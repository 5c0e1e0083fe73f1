// cli/help_command.cpp — `vellicor help`: how to use a command.
#include <CLI/CLI.hpp>
#include <memory>

#include "cli/command_names.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"

namespace vellicor::cli {

void addHelpCommand(CLI::App& app, Session& session) {
    auto path = std::make_shared<std::vector<std::string>>();
    CLI::App& command = *app.add_subcommand("help", "show how to use the tool or one of its commands");
    command.add_option("COMMAND", *path, "command to explain")->type_name(kCommandType);
    command.callback([path, &app, &session] {
        session.choose({}, [path, &app] {
            Output::standard().write(helpFor(commandNamed(app, *path)));
            return kDone;
        });
    });
}

}  // namespace vellicor::cli
