// cli/export_command.cpp — `vellicor export`: the create script of a document.
#include <CLI/CLI.hpp>
#include <array>
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
#include "cli/type_translation_options.h"
#include "vellicor/dialects/sql_dialect_manager.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"

namespace vellicor::cli {

namespace {

struct ExportOptions {
    std::string document;
    std::string dialect;
    std::string output;
    std::optional<bool> drop;
    std::optional<bool> header;
    bool ifNotExists = false;
    bool honorIgnore = false;
    std::string sort;
    std::string quote;
    TypeTranslationOptions types;
    PartOptions part;
    PreferenceOptions preferences;
    ReportOptions report;
};

/// Which names each way of quoting puts in quotes.
struct QuotingMode {
    const char* name;
    bool all;
    bool reserved;
    bool spaces;
    bool invalid;
};
constexpr std::array kQuotingModes{
    QuotingMode{"always", true, false, false, false}, QuotingMode{"reserved", false, true, false, false},
    QuotingMode{"spaces", false, false, true, false}, QuotingMode{"needed", false, true, true, true},
    QuotingMode{"never", false, false, false, false},
};
constexpr std::array kSortOrders{"document", "name"};  // by the value of the preference

std::vector<std::string> quotingModeNames() {
    std::vector<std::string> names;
    for (const QuotingMode& mode : kQuotingModes) names.emplace_back(mode.name);
    return names;
}

/// Flags that have a preference of their own win over every other way to set it.
void applyFlags(const ExportOptions& options) {
    Preferences& preferences = Preferences::shared();
    if (options.header) preferences.setBool(*options.header, prefs::includeTitleHeaderInExport);
    if (options.ifNotExists) preferences.setBool(true, prefs::useIfNotExistsOnTableExport);
    if (options.honorIgnore) preferences.setBool(true, prefs::canIgnoreObjectsOnExport);
    for (std::size_t order = 0; order < kSortOrders.size(); ++order)
        if (options.sort == kSortOrders[order])
            preferences.setObject(Value::integer(static_cast<std::int64_t>(order)), prefs::exportObjectSortOrder);
    for (const QuotingMode& mode : kQuotingModes) {
        if (options.quote != mode.name) continue;
        preferences.setBool(mode.all, prefs::quoteIdentifiersOnExport);
        preferences.setBool(mode.reserved, prefs::quoteReservedWords);
        preferences.setBool(mode.spaces, prefs::autoQuoteIdentifiersWithWhitespace);
        preferences.setBool(mode.invalid, prefs::autoQuoteIdentifiersWithInvalidCharacters);
    }
}

/// A flag with an opposite; null when neither is given.
void addSwitch(CLI::App& command, const char* names, std::optional<bool>& value, const char* description) {
    command.add_flag_function(
        names, [&value](std::int64_t count) { value = count > 0; }, description);
}

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
    applyFlags(options);
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
    addSwitch(command, "--header,!--no-header", options->header, "begin with a title line, or do not");
    command.add_flag("--if-not-exists", options->ifNotExists,
                     "create only what does not exist, where the dialect can say so");
    command.add_option("--sort", options->sort, "order of the objects")
        ->check(CLI::IsMember(std::vector<std::string>(kSortOrders.begin(), kSortOrders.end())));
    command.add_option("--quote", options->quote, "which names are put in quotes")
        ->check(CLI::IsMember(quotingModeNames()));
    command.add_flag("--honor-ignore", options->honorIgnore, "leave out what the document marks as not to be exported");
    command.add_flag("--classic", options->preferences.classic,
                     "the classic text, even where the database would refuse it");
    addTypesOption(command, options->types);
    addPartOptions(command, options->part);
    completeDocumentCommand(command, session, options, exportDocument);
}

}  // namespace vellicor::cli
