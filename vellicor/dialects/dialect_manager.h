// vellicor/dialects/dialect_manager.h — the registry of dialects.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/dialects/export_dialect_record.h"

namespace vellicor {

/// The process-wide list of dialects. It is filled when it is made and read without locks afterwards; registering while
/// another thread looks something up is not allowed. The first record that fits answers a look-up.
class DialectManager {
public:
    using Records = std::vector<std::shared_ptr<ExportDialect>>;
    using ExporterClass = ExportDialect::ExporterClass;

    /// The shared registry; its creation is synchronised.
    static DialectManager& getDialectManager();
    /// Appends a dialect to the shared registry, whether or not the name is taken. Logs and skips a class that makes no
    /// exporter.
    static void registerDialectExporterWithName(std::string_view name, std::string_view driver,
                                                ExporterClass exporterClass);
    /// Adds a driver to the first dialect of exactly that name; nothing when there is none.
    static void addDriver(std::string_view driver, std::string_view forExporterName);

    /// A registry with the generic dialect only.
    DialectManager();
    /// Null is ignored.
    void addDialect(std::shared_ptr<ExportDialect> dialect);
    [[nodiscard]] const Records& exporterList() const { return _exporterList; }

    /// A fresh exporter; names compare without regard to case, and an unknown one gets the generic exporter.
    [[nodiscard]] std::shared_ptr<SQLExportDialect> getExporterWithName(std::string_view name) const;
    /// With the flag, export plug-ins are asked for a name that no dialect has; one that answers no exporter is logged.
    [[nodiscard]] std::shared_ptr<SQLExportDialect> getExporterWithName(std::string_view name,
                                                                        bool includePlugins) const;
    [[nodiscard]] std::shared_ptr<SQLExportDialect> getExporter() const { return getExporterWithName("generic"); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> getExporter(std::string_view name) const {
        return getExporterWithName(name);
    }
    /// By database driver; the generic exporter for an unknown one.
    [[nodiscard]] std::shared_ptr<SQLExportDialect> getExporterFromUrl(std::string_view driver) const;
    /// The dialect's name by database driver; "generic" for an unknown one.
    [[nodiscard]] std::string getIdentifierFromURL(std::string_view driver) const;
    /// "rb" for "Rails", otherwise "sql".
    [[nodiscard]] std::string extensionForDialect(std::string_view name) const;
    /// Kept: reads the file and adds nothing, since two fresh exporters are never the same object.
    void loadDriverListFromPath(const std::filesystem::path& file);

private:
    [[nodiscard]] const ExportDialect* recordNamed(std::string_view name) const;
    [[nodiscard]] const ExportDialect* recordForDriver(std::string_view driver) const;

    Records _exporterList;
    std::string _currentDialectName = "generic";  // no look-up reads it
};

}  // namespace vellicor
