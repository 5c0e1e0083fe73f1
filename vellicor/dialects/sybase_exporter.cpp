// vellicor/dialects/sybase_exporter.cpp — Sybase.
#include "vellicor/dialects/sybase_exporter.h"

#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::string SybaseSQLExporter::instructionSeparator() {
    return Preferences::shared().boolForKey(prefs::sybaseUseGo) ? "\ngo\n" : ";";
}

Statements SybaseSQLExporter::postLoadAsVectorSQLTable(SQLTable& table) {
    Statements statements;
    const std::vector<std::string> primaryKey = table.primaryKeyList();
    if (!primaryKey.empty())
        statements.push_back(primaryIndexStatement(table, joined(quoteMembersForSQL(primaryKey), ",")));
    for (const auto& component : table.objectList()) {
        if (!as<SQLIndex>(component.get())) continue;
        for (std::string& statement : postLoadAsVectorSQLTableComponent(*component, table))
            statements.push_back(std::move(statement));
    }
    return statements;
}

std::string SybaseSQLExporter::primaryIndexStatement(SQLTable& table, const std::string& columns) {
    return text("CREATE UNIQUE INDEX PrimaryIndex on %@ (%@)\n", quoteIdentifier(table.getName()), columns);
}

}  // namespace vellicor
