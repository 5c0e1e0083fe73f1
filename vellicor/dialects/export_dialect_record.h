// vellicor/dialects/export_dialect_record.h — one registered dialect.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/model/export_dialect.h"

namespace vellicor {

/// A dialect's name, its exporter's prototype and the database drivers that belong to it.
class ExportDialect {
public:
    /// Makes one exporter of a class.
    using ExporterClass = std::shared_ptr<SQLExportDialect> (*)();

    static std::shared_ptr<ExportDialect> dialectWithName(std::string_view name) { return initWithName(name); }
    static std::shared_ptr<ExportDialect> initWithName(std::string_view name);
    /// The driver is kept as it is written. Without an exporter it logs, and a generic one stands in.
    static std::shared_ptr<ExportDialect> dialectWithName(std::string_view name, std::string_view driver,
                                                          std::shared_ptr<SQLExportDialect> exporter) {
        return initWithName(name, driver, std::move(exporter));
    }
    static std::shared_ptr<ExportDialect> initWithName(std::string_view name, std::string_view driver,
                                                       std::shared_ptr<SQLExportDialect> exporter);

    /// Kept in lower case.
    void addDriverClassPath(std::string_view driver);
    [[nodiscard]] const std::vector<std::string>& driverClassPathList() const { return _driverClassPathList; }
    [[nodiscard]] const std::string& name() const { return _name; }
    [[nodiscard]] const std::string& getName() const { return _name; }
    /// The first driver; null when there is none.
    [[nodiscard]] OptionalText driver() const;
    [[nodiscard]] OptionalText getUrl() const { return driver(); }
    [[nodiscard]] bool exporterSupportsDriver(std::string_view driver) const;
    /// The prototype; null until set.
    [[nodiscard]] const std::shared_ptr<SQLExportDialect>& exporter() const { return _exporter; }
    /// A prototype whose class is known by its `newInstance` only.
    void setExporter(std::shared_ptr<SQLExportDialect> exporter);
    /// Makes the prototype. False, and nothing changes, when the class makes none.
    bool setExporterClass(ExporterClass exporterClass);
    /// The class of scripts that the dialect's own server accepts.
    void setRunnableExporterClass(ExporterClass exporterClass) { _runnableExporterClass = exporterClass; }
    /// A fresh exporter at every call: of the prototype's class, or of the runnable one while the preference asks for
    /// scripts that run. Where there is none it logs, and answers a generic one.
    [[nodiscard]] std::shared_ptr<SQLExportDialect> getExporter() const;
    [[nodiscard]] std::string description() const;

private:
    std::string _name;
    std::shared_ptr<SQLExportDialect> _exporter;     // null until set
    ExporterClass _exporterClass = nullptr;          // null: the prototype makes its like
    ExporterClass _runnableExporterClass = nullptr;  // null for a dialect with one form only
    std::vector<std::string> _driverClassPathList;
};

}  // namespace vellicor
