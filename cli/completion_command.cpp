// cli/completion_command.cpp — `vellicor completion`: the script that teaches a shell the command line.
#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands.h"
#include "cli/completion_scripts.h"
#include "cli/output.h"
#include "cli/session.h"

namespace vellicor::cli {

namespace {

struct Shell {
    const char* name;
    std::string (*script)(const CompletionCommand& root);
};
constexpr Shell kShells[] = {{"bash", bashCompletion}, {"zsh", zshCompletion}, {"fish", fishCompletion}};

}  // namespace

void addCompletionCommand(CLI::App& app, Session& session) {
    auto chosen = std::make_shared<std::string>();
    std::vector<std::string> names;
    for (const Shell& shell : kShells) names.emplace_back(shell.name);
    CLI::App& command = *app.add_subcommand("completion", "print the script that completes command lines in a shell");
    command.add_option("SHELL", *chosen, "shell to write for")->required()->check(CLI::IsMember(names));
    command.callback([chosen, &app, &session] {
        session.choose({}, [chosen, &app] {
            for (const Shell& shell : kShells)
                if (*chosen == shell.name) Output::standard().write(shell.script(completionTree(app)));
            return kDone;
        });
    });
}

}  // namespace vellicor::cli
