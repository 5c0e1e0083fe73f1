// vellicor/model/container_export.cpp — the document's dialect, and its scripts.
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/model/exporter_source.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

void SQLContainer::updateExportDialect() {
    setDialectExporter(_documentInfo ? exporterNamed(_documentInfo->getExportDialect()) : defaultExporter());
}

std::shared_ptr<SQLExportDialect> SQLContainer::currentDialectExporter() const {
    return exporterNamedWithPlugins(_documentInfo ? _documentInfo->getExportDialect() : std::string());
}

std::string SQLContainer::exportToSQL() {
    try {
        return exportToSQL(*defaultExporter());
    } catch (const SQLException& error) {
        log(text("(Container) Export failed\n%@", error.reason()));
    } catch (const std::exception& error) {
        log(text("(Container) Export failed\n%@", error.what()));
    }
    return {};
}

std::string SQLContainer::exportToSQL(SQLExportDialect& exporter) {
    auto list = lockedList();
    reorderByForeignKeys();
    exporter.setCurrentExporter(nullptr);
    return exporter.export_(*this);
}

std::string SQLContainer::exportToSQLWithDialect(std::string_view dialect) {
    return exportToSQL(*exporterNamed(dialect));
}

std::string SQLContainer::exportToSQLWithDocumentInfo(const std::shared_ptr<SQLDocumentInfo>& info) {
    const auto exporter = exporterNamed(info ? info->getExportDialect() : std::string());
    exporter->setDocumentInfo(info);
    return exportToSQL(*exporter);
}

std::string SQLContainer::exportObjectToSQLWithDocumentInfo(SQLObject& object,
                                                            const std::shared_ptr<SQLDocumentInfo>& info) {
    auto list = lockedList();
    // Kept: unlike the whole script, this leaves the exporter's current exporter as it is.
    const auto exporter = info ? exporterNamed(info->getExportDialect()) : defaultExporter();
    exporter->setDocumentInfo(info);
    reorderByForeignKeys();
    return exporter->export_(object);
}

std::string SQLContainer::exportToSQLInternal() {
    auto list = lockedList();
    reorderByForeignKeys();
    const Objects objects = list->snapshot();
    std::string sql = objects.empty() ? std::string() : text("/* Vellicor export */%@", "\n");
    std::string foreignKeys;
    for (const auto& object : objects) {
        sql += text("%@\n\n", object->exportToSQL());
        if (auto* table = as<SQLTable>(object.get())) foreignKeys += table->exportSQLForeignKey();
    }
    if (!foreignKeys.empty()) sql += text("/* Foreign keys */\n%@\n", foreignKeys);
    return sql;
}

void SQLContainer::debug() { log(text("SQLContainer debug\n%@\n", export_())); }

}  // namespace vellicor
