// cli/completion_scripts.cpp — one renderer a shell. Each script first finds the command that the words name, then
// completes the value of the option before the cursor, an option, or what the command itself takes.
#include "cli/completion_scripts.h"

#include <algorithm>

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

/// For bash and zsh.
std::string quotedWord(std::string_view word) { return text("'%@'", replacingAll(word, "'", "'\\''")); }
std::string quotedForFish(std::string_view word) {
    return text("'%@'", replacingAll(replacingAll(word, "\\", "\\\\"), "'", "\\'"));
}

std::vector<std::string> dashedNames(const CompletionOption& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.longNames) names.push_back("--" + name);
    for (const std::string& name : option.shortNames) names.push_back("-" + name);
    return names;
}

/// What the command takes besides options: the commands below it, or its operands.
CompletionValue operandsOf(const CompletionCommand& command) {
    CompletionValue operands;
    for (const CompletionCommand& below : command.commands) operands.choices.push_back(below.word);
    for (const CompletionValue& positional : command.positionals) {
        operands.isFile = operands.isFile || positional.isFile;
        operands.choices.insert(operands.choices.end(), positional.choices.begin(), positional.choices.end());
    }
    return operands;
}

/// The shells of one family differ only in how they offer words and files, and in the words of their language.
struct ShellDialect {
    std::string_view begin;       // up to the list of commands, in the test whether a word leads to one
    std::string_view afterNames;  // from there to the cases of option values
    std::string_view afterValues;
    std::string_view afterOptions;
    std::string_view end;
    std::string_view offerWords;  // with a placeholder for quoted words
    std::string_view offerFiles;
    std::string_view casePattern;  // with a placeholder
};

std::string filled(std::string_view form, std::string_view word) { return replacingAll(form, "@", word); }

std::string offer(const CompletionValue& value, const ShellDialect& shell) {
    if (value.isFile) return std::string(shell.offerFiles);
    std::vector<std::string> words;
    for (const std::string& choice : value.choices) words.push_back(quotedWord(choice));
    return words.empty() ? ":" : filled(shell.offerWords, joined(words, " "));
}

std::string caseLine(const std::vector<std::string>& patterns, const std::string& work, const ShellDialect& shell) {
    std::vector<std::string> quotedPatterns;
    for (const std::string& pattern : patterns) quotedPatterns.push_back(quotedWord(pattern));
    return text("        %@ %@ ;;\n", filled(shell.casePattern, joined(quotedPatterns, "|")), work);
}

std::string completionScript(const CompletionCommand& root, const ShellDialect& shell) {
    std::vector<std::string> names;
    std::string values, options, operands;
    for (const CompletionCommand* command : allCommands(root)) {
        if (command != &root) names.push_back(quotedWord(command->name));
        std::vector<std::string> words;
        for (const CompletionOption& option : command->options) {
            std::vector<std::string> patterns = dashedNames(option);
            words.insert(words.end(), patterns.begin(), patterns.end());
            if (!option.value.isTaken) continue;
            for (std::string& pattern : patterns) pattern = command->name + " " + pattern;
            values += caseLine(patterns, offer(option.value, shell) + "; return", shell);
        }
        options += caseLine({command->name}, offer({.choices = words}, shell), shell);
        operands += caseLine({command->name}, offer(operandsOf(*command), shell), shell);
    }
    std::string all(shell.begin);
    all += joined(names, "|");
    all += shell.afterNames;
    all += values;
    all += shell.afterValues;
    all += options;
    all += shell.afterOptions;
    all += operands;
    all += shell.end;
    return all;
}

