// vellicor/plugins/plugin_manager.h — the loaded plug-ins, and what they can do together.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/plugins/plugin.h"
#include "vellicor/plugins/plugin_loader.h"

namespace vellicor {

/// Owns the loader. Plug-ins are loaded once, when the shared manager is first asked for, and never unloaded; the lists
/// are read without locks afterwards. An application may register a subclass under the name
/// "SQLApplicationPluginManager" (see `class_registry.h`).
class SQLPluginManager {
public:
    using Plugins = std::vector<std::shared_ptr<SQLPlugin>>;

    virtual ~SQLPluginManager();
    static SQLPluginManager& sharedPluginManager();

    void loadPlugins();
    [[nodiscard]] const Plugins& pluginList() const;
    /// Logs the type of each plug-in that has one.
    void pluginDebug() const;
    [[nodiscard]] std::vector<Value::Map> reportTypes() const;
    [[nodiscard]] SQLPlugin::Texts supportedImportTypes() const;
    [[nodiscard]] SQLPlugin::Texts supportedExportTypes() const { return supportedExportTypes(false); }
    /// In plug-in order; with the flag, without plug-ins that say they are not for users.
    [[nodiscard]] SQLPlugin::Texts supportedExportTypes(bool displayableOnly) const;
    [[nodiscard]] SQLPlugin::Exporters availableDialectExporters(bool displayableOnly) const;
    /// Among the export types or the names of reports.
    [[nodiscard]] bool canExportDialect(std::string_view name) const;
    /// The first plug-in whose answer for the argument is true; null when none.
    using Question = std::function<std::optional<bool>(SQLPlugin&, std::string_view)>;
    [[nodiscard]] SQLPlugin* pluginForSelector(std::string_view argument, const Question& selector) const;
    [[nodiscard]] SQLPlugin* importPluginForData(std::string_view data) const;
    [[nodiscard]] SQLPlugin* importPluginForType(std::string_view type) const;
    [[nodiscard]] SQLPlugin* exportPluginForType(std::string_view type) const;
    [[nodiscard]] SQLPlugin* importPluginForURL(const std::filesystem::path& file) const;
    void registerPluginFromInstance(const std::shared_ptr<SQLPlugin>& instance, const Value::Map& infoDictionary);

    // --- for an application's subclass
    /// False leaves `loadBuiltInPlugins` out.
    [[nodiscard]] virtual bool hasBuiltInPlugins() const { return true; }
    virtual void loadBuiltInPlugins() {}
    virtual void loadSQLitePlugin() {}
    virtual void loadPluginInspectors() {}
    [[nodiscard]] virtual void* currentDocument() const { return nullptr; }
    [[nodiscard]] virtual void* exportMenu() const { return nullptr; }
    [[nodiscard]] virtual void* pluginMenu() const { return nullptr; }

private:
    std::unique_ptr<QVVersionedPluginLoader> _pluginManager;  // null until `loadPlugins`
};

}  // namespace vellicor
