// cli/alter_command.cpp — `vellicor alter`: the script from the database of one document to that of another.
#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands.h"
#include "cli/dialect_names.h"
#include "cli/document_command.h"
#include "cli/document_input.h"
#include "cli/failure.h"
#include "cli/match_option.h"
#include "cli/output.h"
#include "cli/preference_settings.h"
#include "cli/progress.h"
#include "cli/result.h"
#include "cli/text_options.h"
#include "cli/type_translation_options.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/migration/migration_plan.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

struct AlterOptions {
    std::string before;
    std::string after;
    std::string dialect;
    std::string output;
    std::string match;
    std::vector<std::string> allow;
    std::vector<std::string> upAndDown;
    bool rebuild = false;
    bool annotate = false;
    bool transaction = false;
    bool idempotent = false;
    bool check = false;
    bool down = false;
    TextOptions text;
    TypeTranslationOptions types;
    PreferenceOptions preferences;
    ReportOptions report;
};

bool allows(const AlterOptions& options, std::string_view what) {
    return std::ranges::find(options.allow, what) != options.allow.end();
}

std::string migrationLine(const MigrationStatement& statement) {
    const std::string reason = statement.reason.empty() ? "" : " (" + statement.reason + ")";
    return text("%@: %@%@", statement.about, wordsFor(statement.verdict), reason);
}
std::string migrationLine(const MigrationGap& gap) { return text("%@: not expressible: %@", gap.about, gap.reason); }

/// What stands between the plan and its script.
std::vector<std::string> objections(const MigrationPlan& plan, const AlterOptions& options) {
    std::vector<std::string> lines;
    if (!allows(options, "lossy"))
        for (const MigrationStatement& statement : plan.statements())
            if (statement.verdict == Verdict::LosesData) lines.push_back(migrationLine(statement));
    if (!allows(options, "incomplete"))
        for (const MigrationGap& gap : plan.gaps()) lines.push_back(migrationLine(gap));
    return lines;
}

Value::Map planFacts(const MigrationPlan& plan, const std::string& dialect) {
    Value::List statements;
    for (const MigrationStatement& statement : plan.statements())
        statements.emplace_back(Value::Map{{"sql", statement.sql},
                                           {"about", statement.about},
                                           {"verdict", wordsFor(statement.verdict)},
                                           {"reason", statement.reason}});
    Value::List gaps;
    for (const MigrationGap& gap : plan.gaps())
        gaps.emplace_back(Value::Map{{"about", gap.about}, {"reason", gap.reason}});
    Value::List byName;
    for (const std::string& line : plan.matchesByName()) byName.emplace_back(line);
    return {{"dialect", dialect},
            {"statements", std::move(statements)},
            {"notExpressible", std::move(gaps)},
            {"matchedByName", std::move(byName)}};
}

class Migration {
public:
    Migration(const AlterOptions& options, Messages& messages) : _options(options), _messages(messages) {
        const std::string asked = options.dialect.empty() ? std::string() : dialectNamed(options.dialect);
        _before = readDocument(options.before, messages);
        _after = readDocument(options.after, messages);
        _dialect = asked.empty() ? dialectOf(*_after.container, messages) : asked;
        const auto exporter = exporterFor(_dialect);
        _exporter = as<GenericSQLExporter>(exporter);
        if (!_exporter)
            throw Failure(kBadUse, text("the dialect %@ has no statements that alter a database", _dialect));
        for (const Document* document : {&_before, &_after}) prepare(*document);
    }

    [[nodiscard]] MigrationPlan plan(bool down) const {
        const Progress progress(_messages, "comparing " + _before.name + " and " + _after.name);
        SQLContainer& from = down ? *_after.container : *_before.container;
        SQLContainer& to = down ? *_before.container : *_after.container;
        return MigrationPlan(from, to, *_exporter, {.match = matchMode(_options.match), .rebuild = _options.rebuild});
    }
    [[nodiscard]] std::string script(const MigrationPlan& plan) const {
        return plan.script({.annotate = _options.annotate,
                            .transaction = _options.transaction,
                            .idempotent = _options.idempotent || _options.text.ifNotExists});
    }
    [[nodiscard]] const Document& after() const { return _after; }
    [[nodiscard]] const Document& before() const { return _before; }
    [[nodiscard]] const std::string& dialect() const { return _dialect; }

private:
    /// As `export` would write it.
    void prepare(const Document& document) {
        SQLContainer& container = *document.container;
        SQLDocumentInfo& info = *container.documentInfo();
        const std::string own = info.exportDialect();
        info.setDefaultExportDialect(_dialect);
        container.updateExportDialect();
        if (!_options.preferences.classic) translateTypes(container, own, _dialect, _options.types, _messages);
    }

    const AlterOptions& _options;
    Messages& _messages;
    Document _before;
    Document _after;
    std::string _dialect;
    std::shared_ptr<GenericSQLExporter> _exporter;
};

