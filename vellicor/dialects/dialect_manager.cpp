// vellicor/dialects/dialect_manager.cpp — the registry of dialects.
#include "vellicor/dialects/dialect_manager.h"

#include <algorithm>
#include <unordered_set>
#include <variant>

#include "vellicor/dialects/built_in_dialects.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/exporter_source.h"
#include "vellicor/platform/files.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/property_list.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/plugins/plugin_call.h"
#include "vellicor/plugins/plugin_manager.h"

namespace vellicor {

namespace {

/// Null, and logged, when the class makes no exporter.
std::shared_ptr<ExportDialect> record(std::string_view name, std::span<const std::string_view> drivers,
                                      ExportDialect::ExporterClass exporterClass) {
    auto dialect = ExportDialect::initWithName(name);
    for (std::string_view driver : drivers) dialect->addDriverClassPath(driver);
    if (dialect->setExporterClass(exporterClass)) return dialect;
    log(text("dialect %@ is not registered, its class makes no exporter", name));
    return nullptr;
}

std::shared_ptr<ExportDialect> record(const BuiltInDialect& builtIn) {
    auto dialect = record(builtIn.name, builtIn.drivers, builtIn.exporter);
    if (dialect) dialect->setRunnableExporterClass(builtIn.runnableExporter);
    return dialect;
}

/// What an export plug-in offers for a type: its exporter, or the first of a list; null when it has none.
std::shared_ptr<SQLExportDialect> exporterFromPlugin(std::string_view type) {
    SQLPlugin* plugin = SQLPluginManager::sharedPluginManager().exportPluginForType(type);
    if (!plugin) return nullptr;
    auto answer = callPlugin([&] { return plugin->exporter(); });
    if (!answer) return nullptr;
    if (auto* one = std::get_if<std::shared_ptr<SQLExportDialect>>(&*answer)) answer = SQLPlugin::Exporters{*one};
    const auto& list = std::get<SQLPlugin::Exporters>(*answer);
    const auto first = std::ranges::find_if(list, [](const auto& exporter) { return exporter != nullptr; });
    if (first != list.end()) return *first;
    log(text("export plugin for %@ answers no exporter", type));
    return nullptr;
}

}  // namespace

DialectManager::DialectManager() { addDialect(record(builtInDialects().front())); }

void DialectManager::addDialect(std::shared_ptr<ExportDialect> dialect) {
    if (dialect) _exporterList.push_back(std::move(dialect));
}

DialectManager& DialectManager::getDialectManager() {
    static DialectManager& manager = *[] {
        auto* made = new DialectManager;  // lives as long as the process
        for (const BuiltInDialect& dialect : builtInDialects().subspan(1)) made->addDialect(record(dialect));
        return made;
    }();
    return manager;
}

void DialectManager::registerDialectExporterWithName(std::string_view name, std::string_view driver,
                                                     ExporterClass exporterClass) {
    getDialectManager().addDialect(record(name, {&driver, 1}, exporterClass));
}

void DialectManager::addDriver(std::string_view driver, std::string_view forExporterName) {
    const Records& records = getDialectManager()._exporterList;
    auto found =
        std::ranges::find_if(records, [&](const auto& dialect) { return dialect->getName() == forExporterName; });
    if (found != records.end()) (*found)->addDriverClassPath(driver);
}

const ExportDialect* DialectManager::recordNamed(std::string_view name) const {
    const std::string wanted = lowercased(name);
    auto found = std::ranges::find_if(_exporterList,
                                      [&](const auto& dialect) { return lowercased(dialect->getName()) == wanted; });
    return found == _exporterList.end() ? nullptr : found->get();
}

const ExportDialect* DialectManager::recordForDriver(std::string_view driver) const {
    auto found = std::ranges::find_if(_exporterList,
                                      [&](const auto& dialect) { return dialect->exporterSupportsDriver(driver); });
    return found == _exporterList.end() ? nullptr : found->get();
}

std::shared_ptr<SQLExportDialect> DialectManager::getExporterWithName(std::string_view name) const {
    return getExporterWithName(name, false);
}

std::shared_ptr<SQLExportDialect> DialectManager::getExporterWithName(std::string_view name,
                                                                      bool includePlugins) const {
    if (const ExportDialect* dialect = recordNamed(name)) return dialect->getExporter();
    if (includePlugins)
        if (auto exporter = exporterFromPlugin(name)) return exporter;
    return getExporter();
}

std::shared_ptr<SQLExportDialect> DialectManager::getExporterFromUrl(std::string_view driver) const {
    const ExportDialect* dialect = recordForDriver(driver);
    return dialect ? dialect->getExporter() : getExporter();
}

std::string DialectManager::getIdentifierFromURL(std::string_view driver) const {
    const ExportDialect* dialect = recordForDriver(driver);
    return dialect ? dialect->getName() : "generic";
}

std::string DialectManager::extensionForDialect(std::string_view name) const { return name == "Rails" ? "rb" : "sql"; }

void DialectManager::loadDriverListFromPath(const std::filesystem::path& file) {
    // Kept: an entry would be added if the exporter of its name were the very object that is the generic exporter, and
    // every look-up makes a new one.
    std::string error;
    if (const auto bytes = readFile(file, error)) static_cast<void>(valueFromPropertyList(*bytes, error));
}

// What the model asks for (see `model/exporter_source.h`).

std::shared_ptr<SQLExportDialect> exporterNamed(std::string_view dialect) {
    return DialectManager::getDialectManager().getExporterWithName(dialect);
}

std::shared_ptr<TypeSizes> typeSizesOfDialect(std::string_view dialect) { return exporterNamed(dialect); }

std::shared_ptr<SQLExportDialect> exporterNamedWithPlugins(std::string_view dialect) {
    return DialectManager::getDialectManager().getExporterWithName(dialect, true);
}

bool isExporterClass(std::string_view className) {
    static const auto* const classes = [] {
        auto* all = new std::unordered_set<std::string_view>{"SQLExportDialect", "SybaseStyleExporter"};
        for (const BuiltInDialect& dialect : builtInDialects()) all->insert(dialect.exporter()->className());
        return all;
    }();
    return classes->contains(className);
}

std::shared_ptr<SQLExportDialect> defaultExporter() { return DialectManager::getDialectManager().getExporter(); }

}  // namespace vellicor
