// vellicor/export/generic_exporter_settings.h — what is set on an exporter, and the run that it writes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "vellicor/export/export_run.h"
#include "vellicor/export/generic_exporter_answers.h"
#include "vellicor/model/document_info.h"

namespace vellicor {

/// Settings last as long as the exporter; what belongs to one export lasts as long as its run.
class GenericSettings : public GenericAnswers {
public:
    /// Reads the preferences about quoting and index names.
    void configureForExport() override;
    [[nodiscard]] virtual bool useQuotedIdentifier() const { return _useQuotedIdentifier; }
    void setUseQuotedIdentifier(bool flag) { _useQuotedIdentifier = flag; }
    [[nodiscard]] bool shouldPrefixIndexNames() const { return _shouldPrefixIndexNames; }
    void setShouldPrefixIndexNames(bool flag) { _shouldPrefixIndexNames = flag; }
    [[nodiscard]] bool autoQuoteIdentifiersWithWhitespace() const { return _autoQuoteIdentifiersWithWhitespace; }
    void setAutoQuoteIdentifiersWithWhitespace(bool flag) { _autoQuoteIdentifiersWithWhitespace = flag; }
    [[nodiscard]] std::int32_t indentSize() const { return _indentSize; }
    void setIndentSize(std::int32_t blanks) { _indentSize = blanks; }
    [[nodiscard]] std::string indent() const;
    [[nodiscard]] bool addExplicitDeferrable() const { return _addExplicitDeferrable; }
    void setAddExplicitDeferrable(bool flag) { _addExplicitDeferrable = flag; }
    [[nodiscard]] bool shouldIncludeTitleHeader() const;
    /// "IF NOT EXISTS " when the preference asks for it and no live database is written to.
    [[nodiscard]] std::string ifNotExists(bool supported) const;

    // === what is exported, and to where
    /// Null: taken from the container.
    void setDocumentInfo(std::shared_ptr<SQLDocumentInfo> info) override { _documentInfo = std::move(info); }
    [[nodiscard]] const std::shared_ptr<SQLDocumentInfo>& documentInfo() const { return _documentInfo; }
    /// True when the document info asks for tables to be dropped first.
    [[nodiscard]] bool dropsFirst() const { return _documentInfo && _documentInfo->getDropTableOption(); }
    /// The side that holds the database's state; null when there is none.
    [[nodiscard]] std::shared_ptr<SQLExportDialect> currentExporter() const override { return _currentExporter; }
    void setCurrentExporter(std::shared_ptr<SQLExportDialect> exporter) override {
        _currentExporter = std::move(exporter);
    }
    /// A connection's metadata makes this an exporter to a live database; its product is logged.
    void setJDBCMetaData(std::shared_ptr<DatabaseMetaData> metaData) override;
    [[nodiscard]] const std::shared_ptr<DatabaseMetaData>& jdbcMetaData() const { return _jdbcMetaData; }
    [[nodiscard]] bool isJDBCExporter() const { return _jdbcMetaData != nullptr; }
    /// False while a live database already holds the index.
    [[nodiscard]] bool shouldExportIndex(SQLIndex& index);
    /// The container of the running export; null while none runs.
    [[nodiscard]] SQLContainer* exportContainer() const { return _run ? &_run->container() : nullptr; }

protected:
    /// The running export; null while none runs.
    [[nodiscard]] ExportRun* run() const { return _run.get(); }
    std::unique_ptr<ExportRun> _run;  // set by the operation that exports a document, for as long as it runs

private:
    std::shared_ptr<SQLExportDialect> _currentExporter;
    std::shared_ptr<DatabaseMetaData> _jdbcMetaData;  // null unless writing to a live database
    std::shared_ptr<SQLDocumentInfo> _documentInfo;
    bool _useQuotedIdentifier = true;
    bool _shouldPrefixIndexNames = false;
    bool _autoQuoteIdentifiersWithWhitespace = false;
    bool _addExplicitDeferrable = false;
    std::int32_t _indentSize = 0;
};

}  // namespace vellicor
