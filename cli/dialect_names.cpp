// cli/dialect_names.cpp — names and aliases, looked up in the registry.
#include "cli/dialect_names.h"

#include <algorithm>
#include <optional>
#include <typeinfo>

#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/nearest_name.h"
#include "vellicor/dialects/sql_dialect_manager.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

constexpr std::string_view kGeneric = "generic";

struct Alias {
    std::string_view alias;
    std::string_view name;
};
constexpr Alias kAliases[] = {
    {"pg", "postgres"}, {"postgresql", "postgres"}, {"mssql", "SQLServer"}, {"sqlite3", "SQLite"}};

std::optional<std::string> findDialect(std::string_view name, const std::vector<std::string>& names) {
    const auto isNamed = [](std::string_view wanted) {
        return [wanted](std::string_view candidate) { return equalIgnoringCase(candidate, wanted); };
    };
    if (const auto found = std::ranges::find_if(names, isNamed(name)); found != names.end()) return *found;
    if (const auto* alias = std::ranges::find_if(kAliases, isNamed(name), &Alias::alias); alias != std::end(kAliases))
        return std::string(alias->name);
    return std::nullopt;
}

bool isRegistered(std::string_view dialect) {
    return std::ranges::any_of(DialectManager::getDialectManager().exporterList(),
                               [dialect](const auto& record) { return record->getName() == dialect; });
}

}  // namespace

std::vector<std::string> dialectNames() { return SQLDialectManager::sharedDialectManager().dialectList(false); }

std::string dialectNamed(std::string_view name) {
    const std::vector<std::string> names = dialectNames();
    if (auto found = findDialect(name, names)) return *found;
    std::vector<std::string> candidates = names;
    for (const Alias& alias : kAliases) candidates.emplace_back(alias.alias);
    throw Failure(kBadUse, text("there is no dialect '%@'%@; choose one of %@", name, suggestion(name, candidates),
                                joined(names, ", ")));
}

std::string dialectOf(const SQLContainer& document, Messages& messages) {
    const std::string own = document.documentInfo() ? document.documentInfo()->exportDialect() : std::string();
    if (own.empty()) return std::string(kGeneric);
    if (auto found = findDialect(own, dialectNames())) return *found;
    messages.warning(
        text("the document asks for a dialect '%@', which is not known; generic is used, choose another with -d", own));
    return std::string(kGeneric);
}

std::shared_ptr<SQLExportDialect> exporterOrNull(std::string_view dialect) {
    auto exporter = DialectManager::getDialectManager().getExporterWithName(dialect, true);
    // The registry answers its generic exporter for whatever it cannot serve.
    const SQLExportDialect& answer = *exporter;
    return isRegistered(dialect) || typeid(answer) != typeid(GenericSQLExporter) ? exporter : nullptr;
}

std::shared_ptr<SQLExportDialect> exporterFor(std::string_view dialect) {
    if (auto exporter = exporterOrNull(dialect)) return exporter;
    throw Failure(kFailed, text("the plug-in for %@ offers no exporter; choose another dialect with -d", dialect));
}

}  // namespace vellicor::cli
