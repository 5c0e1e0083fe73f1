// cli/command_names.cpp — walking the tree of commands.
#include "cli/command_names.h"

#include <CLI/CLI.hpp>

#include "cli/failure.h"
#include "cli/nearest_name.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

std::vector<std::string> subcommandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    return names;
}

std::vector<std::string> optionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
        for (const std::string& name : option->get_snames()) names.push_back("-" + name);
    }
    return names;
}

std::string fullName(const CLI::App& command) {
    return command.get_parent() ? fullName(*command.get_parent()) + " " + command.get_name() : command.get_name();
}

std::string helpFor(const CLI::App& command) {
    return command.get_formatter()->make_help(&command, fullName(command), CLI::AppFormatMode::Normal);
}

const CLI::App& chosenCommand(const CLI::App& app) {
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? app : chosenCommand(*chosen.back());
}

std::string unknownCommand(const CLI::App& above, const std::string& name) {
    return text("there is no command '%@'%@; '%@ --help' lists all", name, suggestion(name, subcommandNames(above)),
                fullName(above));
}

const CLI::App& commandNamed(const CLI::App& app, const std::vector<std::string>& path) {
    const CLI::App* command = &app;
    for (const std::string& name : path) {
        const auto below =
            command->get_subcommands([&name](const CLI::App* candidate) { return candidate->get_name() == name; });
        if (below.empty()) throw Failure(kBadUse, unknownCommand(*command, name));
        command = below.front();
    }
    return *command;
}

}  // namespace vellicor::cli
