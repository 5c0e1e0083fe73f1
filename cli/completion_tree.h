// cli/completion_tree.h — the command line as generators of completions see it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vellicor::cli {

/// What may stand in a place.
struct CompletionValue {
    bool isTaken = true;  ///< false: a flag takes no value
    bool isFile = false;
    std::vector<std::string> choices;  ///< empty: anything, or a file
};

struct CompletionOption {
    std::vector<std::string> longNames;   ///< without dashes
    std::vector<std::string> shortNames;  ///< without dash
    std::string description;
    CompletionValue value;
};

struct CompletionCommand {
    std::string name;  ///< with the commands above it, "vellicor prefs set"
    std::string word;  ///< the last of them
    std::string description;
    std::vector<CompletionOption> options;
    std::vector<CompletionValue> positionals;
    std::vector<CompletionCommand> commands;
};

/// Read off the description that the command line is parsed with, so that it cannot differ from it.
[[nodiscard]] CompletionCommand completionTree(const CLI::App& app);
/// The command and all below it, each before those it holds.
[[nodiscard]] std::vector<const CompletionCommand*> allCommands(const CompletionCommand& root);

}  // namespace vellicor::cli
