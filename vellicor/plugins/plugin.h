// vellicor/plugins/plugin.h — what a plug-in may answer.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/platform/value.h"

namespace vellicor {

class QVVersionedPluginLoader;

/// An instance made from a plug-in bundle. Every operation is optional: null means that the plug-in does not answer it.
class SQLPlugin {
public:
    using Texts = std::vector<std::string>;
    using Exporters = std::vector<std::shared_ptr<SQLExportDialect>>;

    virtual ~SQLPlugin() = default;
    /// Called once after loading. A plug-in that answers false does not take part and is dropped.
    virtual bool initPlugin(QVVersionedPluginLoader& /*loader*/) { return false; }
    [[nodiscard]] virtual std::optional<std::string> type() { return std::nullopt; }
    /// Descriptions of reports, each a map with a "name".
    [[nodiscard]] virtual std::optional<std::vector<Value::Map>> reportTypes() { return std::nullopt; }
    [[nodiscard]] virtual std::optional<Texts> supportedImportTypes() { return std::nullopt; }
    [[nodiscard]] virtual std::optional<Texts> supportedExportTypes() { return std::nullopt; }
    [[nodiscard]] virtual std::optional<bool> exportIsUserDisplayable() { return std::nullopt; }
    /// One exporter, or a list of them.
    [[nodiscard]] virtual std::optional<std::variant<std::shared_ptr<SQLExportDialect>, Exporters>> exporter() {
        return std::nullopt;
    }
    [[nodiscard]] virtual std::optional<bool> canImportData(std::string_view /*data*/) { return std::nullopt; }
    [[nodiscard]] virtual std::optional<bool> canImportType(std::string_view /*type*/) { return std::nullopt; }
    [[nodiscard]] virtual std::optional<bool> canExportType(std::string_view /*type*/) { return std::nullopt; }
    [[nodiscard]] virtual std::optional<std::string> exportFileExtension() { return std::nullopt; }
    [[nodiscard]] virtual std::optional<std::string> validFileNameFromName(std::string_view /*name*/,
                                                                           bool /*preDisplay*/,
                                                                           SQLContainer* /*forContainer*/) {
        return std::nullopt;
    }
    /// A script plug-in is given its bundle's path.
    virtual void setBundle(std::string_view /*bundlePath*/) {}
};

}  // namespace vellicor
