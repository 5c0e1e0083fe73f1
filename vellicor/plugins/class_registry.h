// vellicor/plugins/class_registry.h — classes that an application provides and that are made by name at run time.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

namespace vellicor {

class SQLPlugin;
class SQLPluginManager;

namespace classNames {
/// Runs plug-ins written as scripts. Absent unless the application brings one.
inline constexpr const char* scriptPlugin = "QVSQLJSPlugin";
/// The shared plug-in manager's class. Absent unless the application brings one.
inline constexpr const char* applicationPluginManager = "SQLApplicationPluginManager";
}  // namespace classNames

/// Process-wide. Register before the first use of the plug-in manager; any thread may do so.
class ClassRegistry {
public:
    using PluginClass = std::function<std::shared_ptr<SQLPlugin>()>;
    using ManagerClass = std::function<std::unique_ptr<SQLPluginManager>()>;

    /// Replaces a class of the same name; an empty function takes it away.
    static void registerPluginClass(std::string_view name, PluginClass make);
    static void registerManagerClass(std::string_view name, ManagerClass make);
    /// A fresh instance; null when no class has that name.
    [[nodiscard]] static std::shared_ptr<SQLPlugin> makePlugin(std::string_view name);
    [[nodiscard]] static std::unique_ptr<SQLPluginManager> makeManager(std::string_view name);
};

}  // namespace vellicor
