// vellicor/plugins/plugin_loader.h — finding plug-in bundles, and loading the newest of each.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "vellicor/platform/bundle.h"
#include "vellicor/plugins/plugin.h"

namespace vellicor {

/// Finds bundles in the search paths, ranks those of one identifier by version and makes an instance of the highest.
/// Nothing that is wrong with a bundle stops it: the bundle costs one log line and is skipped.
class QVVersionedPluginLoader {
public:
    using Plugins = std::vector<std::shared_ptr<SQLPlugin>>;
    using BundlePtr = std::shared_ptr<const Bundle>;
    using Candidates = std::map<std::string, std::vector<BundlePtr>, std::less<>>;

    virtual ~QVVersionedPluginLoader() = default;
    /// Empties the lists and configures the search paths.
    void init();
    /// The program's plug-in folder, then that of each library folder.
    virtual void configureDirectoryPaths();
    [[nodiscard]] const std::vector<std::filesystem::path>& pluginDirectoryList() const { return _pluginDirectoryList; }
    void setPluginDirectoryList(std::vector<std::filesystem::path> folders) {
        _pluginDirectoryList = std::move(folders);
    }

    /// Searches all paths, loads the best of each identifier and reports what was loaded.
    void loadPlugins();
    /// Adds every bundle below the folder; nothing when it is missing. Bundles and symbolic links are not descended
    /// into, and a link to a bundle counts only when it stays below the folder.
    void findPluginsAtPath(const std::filesystem::path& path);
    /// Needs an identifier and a version that is text or a number; otherwise logs.
    void addBundleToMap(const BundlePtr& bundle);
    /// Versions compare as numbers when all of an identifier are numbers, otherwise as text ("1.2" is above "1.10");
    /// among equal ones the first that was found is loaded.
    void loadBestChoicePlugins();
    void loadPlugin(const BundlePtr& bundle);
    /// Makes the instance: a script plug-in's from the class "QVSQLJSPlugin", a compiled one's from its principal
    /// class, in its own code or registered by the application.
    void initPlugin(const BundlePtr& bundle);
    [[nodiscard]] static bool isJavascriptPlugin(const Bundle& bundle) {
        return isJavascriptPlugin(bundle.infoDictionary());
    }
    /// Initialises the instance and appends it to the list, unless it does not take part.
    void registerPluginFromInstance(const std::shared_ptr<SQLPlugin>& instance, const Value::Map& infoDictionary);
    /// Logs one line with the identifier and version of every plug-in.
    void reportLoadedPlugins() const;

    [[nodiscard]] const Plugins& pluginList() const { return _pluginList; }
    /// The bundles found, by identifier.
    [[nodiscard]] const Candidates& pluginMap() const { return _pluginMap; }

private:
    [[nodiscard]] static bool isJavascriptPlugin(const Value::Map& infoDictionary);

    std::vector<std::filesystem::path> _pluginDirectoryList;
    Plugins _pluginList;
    std::vector<std::string> _descriptions;  // what is reported of each plug-in of the list, in its order
    Candidates _pluginMap;
};

}  // namespace vellicor
