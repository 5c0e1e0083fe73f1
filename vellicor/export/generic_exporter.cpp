// vellicor/export/generic_exporter.cpp — the generic exporter itself.
#include "vellicor/export/generic_exporter.h"

#include <typeinfo>

#include "vellicor/export/generic_words.h"

namespace vellicor {

std::shared_ptr<SQLExportDialect> SQLExportDialect::newInstance() const { return create<SQLExportDialect>(); }

void GenericSQLExporter::init() {
    SQLExportDialect::init();
    setUseQuotedIdentifier(true);
    configureForExport();
    configureDialectSpecficInterface();
}

bool GenericSQLExporter::supportsViews() const { return typeid(*this) == typeid(GenericSQLExporter); }

std::span<const std::string_view> GenericSQLExporter::reservedWords() const {
    return typeid(*this) == typeid(GenericSQLExporter) ? genericReservedWords() : std::span<const std::string_view>();
}

}  // namespace vellicor
