// vellicor/dialects/export_dialect_record.cpp — one registered dialect.
#include "vellicor/dialects/export_dialect_record.h"

#include <algorithm>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::shared_ptr<ExportDialect> ExportDialect::initWithName(std::string_view name) {
    auto dialect = std::make_shared<ExportDialect>();
    dialect->_name = name;
    return dialect;
}

std::shared_ptr<ExportDialect> ExportDialect::initWithName(std::string_view name, std::string_view driver,
                                                           std::shared_ptr<SQLExportDialect> exporter) {
    auto dialect = initWithName(name);
    dialect->_driverClassPathList.emplace_back(driver);
    if (!exporter) {
        log(text("SQLExporter requested (%@) not available", OptionalText()));  // Kept: never names the dialect
        exporter = GenericSQLExporter::exporter();
    }
    dialect->_exporter = std::move(exporter);
    return dialect;
}

void ExportDialect::addDriverClassPath(std::string_view driver) { _driverClassPathList.push_back(lowercased(driver)); }

OptionalText ExportDialect::driver() const {
    return _driverClassPathList.empty() ? std::nullopt : OptionalText(_driverClassPathList.front());
}

bool ExportDialect::exporterSupportsDriver(std::string_view driver) const {
    return std::ranges::find(_driverClassPathList, lowercased(driver)) != _driverClassPathList.end();
}

std::shared_ptr<SQLExportDialect> ExportDialect::getExporter() const {
    return _exporter ? _exporter->newInstance() : nullptr;
}

std::string ExportDialect::description() const {
    const std::string exporter = _exporter ? text("exporter = %@; ", _exporter->getName()) : std::string();
    return text("<ExportDialect: %p> {%@name = %@;}", addressText(this), exporter, _name);
}

}  // namespace vellicor
