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
    if (!primaryKey.empty()) {
        const std::string name = writesRunnableScripts() ? getCanonicalName(table) : quoteIdentifier(table.getName());
        statements.push_back(text("CREATE UNIQUE INDEX PrimaryIndex on %@ (%@)%@\n", name,
                                  joined(quoteMembersForSQL(primaryKey), ","),
                                  writesRunnableScripts() ? instructionSeparator() : ""));
    }
    for (const auto& component : table.objectList()) {
        if (!as<SQLIndex>(component.get())) continue;
        for (std::string& statement : postLoadAsVectorSQLTableComponent(*component, table))
            statements.push_back(std::move(statement));
    }
    return statements;
}

}  // namespace vellicor
