// examples/plugin/standard_sql_plugin.cpp — the principal class of the plug-in: what it offers to the application.
#include <optional>
#include <string>
#include <string_view>

#include "standard_sql_exporter.h"
#include "vellicor/export/runnable/runnable_exporter.h"
#include "vellicor/platform/text.h"
#include "vellicor/plugins/plugin_entry.h"

namespace example {

class StandardSQLPlugin final : public vellicor::SQLPlugin {
public:
    /// True: this plug-in takes part.
    bool initPlugin(vellicor::QVVersionedPluginLoader&) override { return true; }
    [[nodiscard]] std::optional<std::string> type() override { return "export"; }
    /// Names that lists of dialects show behind those of the library.
    [[nodiscard]] std::optional<Texts> supportedExportTypes() override { return Texts{kName}; }
    [[nodiscard]] std::optional<bool> exportIsUserDisplayable() override { return true; }
    [[nodiscard]] std::optional<bool> canExportType(std::string_view type) override {
        return vellicor::equalIgnoringCase(type, kName);
    }
    /// A fresh exporter at every call: an exporter belongs to one thread and one run. It writes classic text or scripts
    /// that run, whichever the program prefers.
    [[nodiscard]] std::optional<std::variant<std::shared_ptr<vellicor::SQLExportDialect>, Exporters>> exporter()
        override {
        return vellicor::exporterInWantedForm<StandardSQLExporter>();
    }
    [[nodiscard]] std::optional<std::string> exportFileExtension() override { return "sql"; }
    [[nodiscard]] std::optional<std::string> validFileNameFromName(std::string_view name, bool /*preDisplay*/,
                                                                   vellicor::SQLContainer* /*forContainer*/) override {
        return std::string(name.ends_with(kSuffix) ? name : std::string(name) + kSuffix);
    }

private:
    static constexpr const char* kName = "Standard SQL";
    static constexpr const char* kSuffix = "-standard-sql";
};

VELLICOR_PLUGIN(StandardSQLPlugin)

}  // namespace example
