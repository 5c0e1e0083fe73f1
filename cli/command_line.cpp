// cli/command_line.cpp — parsing, and one line about each way to get it wrong.
#include "cli/command_line.h"

#include <CLI/CLI.hpp>

#include "cli/command_names.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/help_format.h"
#include "cli/nearest_name.h"
#include "cli/output.h"
#include "cli/session.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

/// The first word that nothing takes.
std::string unexpectedWord(const CLI::App& app) {
    const auto words = app.remaining(true);
    return words.empty() ? std::string() : words.front();
}

std::string explained(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& command = chosenCommand(app);
    const std::string help = text("; '%@ --help' shows how to use it", fullName(command));
    if (dynamic_cast<const CLI::ExtrasError*>(&error)) {
        const std::string word = unexpectedWord(app);
        if (word.size() > 1 && word.front() == '-')
            return text("there is no option '%@'%@%@", word,
                        suggestion(word.substr(0, word.find('=')), optionNames(command)), help);
        if (!subcommandNames(command).empty()) return unknownCommand(command, word);
        return text("'%@' is one argument too many%@", word, help);
    }
    return text("%@%@", error.what(), help);
}

}  // namespace

void describeCommandLine(CLI::App& app, Session& session) {
    app.name("vellicor");
    app.description("Design documents of databases: SQL scripts in many dialects, and other forms.");
    app.set_version_flag("--version", "vellicor " VELLICOR_VERSION, "show the version");
    app.require_subcommand(0, 1);
    app.set_help_flag("-h,--help", "show this help");
    app.formatter(helpFormat());
    addExportCommand(app, session);
    addAlterCommand(app, session);
    addDiffCommand(app, session);
    addImportCommand(app, session);
    addInfoCommand(app, session);
    addConvertCommand(app, session);
    addDialectsCommand(app, session);
    addPrefsCommand(app, session);
    addCompletionCommand(app, session);
    addHelpCommand(app, session);
    for (CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) command->group("Commands");
}

bool parseCommandLine(CLI::App& app, const Session& session, int argc, const char* const* argv) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        Output::standard().write(helpFor(chosenCommand(app)));
        return false;
    } catch (const CLI::CallForVersion& version) {
        Output::standard().write(text("%@\n", version.what()));
        return false;
    } catch (const CLI::ParseError& error) {
        throw Failure(kBadUse, explained(app, error));
    }
    if (session.run) return true;
    const CLI::App& command = chosenCommand(app);
    throw Failure(kBadUse, text("'%@' needs a command: %@; '%@ --help' explains them", fullName(command),
                                joined(subcommandNames(command), ", "), fullName(command)));
}

}  // namespace vellicor::cli
