// vellicor/export/sql_export_dialect_common.h — the short forms of alter statements that dialects share.
#pragma once

#include <string>

#include "vellicor/export/forward.h"
#include "vellicor/model/forward.h"

namespace vellicor {

/// Operations without state of their own; dialects pass themselves.
class SQLExportDialectCommon {
public:
    /// Drops the key that the column's property "PK_NAME" names, with the separator; empty without that property.
    static std::string dropPrimaryKeyInstruction(SQLTable& table, SQLField& newField, SQLExportDialect& exporter);
};

}  // namespace vellicor