constexpr ShellDialect kBash{
    .begin = R"bash(# Completions of vellicor for bash; load them with: source <(vellicor completion bash)
_vellicor_words() {
    local choice
    for choice; do
        [[ $choice == "$word"* ]] && COMPREPLY+=("$(printf %q "$choice")")
        [[ $choice == *= ]] && compopt -o nospace 2>/dev/null
    done
}
_vellicor_files() { compopt -o filenames 2>/dev/null; mapfile -t COMPREPLY < <(compgen -f -- "$word"); }
_vellicor() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command=vellicor i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case "$command ${COMP_WORDS[i]}" in )bash",
    .afterNames = R"() command+=" ${COMP_WORDS[i]}" ;; esac
    done
    case "$command $before" in
)",
    .afterValues = R"(    esac
    if [[ $word == -* ]]; then
        case $command in
)",
    .afterOptions = R"(        esac
        return
    fi
    case $command in
)",
    .end = R"(    esac
}
complete -F _vellicor vellicor
)",
    .offerWords = "_vellicor_words @",
    .offerFiles = "_vellicor_files",
    .casePattern = "@)",
};

constexpr ShellDialect kZsh{
    .begin = R"(#compdef vellicor
# Completions of vellicor for zsh; load them with: source <(vellicor completion zsh)
_vellicor() {
    local word=${words[CURRENT]} before=${words[CURRENT-1]} command=vellicor i
    for ((i = 2; i < CURRENT; ++i)); do
        case "$command ${words[i]}" in ()",
    .afterNames = R"() command+=" ${words[i]}" ;; esac
    done
    case "$command $before" in
)",
    .afterValues = R"(    esac
    if [[ $word == -* ]]; then
        case $command in
)",
    .afterOptions = R"(        esac
        return
    fi
    case $command in
)",
    .end = R"(    esac
}
if [[ $funcstack[1] == _vellicor ]]; then _vellicor "$@"; else compdef _vellicor vellicor; fi
)",
    .offerWords = "compadd -- @",
    .offerFiles = "_files",
    .casePattern = "(@)",
};

/// The shell splits the words at blanks, and honours quotes.
std::string fishWords(const std::vector<std::string>& choices) {
    std::vector<std::string> words;
    for (const std::string& choice : choices)
        words.push_back(choice.find(' ') == std::string::npos ? choice : text("\"%@\"", choice));
    return quotedForFish(joined(words, " "));
}

std::string fishValue(const CompletionValue& value) {
    if (value.isFile) return " -r -F";
    if (value.choices.empty()) return " -x";
    return " -x -a " + fishWords(value.choices);
}

}  // namespace

std::string bashCompletion(const CompletionCommand& root) { return completionScript(root, kBash); }

std::string zshCompletion(const CompletionCommand& root) { return completionScript(root, kZsh); }

std::string fishCompletion(const CompletionCommand& root) {
    std::vector<std::string> names;
    std::string lines;
    for (const CompletionCommand* command : allCommands(root)) {
        if (command != &root) names.push_back(quotedForFish(command->name));
        const std::string start = text("complete -c vellicor -n %@",
                                       quotedForFish(text("test (__vellicor_command) = \"%@\"", command->name)));
        for (const CompletionCommand& below : command->commands)
            lines += text("%@ -f -a %@ -d %@\n", start, quotedForFish(below.word), quotedForFish(below.description));
        for (const CompletionOption& option : command->options) {
            lines += start;
            for (const std::string& name : option.longNames) lines += " -l " + name;
            for (const std::string& name : option.shortNames) lines += " -s " + name;
            lines += option.value.isTaken ? fishValue(option.value) : " -f";
            lines += text(" -d %@\n", quotedForFish(option.description));
        }
        for (const CompletionValue& positional : command->positionals) {
            if (positional.isFile)
                lines += start + " -F\n";
            else if (!positional.choices.empty())
                lines += text("%@ -f -a %@\n", start, fishWords(positional.choices));
        }
    }
    return text(R"(# Completions of vellicor for fish; load them with: vellicor completion fish | source
function __vellicor_command
    set -l command vellicor
    for word in (commandline -opc)[2..-1]
        if contains -- "$command $word" %@
            set command "$command $word"
        end
    end
    echo $command
end
complete -c vellicor -f
%@)",
                joined(names, " "), lines);
}

}  // namespace vellicor::cli
