// vellicor/export/sql_export_dialect_common.cpp — the short forms of alter statements that dialects share.
#include "vellicor/export/sql_export_dialect_common.h"

#include "vellicor/model/export_dialect.h"
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// The property that names a primary key in the dialects' short form; not the one that the model itself keeps.
constexpr const char* kShortPrimaryKeyName = "PK_NAME";

}  // namespace

std::string SQLExportDialectCommon::dropPrimaryKeyInstruction(SQLTable& table, SQLField& newField,
                                                              SQLExportDialect& exporter) {
    if (!newField.hasProperty(kShortPrimaryKeyName)) return {};
    const std::string name = newField.getProperty(kShortPrimaryKeyName);
    return text("ALTER TABLE %@ DROP CONSTRAINT \"%@\"%@", exporter.getCanonicalName(table), name,
                exporter.getInstructionSeparator());
}

}  // namespace vellicor
