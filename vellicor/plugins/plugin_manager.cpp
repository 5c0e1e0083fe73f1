// vellicor/plugins/plugin_manager.cpp — the shared manager, and the questions it puts to all plug-ins.
#include "vellicor/plugins/plugin_manager.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <mutex>

#include "vellicor/platform/files.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/plugins/class_registry.h"
#include "vellicor/plugins/plugin_call.h"

namespace vellicor {

namespace {

/// The answers of all plug-ins that have one, one behind the other.
template <class List, class Ask>
List collected(const SQLPluginManager::Plugins& list, Ask ask) {
    const SQLPluginManager::Plugins plugins = list;  // a plug-in that is asked may bring another one
    List all;
    for (const auto& plugin : plugins) {
        if (std::optional<List> own = callPlugin([&] { return ask(*plugin); }))
            std::move(own->begin(), own->end(), std::back_inserter(all));
    }
    return all;
}

bool isHidden(SQLPlugin& plugin, bool displayableOnly) {
    return displayableOnly && !plugin.exportIsUserDisplayable().value_or(true);
}

}  // namespace

SQLPluginManager::~SQLPluginManager() = default;

SQLPluginManager& SQLPluginManager::sharedPluginManager() {
    // Loaded only once, and visible to the plug-ins that ask for the manager while they are initialised.
    static std::atomic<SQLPluginManager*> loaded{nullptr};
    if (SQLPluginManager* manager = loaded.load(std::memory_order_acquire)) return *manager;
    static auto& mutex = *new std::recursive_mutex;
    static SQLPluginManager* made = nullptr;  // lives as long as the process
    std::scoped_lock lock(mutex);
    if (!made) {
        auto manager = ClassRegistry::makeManager(classNames::applicationPluginManager);
        if (!manager) manager = std::make_unique<SQLPluginManager>();
        made = manager.release();
        made->loadPlugins();
        loaded.store(made, std::memory_order_release);
    }
    return *made;
}

void SQLPluginManager::loadPlugins() {
    _pluginManager = std::make_unique<QVVersionedPluginLoader>();
    _pluginManager->init();
    _pluginManager->loadPlugins();
    if (hasBuiltInPlugins()) loadBuiltInPlugins();
    loadPluginInspectors();
}

const SQLPluginManager::Plugins& SQLPluginManager::pluginList() const {
    static const Plugins none;
    return _pluginManager ? _pluginManager->pluginList() : none;
}

void SQLPluginManager::pluginDebug() const {
    for (const auto& plugin : Plugins(pluginList())) {
        if (const auto type = callPlugin([&] { return plugin->type(); })) log(text("Plugin Type: %@", *type));
    }
}

std::vector<Value::Map> SQLPluginManager::reportTypes() const {
    return collected<std::vector<Value::Map>>(pluginList(), [](SQLPlugin& plugin) { return plugin.reportTypes(); });
}

SQLPlugin::Texts SQLPluginManager::supportedImportTypes() const {
    return collected<SQLPlugin::Texts>(pluginList(), [](SQLPlugin& plugin) { return plugin.supportedImportTypes(); });
}

SQLPlugin::Texts SQLPluginManager::supportedExportTypes(bool displayableOnly) const {
    return collected<SQLPlugin::Texts>(pluginList(), [=](SQLPlugin& plugin) -> std::optional<SQLPlugin::Texts> {
        if (isHidden(plugin, displayableOnly)) return std::nullopt;
        return plugin.supportedExportTypes();
    });
}

SQLPlugin::Exporters SQLPluginManager::availableDialectExporters(bool displayableOnly) const {
    using Exporters = SQLPlugin::Exporters;
    return collected<Exporters>(pluginList(), [=](SQLPlugin& plugin) -> std::optional<Exporters> {
        if (isHidden(plugin, displayableOnly) || !plugin.supportedExportTypes()) return std::nullopt;
        auto exporter = plugin.exporter();
        if (!exporter) return std::nullopt;
        if (auto* list = std::get_if<Exporters>(&*exporter)) return std::move(*list);
        return Exporters{std::get<std::shared_ptr<SQLExportDialect>>(*exporter)};
    });
}

bool SQLPluginManager::canExportDialect(std::string_view name) const {
    const SQLPlugin::Texts types = supportedExportTypes();
    if (std::ranges::find(types, name) != types.end()) return true;
    return std::ranges::any_of(reportTypes(), [&](const Value::Map& report) {
        auto found = report.find("name");
        return found != report.end() && found->second.asText() && *found->second.asText() == name;
    });
}

SQLPlugin* SQLPluginManager::pluginForSelector(std::string_view argument, const Question& selector) const {
    for (const auto& plugin : Plugins(pluginList())) {
        if (callPlugin([&] { return selector(*plugin, argument); }).value_or(false)) return plugin.get();
    }
    return nullptr;
}

SQLPlugin* SQLPluginManager::importPluginForData(std::string_view data) const {
    return pluginForSelector(data, &SQLPlugin::canImportData);
}

SQLPlugin* SQLPluginManager::importPluginForType(std::string_view type) const {
    return pluginForSelector(type, &SQLPlugin::canImportType);
}

SQLPlugin* SQLPluginManager::exportPluginForType(std::string_view type) const {
    return pluginForSelector(type, &SQLPlugin::canExportType);
}

SQLPlugin* SQLPluginManager::importPluginForURL(const std::filesystem::path& file) const {
    std::string extension = file.extension().string();
    if (!extension.empty()) extension.erase(0, 1);
    if (lowercased(extension) != "sql") {
        if (SQLPlugin* plugin = importPluginForType(extension)) return plugin;
    }
    std::string error;
    const auto data = readFile(file, error);
    return data ? importPluginForData(*data) : nullptr;
}

void SQLPluginManager::registerPluginFromInstance(const std::shared_ptr<SQLPlugin>& instance,
                                                  const Value::Map& infoDictionary) {
    if (_pluginManager) _pluginManager->registerPluginFromInstance(instance, infoDictionary);
}

}  // namespace vellicor
