// cli/completion_tree.cpp — from the parser's description to what completions need.
#include "cli/completion_tree.h"

#include <CLI/CLI.hpp>

#include "cli/command_names.h"
#include "cli/dialect_names.h"
#include "cli/session.h"
#include "vellicor/platform/known_preferences.h"

namespace vellicor::cli {

namespace {

/// The words in "TEXT:{a,b}", as the parser shows an option that takes one of a set.
std::vector<std::string> membersIn(const std::string& type) {
    const auto open = type.find('{');
    const auto close = type.find('}', open);
    if (open == std::string::npos || close == std::string::npos) return {};
    return CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
}

const CLI::App& rootOf(const CLI::App& command) {
    return command.get_parent() ? rootOf(*command.get_parent()) : command;
}

std::vector<std::string> preferenceKeys(const char* behind) {
    std::vector<std::string> keys;
    for (const KnownPreference& preference : knownPreferences()) keys.push_back(std::string(preference.key) + behind);
    return keys;
}

CompletionValue valueOf(const CLI::Option& option, const CLI::App& command) {
    const std::string type = option.get_type_name();
    if (option.get_items_expected_max() == 0) return {.isTaken = false, .choices = {}};
    if (type == kFileType || type == kDocumentType) return {.isFile = true, .choices = {}};
    if (type == kDialectType) return {.choices = dialectNames()};
    if (type == kPreferenceType) return {.choices = preferenceKeys("")};
    if (type == kSettingType) return {.choices = preferenceKeys("=")};
    if (type == kCommandType) return {.choices = subcommandNames(rootOf(command))};
    return {.choices = membersIn(type)};
}

}  // namespace

CompletionCommand completionTree(const CLI::App& app) {
    CompletionCommand command{fullName(app), app.get_name(), app.get_description(), {}, {}, {}};
    for (const CLI::Option* option : app.get_options()) {
        if (option->nonpositional())
            command.options.push_back(
                {option->get_lnames(), option->get_snames(), option->get_description(), valueOf(*option, app)});
        else
            command.positionals.push_back(valueOf(*option, app));
    }
    for (const CLI::App* below : app.get_subcommands([](const CLI::App*) { return true; }))
        command.commands.push_back(completionTree(*below));
    return command;
}

std::vector<const CompletionCommand*> allCommands(const CompletionCommand& root) {
    std::vector<const CompletionCommand*> all{&root};
    for (const CompletionCommand& below : root.commands)
        for (const CompletionCommand* command : allCommands(below)) all.push_back(command);
    return all;
}

}  // namespace vellicor::cli
