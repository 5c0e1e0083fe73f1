// cli/dialects_command.cpp — `vellicor dialects`: which dialects there are, and what they can do.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <memory>
#include <span>

#include "cli/commands.h"
#include "cli/dialect_names.h"
#include "cli/failure.h"
#include "cli/output.h"
#include "cli/result.h"
#include "cli/session.h"
#include "vellicor/dialects/dialect_manager.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/types/type_translation.h"

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

struct DialectsOptions {
    bool types = false;
    std::string dialect;
    ReportOptions report;
};

std::vector<TypePair> pairsOf(const DialectsOptions& options) {
    if (options.dialect.empty()) return typePairs();
    const std::string name = dialectNamed(options.dialect);
    const auto dialect = typeDialectNamed(name);
    if (!dialect) throw Failure(kBadUse, text("nothing is known of the types of %@", name));
    return typePairs(dialect);
}

ExitCode listTypes(const DialectsOptions& options) {
    const std::span<const std::string_view> names = typeDialectNames();
    const auto nameOf = [&](TypeDialect dialect) { return std::string(names[static_cast<std::size_t>(dialect)]); };
    const std::vector<TypePair> pairs = pairsOf(options);
    if (options.report.json) {
        Value::List list;
        for (const TypePair& pair : pairs)
            list.push_back(Value::Map{{"from", nameOf(pair.from)},
                                      {"type", pair.type},
                                      {"family", std::string(typeFamilyName(pair.family))},
                                      {"to", nameOf(pair.to)},
                                      {"translation", pair.translation.text},
                                      {"grade", std::string(typeGradeName(pair.translation.grade))},
                                      {"reason", pair.translation.reason}});
        writeJson({{"types", std::move(list)}});
        return kDone;
    }
    std::vector<std::array<std::string, 6>> lines;
    std::array<std::size_t, 6> widths{};
    for (const TypePair& pair : pairs) {
        lines.push_back({nameOf(pair.from), pair.type, nameOf(pair.to), pair.translation.text,
                         std::string(typeGradeName(pair.translation.grade)), pair.translation.reason});
        for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], lines.back()[i].size());
    }
    std::string all;
    for (const auto& line : lines) {
        std::string row;
        for (std::size_t i = 0; i < line.size(); ++i) row += line[i] + std::string(widths[i] - line[i].size() + 2, ' ');
        all += std::string(row, 0, row.find_last_not_of(' ') + 1) + "\n";
    }
    Output::standard().write(all);
    return kDone;
}

ExitCode listDialects(const DialectsOptions& options) {
    const ReportOptions& report = options.report;
    if (options.types) return listTypes(options);
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
    auto options = std::make_shared<DialectsOptions>();
    CLI::App& command =
        *app.add_subcommand("dialects", "list the dialects, their database drivers and what they can do");
    CLI::Option* types = command.add_flag("--types", options->types,
                                          "what becomes of each type in the other dialects: exact, widening or lossy");
    command.add_option("-d,--dialect", options->dialect, "the types of this dialect only")
        ->type_name(kDialectType)
        ->needs(types);
    addJsonOption(command, options->report);
    command.callback(
        [options, &session] { session.choose(options->report, [options] { return listDialects(*options); }); });
}

}  // namespace vellicor::cli