/// Under --check, and for what was refused.
ExitCode reportPlan(const MigrationPlan& plan, const Migration& migration, const AlterOptions& options, ExitCode code,
                    const std::vector<std::string>& lines) {
    if (options.report.json) {
        Value::Map facts = planFacts(plan, migration.dialect());
        Value::List list;
        for (const std::string& line : lines) list.emplace_back(line);
        facts.emplace("lines", std::move(list));
        writeJson(std::move(facts));
    } else {
        std::string words;
        for (const std::string& line : lines) words += line + "\n";
        Output::standard().write(words);
    }
    return code;
}

Output scriptOutput(const std::string& argument, const Migration& migration) {
    const Output output = Output::to(argument, migration.after().stem, "sql");
    if (output.replaces(migration.before()) || output.replaces(migration.after()))
        throw Failure(kBadUse, "the script would replace a document; choose another file");
    return output;
}

/// Says what the way back cannot bring back: what the way there takes.
void warnOfLosses(const MigrationPlan& up, Messages& messages) {
    for (const MigrationStatement& statement : up.statements())
        if (statement.verdict == Verdict::LosesData)
            messages.warning(text("the way back cannot restore the data of %@", statement.about));
}

void refuse(Messages& messages, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) messages.warning(line);
    messages.show();
    throw Failure(kRefused,
                  "the script would lose data or leave something undone; nothing was written (--allow "
                  "lossy,incomplete writes it all the same)");
}

ExitCode alterDatabase(const AlterOptions& options, Messages& messages) {
    applyPreferences(options.preferences, messages);
    applyTextOptions(options.text);
    const Migration migration(options, messages);
    const MigrationPlan plan = migration.plan(options.down);
    for (const std::string& line : plan.matchesByName()) messages.add(Level::Note, line);
    if (options.check) {
        std::vector<std::string> lines;
        for (const MigrationStatement& statement : plan.statements()) lines.push_back(migrationLine(statement));
        for (const MigrationGap& gap : plan.gaps()) lines.push_back(migrationLine(gap));
        return reportPlan(plan, migration, options, plan.isEmpty() ? kDone : kDifferences, lines);
    }
    std::vector<std::string> lines = objections(plan, options);
    if (!options.upAndDown.empty()) {
        const MigrationPlan back = migration.plan(true);
        for (std::string& line : objections(back, options)) lines.push_back("back: " + std::move(line));
        if (!lines.empty()) refuse(messages, lines);
        const Output up = scriptOutput(options.upAndDown.at(0), migration);
        const Output down = scriptOutput(options.upAndDown.at(1), migration);
        warnOfLosses(plan, messages);
        requireClean(messages, options.report);
        up.write(migration.script(plan));
        down.write(migration.script(back));
        return kDone;
    }
    if (!lines.empty()) refuse(messages, lines);
    if (options.down) warnOfLosses(migration.plan(false), messages);
    const std::string script = migration.script(plan);
    if (script.empty() && options.output.empty() && !options.report.json) return kDone;
    deliver(messages, options.report, migration.after(), scriptOutput(options.output, migration), script,
            planFacts(plan, migration.dialect()));
    return kDone;
}

}  // namespace

void addAlterCommand(CLI::App& app, Session& session) {
    auto options = std::make_shared<AlterOptions>();
    CLI::App& command =
        *app.add_subcommand("alter", "write the script that turns the database of one document into that of another");
    addDocument(command, options->before, "OLD", "the document that the database was created from");
    addDocument(command, options->after, "NEW", "the document that it shall be like");
    command.add_option("-d,--dialect", options->dialect, "dialect of the script; that of NEW when not given")
        ->type_name(kDialectType);
    command.add_option("-o,--output", options->output, "file, or folder for <NEW>.sql; - or none: standard output")
        ->type_name(kFileType);
    addMatchOption(command, options->match);
    command.add_flag("--rebuild", options->rebuild,
                     "make new tables in the place of those that cannot change (SQLite)");
    command.add_option("--allow", options->allow, "write scripts that lose data, or that leave something undone")
        ->delimiter(',')
        ->check(CLI::IsMember({"lossy", "incomplete"}));
    command.add_flag("--annotate", options->annotate, "above each statement, what it does to the data");
    auto* check = command.add_flag("--check", options->check, "only say what would be done; exit status 2 if anything");
    auto* down = command.add_flag("--down", options->down, "the way back, from NEW to OLD");
    command.add_option("--up-and-down", options->upAndDown, "two files: the way there and the way back")
        ->expected(2)
        ->type_name(kFileType)
        ->excludes(down)
        ->excludes(check);
    command.add_flag("--transaction", options->transaction, "one transaction around all, where the server can undo it");
    command.add_flag("--idempotent", options->idempotent, "IF EXISTS and the like, where the dialect has the words");
    addTextOptions(command, options->text, options->preferences);
    addTypesOption(command, options->types);
    completeDocumentCommand(command, session, options, alterDatabase);
}

}  // namespace vellicor::cli
