// cli/session.h — one run of the tool, and the options that several commands share.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/exit_codes.h"
#include "cli/messages.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace vellicor::cli {

/// How a command reports.
struct ReportOptions {
    bool quiet = false;
    bool verbose = false;
    bool json = false;
    bool strict = false;  ///< a warning or a repaired document fails the run
};
/// Preferences for this run only.
struct PreferenceOptions {
    std::vector<std::string> settings;  ///< "KEY=VALUE"
    std::string config;                 ///< property list to use instead of the user's own; empty: none given
    bool classic = false;               ///< what the tool turns on by itself stays off
};
/// Which tables and views count: those that match a pattern of every kind that was given.
struct PartOptions {
    std::vector<std::string> tables;
    std::vector<std::string> schemas;
    std::vector<std::string> labels;
    [[nodiscard]] bool isWhole() const { return tables.empty() && schemas.empty() && labels.empty(); }
};

struct Session {
    /// For a command that the command line names: `work` runs once the whole line was read; its value is the exit
    /// status.
    void choose(const ReportOptions& report, std::function<ExitCode()> work);

    Messages messages;
    std::function<ExitCode()> run;  // empty until a command was chosen
};

// What the type names of options mean to the generator of completions.
inline constexpr const char* kFileType = "FILE";
inline constexpr const char* kDocumentType = "DOC";
inline constexpr const char* kDialectType = "DIALECT";
inline constexpr const char* kPreferenceType = "KEY";
inline constexpr const char* kSettingType = "KEY=VALUE";
inline constexpr const char* kCommandType = "COMMAND";

/// -q, -v, --strict.
void addReportOptions(CLI::App& command, ReportOptions& options);
CLI::Option* addJsonOption(CLI::App& command, ReportOptions& options);
void addPreferenceOptions(CLI::App& command, PreferenceOptions& options);
CLI::Option* addConfigOption(CLI::App& command, std::string& file);
void addPartOptions(CLI::App& command, PartOptions& options);
CLI::Option* addDocument(CLI::App& command, std::string& document);
CLI::Option* addDocument(CLI::App& command, std::string& document, const char* name, const char* description);

}  // namespace vellicor::cli
