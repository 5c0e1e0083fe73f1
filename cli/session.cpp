// cli/session.cpp — the shared options, each described once.
#include "cli/session.h"

#include <CLI/CLI.hpp>

namespace vellicor::cli {

namespace {

/// An option that takes one value each time it is given; what follows the value is not swallowed.
void addPattern(CLI::App& command, const char* name, std::vector<std::string>& patterns, const char* description) {
    command.add_option(name, patterns, description)->type_name("PATTERN")->allow_extra_args(false);
}

}  // namespace

void Session::choose(const ReportOptions& report, std::function<ExitCode()> work) {
    messages.setQuiet(report.quiet);
    messages.setVerbose(report.verbose);
    run = std::move(work);
}

void addReportOptions(CLI::App& command, ReportOptions& options) {
    auto* quiet = command.add_flag("-q,--quiet", options.quiet, "no warnings on standard error");
    command.add_flag("-v,--verbose", options.verbose, "notes on standard error, too")->excludes(quiet);
    command.add_flag("--strict", options.strict,
                     "fail when there is any warning, or when the document had to be repaired");
}

CLI::Option* addJsonOption(CLI::App& command, ReportOptions& options) {
    return command.add_flag("--json", options.json, "a machine-readable result on standard output");
}

void addPreferenceOptions(CLI::App& command, PreferenceOptions& options) {
    command.add_option("--set", options.settings, "set a preference for this run; may be repeated")
        ->type_name(kSettingType)
        ->allow_extra_args(false);
    addConfigOption(command, options.config);
}

CLI::Option* addConfigOption(CLI::App& command, std::string& file) {
    return command.add_option("--config", file, "property list of preferences, instead of the user's own")
        ->type_name(kFileType);
}

void addPartOptions(CLI::App& command, PartOptions& options) {
    addPattern(command, "--tables", options.tables, "only tables and views with such a name; * and ? as in file names");
    addPattern(command, "--schema", options.schemas, "only tables and views of such a schema");
    addPattern(command, "--label", options.labels, "only tables and views that carry such a label");
}

CLI::Option* addDocument(CLI::App& command, std::string& document) {
    return addDocument(command, document, "DOC", "design document, or - for standard input");
}

CLI::Option* addDocument(CLI::App& command, std::string& document, const char* name, const char* description) {
    return command.add_option(name, document, description)
        ->type_name(kDocumentType)
        ->required();
}

}  // namespace vellicor::cli
