// vellicor/dialects/export_dialect_record.cpp — one registered dialect.
#include "vellicor/dialects/export_dialect_record.h"

#include <algorithm>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/export/runnable/runnable_dialect.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::shared_ptr<SQLExportDialect> exporterInPlaceOfNone() {
    log(text("SQLExporter requested (%@) not available", OptionalText()));  // Kept: never names the dialect
    return GenericSQLExporter::exporter();
}

}  // namespace

std::shared_ptr<ExportDialect> ExportDialect::initWithName(std::string_view name) {
    auto dialect = std::make_shared<ExportDialect>();
    dialect->_name = name;
    return dialect;
}

std::shared_ptr<ExportDialect> ExportDialect::initWithName(std::string_view name, std::string_view driver,
                                                           std::shared_ptr<SQLExportDialect> exporter) {
    auto dialect = initWithName(name);
    dialect->_driverClassPathList.emplace_back(driver);
    dialect->setExporter(exporter ? std::move(exporter) : exporterInPlaceOfNone());
    return dialect;
}

void ExportDialect::addDriverClassPath(std::string_view driver) { _driverClassPathList.push_back(lowercased(driver)); }

OptionalText ExportDialect::driver() const {
    return _driverClassPathList.empty() ? std::nullopt : OptionalText(_driverClassPathList.front());
}

bool ExportDialect::exporterSupportsDriver(std::string_view driver) const {
    return std::ranges::find(_driverClassPathList, lowercased(driver)) != _driverClassPathList.end();
}

void ExportDialect::setExporter(std::shared_ptr<SQLExportDialect> exporter) {
    _exporter = std::move(exporter);
    _exporterClass = nullptr;
}

bool ExportDialect::setExporterClass(ExporterClass exporterClass) {
    auto prototype = exporterClass ? exporterClass() : nullptr;
    if (!prototype) return false;
    _exporter = std::move(prototype);
    _exporterClass = exporterClass;
    return true;
}

std::shared_ptr<SQLExportDialect> ExportDialect::getExporter() const {
    std::shared_ptr<SQLExportDialect> fresh;
    if (_runnableExporterClass && wantsRunnableScripts())
        fresh = _runnableExporterClass();
    else if (_exporterClass)
        fresh = _exporterClass();
    else if (_exporter)
        fresh = _exporter->newInstance();
    return fresh ? fresh : exporterInPlaceOfNone();
}

std::string ExportDialect::description() const {
    const std::string exporter = _exporter ? text("exporter = %@; ", _exporter->getName()) : std::string();
    return text("<ExportDialect: %p> {%@name = %@;}", addressText(this), exporter, _name);
}

}  // namespace vellicor
