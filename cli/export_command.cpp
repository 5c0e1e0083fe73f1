// cli/export_command.cpp — `vellicor export`: the create script of a document.
#include <CLI/CLI.hpp>
#include <memory>
#include <optional>

#include "cli/commands.h"
#include "cli/dialect_names.h"
#include "cli/document_command.h"
#include "cli/document_facts.h"
#include "cli/document_input.h"
#include "cli/document_part.h"
#include "cli/failure.h"
#include "cli/output.h"
#include "cli/preference_settings.h"
#include "cli/progress.h"
#include "cli/result.h"
#include "cli/text_options.h"
#include "cli/type_translation_options.h"
#include "vellicor/dialects/sql_dialect_manager.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"

namespace vellicor::cli {

namespace {

struct ExportOptions {
    std::string document;
    std::string dialect;
    std::string output;
    std::optional<bool> drop;
    TextOptions text;
    TypeTranslationOptions types;
    PartOptions part;
    PreferenceOptions preferences;
    ReportOptions report;
};

std::string script(const Document& document, const std::string& dialect, const ExportOptions& options,
                   Messages& messages) {
    const auto exporter = exporterFor(dialect);
    SQLContainer& container = *document.container;
    SQLDocumentInfo& info = *container.documentInfo();
    const std::string own = info.exportDialect();
    info.setDefaultExportDialect(dialect);
    if (options.drop) info.setDropTableOption(*options.drop);
    container.updateExportDialect();
    keepPart(container, options.part, messages);
    if (!options.preferences.classic) translateTypes(container, own, dialect, options.types, messages);
    exporter->setDocumentInfo(as<SQLDocumentInfo>(info.shared_from_this()));
    return container.exportToSQL(*exporter);
}

ExitCode exportDocument(const ExportOptions& options, Messages& messages) {
    messages.steps().setCount(2);  // reading and exporting
    applyPreferences(options.preferences, messages);
    applyTextOptions(options.text);
    const std::string asked = options.dialect.empty() ? std::string() : dialectNamed(options.dialect);
    const Document document = readDocument(options.document, messages);
    const std::string dialect = asked.empty() ? dialectOf(*document.container, messages) : asked;

    const std::string extension = SQLDialectManager::sharedDialectManager().exportFileTypeForDialect(dialect);
    const Output output = Output::to(options.output, document.stem, extension.empty() ? "sql" : extension);
    if (output.replaces(document))
        throw Failure(kBadUse, "the script would replace the document; choose another file with -o");

    std::string sql;
    {
        const Progress progress(messages, "exporting " + document.name);
        sql = script(document, dialect, options, messages);
    }
    deliver(messages, options.report, document, output, sql,
            {{"dialect", dialect}, {"counts", jsonCounts(countsByClass(*document.container))}});
    return kDone;
}

}  // namespace

void addExportCommand(CLI::App& app, Session& session) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App& command = *app.add_subcommand("export", "write the SQL script that creates the database of a document");
    addDocument(command, options->document);
    command.add_option("-d,--dialect", options->dialect, "dialect of the script; the document's own when not given")
        ->type_name(kDialectType);
    command
        .add_option("-o,--output", options->output, "file, or folder for <document>.sql; - or none: standard output")
        ->type_name(kFileType);
    addSwitch(command, "--drop,!--no-drop", options->drop, "drop tables first, or do not, whatever the document says");
    addTextOptions(command, options->text, options->preferences);
    addTypesOption(command, options->types);
    addPartOptions(command, options->part);
    completeDocumentCommand(command, session, options, exportDocument);
}

}  // namespace vellicor::cli
