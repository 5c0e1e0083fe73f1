// cli/import_command.cpp — `vellicor import`: a database, or a script of SQL, as a document.
#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands.h"
#include "cli/database_source.h"
#include "cli/document_command.h"
#include "cli/document_facts.h"
#include "cli/document_input.h"
#include "cli/failure.h"
#include "cli/output.h"
#include "cli/preference_settings.h"
#include "cli/result.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

struct ImportOptions {
    std::string source;
    SourceOptions reading;
    std::string output;
    PreferenceOptions preferences;
    ReportOptions report;
};

ExitCode run(const ImportOptions& options, Messages& messages) {
    messages.steps().setCount(1);
    applyPreferences(options.preferences, messages);
    if (!isDatabaseSource(options.source))
        throw Failure(kBadUse, text("'%@' is no database and no file of SQL; give sqlite:FILE, postgres://user@host/"
                                    "database, mysql://user@host/database, or a file .sql with -d",
                                    options.source));
    const Document document = readDocument(options.source, messages, options.reading);
    const Output output = Output::to(options.output, document.stem, "xml");
    if (output.replaces(document))
        throw Failure(kBadUse, "the document would replace what it is read from; choose another file with -o");
    deliver(messages, options.report, document, output, document.container->xmlDocument(),
            {{"dialect", document.container->documentInfo()->exportDialect()},
             {"counts", jsonCounts(countsByClass(*document.container))}});
    return kDone;
}

}  // namespace

void addImportCommand(CLI::App& app, Session& session) {
    auto options = std::make_shared<ImportOptions>();
    CLI::App& command = *app.add_subcommand("import", "make a document of a database or of a script of SQL");
    command.add_option("SOURCE", options->source, "sqlite:FILE, postgres://…, mysql://… or a file of SQL")
        ->type_name(kDocumentType)
        ->required();
    command.add_option("-o,--output", options->output, "file or folder to write; - for standard output")
        ->type_name(kFileType)
        ->required();
    command.add_option("-d,--dialect", options->reading.dialect, "dialect of a file of SQL")->type_name(kDialectType);
    completeDocumentCommand(command, session, options, run);
}

}  // namespace vellicor::cli
