// vellicor/dialects/sql_dialect_manager.cpp — registered dialects and export plug-ins together.
#include "vellicor/dialects/sql_dialect_manager.h"

#include "vellicor/platform/log.h"
#include "vellicor/plugins/plugin_call.h"
#include "vellicor/plugins/plugin_manager.h"

namespace vellicor {

namespace {

SQLPlugin* exportPlugin(std::string_view dialect) {
    return SQLPluginManager::sharedPluginManager().exportPluginForType(dialect);
}

}  // namespace

SQLDialectManager& SQLDialectManager::sharedDialectManager() {
    static SQLDialectManager manager;
    return manager;
}

std::shared_ptr<SQLExportDialect> SQLDialectManager::exporterForDialect(std::string_view name) const {
    return _dialectManager.getExporterWithName(name);
}

std::vector<std::string> SQLDialectManager::dialectList(bool displayableOnly) const {
    std::vector<std::string> names;
    for (const auto& dialect : _dialectManager.exporterList()) names.push_back(dialect->getName());
    for (std::string& type : SQLPluginManager::sharedPluginManager().supportedExportTypes(displayableOnly))
        names.push_back(std::move(type));
    return names;
}

void SQLDialectManager::updateDialectPopup(DialectPopup& popup, void* target, void* action,
                                           bool displayableOnly) const {
    popup.removeAllItems();
    if (target && action) {
        popup.setTarget(target);
        popup.setAction(action);
    }
    for (const std::string& name : dialectList(displayableOnly)) popup.addItemWithTitle(name);
}

std::string SQLDialectManager::exportFileTypeForDialect(std::string_view name) const {
    if (SQLPlugin* plugin = exportPlugin(name))
        if (auto extension = callPlugin([&] { return plugin->exportFileExtension(); })) return *extension;
    return _dialectManager.extensionForDialect(name);
}

std::string SQLDialectManager::validFileNameForDialect(std::string_view name, std::string_view existingFileName,
                                                       bool preDisplay, SQLContainer* forContainer) const {
    if (SQLPlugin* plugin = exportPlugin(name)) {
        auto valid =
            callPlugin([&] { return plugin->validFileNameFromName(existingFileName, preDisplay, forContainer); });
        if (valid) return *valid;
        log("export plugin ignores validFileNameFromName:");
        return std::string(existingFileName);
    }
    std::string fileName(existingFileName);
    if (!fileName.ends_with("-sql")) fileName += "-sql";
    return fileName;
}

}  // namespace vellicor
