// cli/document_command.h — how every command that reads a document ends.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>

#include "cli/session.h"

namespace vellicor::cli {

/// Adds the options about preferences and reports, and has `run` called when the command line names the command.
template <class Options>
void completeDocumentCommand(CLI::App& command, Session& session, const std::shared_ptr<Options>& options,
                             ExitCode (*run)(const Options&, Messages&)) {
    addPreferenceOptions(command, options->preferences);
    addJsonOption(command, options->report);
    addReportOptions(command, options->report);
    command.callback([options, &session, run] {
        session.choose(options->report, [options, &session, run] { return run(*options, session.messages); });
    });
}

}  // namespace vellicor::cli
