// cli/dialects_command.cpp — `vellicor dialects`: which dialects there are, and what they can do.
#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands.h"
#include "cli/dialect_names.h"
#include "cli/output.h"
#include "cli/result.h"
#include "cli/session.h"
#include "vellicor/dialects/dialect_manager.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

struct Capability {
    const char* key;    // in JSON
    const char* words;  // for people
    bool (*has)(GenericSQLExporter& exporter);
};
constexpr Capability kCapabilities[] = {
    {"views", "views", [](GenericSQLExporter& e) { return e.supportsViews(); }},
    {"checkConstraints", "check constraints", [](GenericSQLExporter& e) { return e.supportsCheckConstraints(); }},
    {"ifNotExists", "IF NOT EXISTS", [](GenericSQLExporter& e) { return e.supportsIfNotExists(); }},
    {"indexIfNotExists", "IF NOT EXISTS for indexes",
     [](GenericSQLExporter& e) { return e.supportsIfNotExistsSQLIndex(); }},
    {"indexPrefixSizes", "index prefix sizes", [](GenericSQLExporter& e) { return e.supportsIndexPrefixSize(); }},
    {"indexesAfterTables", "indexes after tables", [](GenericSQLExporter& e) { return e.supportsIndexPostLoad(); }},
    {"inlineAutoIncrement", "auto-increment in the column",
     [](GenericSQLExporter& e) { return e.supportsInlineAutoIncrement(); }},
    {"namedPrimaryKeys", "named primary keys", [](GenericSQLExporter& e) { return e.usePrimaryKeyConstraintName(); }},
    {"namedForeignKeys", "named foreign keys", [](GenericSQLExporter& e) { return e.addForeignKeyConstraintName(); }},
    {"globalIndexNames", "index names unique in the database",
     [](GenericSQLExporter& e) { return e.dialectRequiresGloballyUniqueIndexes(); }},
    {"alterIndexes", "altering indexes", [](GenericSQLExporter& e) { return e.supportsAlterSQLIndex(); }},
    {"alterConstraints", "altering constraints", [](GenericSQLExporter& e) { return e.supportsAlterSQLConstraint(); }},
    {"dropConstraints", "dropping constraints", [](GenericSQLExporter& e) { return e.supportsDropSQLConstraint(); }},
    {"updateViews", "replacing views", [](GenericSQLExporter& e) { return e.canUpdateViewWithStandardCommand(); }},
};

struct KnownDialect {
    std::string name;
    std::shared_ptr<SQLExportDialect> exporter;  // null for the type of a plug-in that has none
    std::vector<std::string> drivers;
    [[nodiscard]] std::string ownName() const { return exporter ? exporter->getName() : std::string(); }
    [[nodiscard]] GenericSQLExporter* generic() const { return as<GenericSQLExporter>(exporter.get()); }
};

std::vector<KnownDialect> allDialects() {
    std::vector<KnownDialect> dialects;
    const DialectManager::Records& records = DialectManager::getDialectManager().exporterList();
    for (const auto& record : records)
        dialects.push_back({record->getName(), record->getExporter(), record->driverClassPathList()});
    const std::vector<std::string> names = dialectNames();
    for (std::size_t plugin = records.size(); plugin < names.size(); ++plugin)
        dialects.push_back({names[plugin], exporterOrNull(names[plugin]), {}});
    return dialects;
}

std::string dialectText(const KnownDialect& dialect) {
    std::vector<std::string> capabilities;
    if (GenericSQLExporter* exporter = dialect.generic())
        for (const Capability& capability : kCapabilities)
            if (capability.has(*exporter)) capabilities.emplace_back(capability.words);
    std::vector<std::string> drivers = dialect.drivers;
    std::erase(drivers, "");
    return text("%@\n    own name      %@\n    drivers       %@\n    capabilities  %@\n", dialect.name,
                dialect.ownName(), drivers.empty() ? "none" : joined(drivers, ", "),
                capabilities.empty() ? "unknown" : joined(capabilities, ", "));
}

Value::Map dialectJson(const KnownDialect& dialect) {
    Value::Map capabilities;
    if (GenericSQLExporter* exporter = dialect.generic()) {
        for (const Capability& capability : kCapabilities)
            capabilities[capability.key] = Value::boolean(capability.has(*exporter));
        capabilities["reservedWords"] = Value::integer(static_cast<std::int64_t>(exporter->reservedWords().size()));
        capabilities["quotes"] =
            Value::List{exporter->getStartingQuoteIdentifierString(), exporter->getEndingQuoteIdentifierString()};
    }
    return {{"name", dialect.name},
            {"ownName", dialect.ownName()},
            {"drivers", Value::List(dialect.drivers.begin(), dialect.drivers.end())},
            {"displayable", Value::boolean(dialect.exporter && dialect.exporter->isDisplayable())},
            {"capabilities", std::move(capabilities)}};
}

ExitCode listDialects(const ReportOptions& report) {
    if (report.json) {
        Value::List list;
        for (const KnownDialect& dialect : allDialects()) list.push_back(dialectJson(dialect));
        writeJson({{"dialects", std::move(list)}});
    } else {
        std::string all;
        for (const KnownDialect& dialect : allDialects()) all += dialectText(dialect);
        Output::standard().write(all);
    }
    return kDone;
}

}  // namespace

void addDialectsCommand(CLI::App& app, Session& session) {
    auto report = std::make_shared<ReportOptions>();
    CLI::App& command =
        *app.add_subcommand("dialects", "list the dialects, their database drivers and what they can do");
    addJsonOption(command, *report);
    command.callback([report, &session] { session.choose(*report, [report] { return listDialects(*report); }); });
}

}  // namespace vellicor::cli
