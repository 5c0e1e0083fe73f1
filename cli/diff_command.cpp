// cli/diff_command.cpp — `vellicor diff`: what differs between two documents.
#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands.h"
#include "cli/document_command.h"
#include "cli/document_input.h"
#include "cli/match_option.h"
#include "cli/output.h"
#include "cli/preference_settings.h"
#include "cli/result.h"
#include "vellicor/migration/document_differences.h"

namespace vellicor::cli {

namespace {

struct DiffOptions {
    std::string before;
    std::string after;
    std::string match;
    bool layout = false;
    PreferenceOptions preferences;
    ReportOptions report;
};

void writeAsJson(const DocumentDifferences& differences, const DiffOptions& options, const Messages& messages) {
    Value::List byName;
    for (const std::string& line : differences.matchesByName()) byName.emplace_back(line);
    Value::Map map{{"old", options.before},
                   {"new", options.after},
                   {"differences", differencesAsValue(differences.schema())},
                   {"matchedByName", std::move(byName)},
                   {"events", messages.events()}};
    if (options.layout) map.emplace("layout", differencesAsValue(differences.layout()));
    writeJson(std::move(map));
}

ExitCode runDiff(const DiffOptions& options, Messages& messages) {
    applyPreferences(options.preferences, messages);
    const Document before = readDocument(options.before, messages);
    const Document after = readDocument(options.after, messages);
    const ObjectMatcher matcher(*before.container, *after.container, matchMode(options.match));
    const DocumentDifferences differences(matcher);
    for (const std::string& line : differences.matchesByName()) messages.add(Level::Note, line);
    requireClean(messages, options.report);
    if (options.report.json) {
        writeAsJson(differences, options, messages);
    } else {
        Output::standard().write(differencesInWords(differences.schema()));
        if (options.layout) Output::standard().write(differencesInWords(differences.layout()));
    }
    const bool differ = !differences.schema().empty() || (options.layout && !differences.layout().empty());
    return differ ? kDifferences : kDone;
}

}  // namespace

void addDiffCommand(CLI::App& app, Session& session) {
    auto options = std::make_shared<DiffOptions>();
    CLI::App& command =
        *app.add_subcommand("diff", "say what differs between two documents; exit status 2 if anything");
    addDocument(command, options->before, "OLD", "the document before");
    addDocument(command, options->after, "NEW", "the document after");
    addMatchOption(command, options->match);
    command.add_flag("--layout", options->layout, "also places, sizes, colours, labels and notes");
    completeDocumentCommand(command, session, options, runDiff);
}

}  // namespace vellicor::cli
