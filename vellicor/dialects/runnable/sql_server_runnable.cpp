// vellicor/dialects/runnable/sql_server_runnable.cpp — what SQL Server's scripts need, beyond the classic text, to run.
#include "vellicor/dialects/runnable/sql_server_runnable.h"

namespace vellicor {

std::string RunnableSQLServerExporter::addIndex(SQLIndex& index, SQLTable& table) {
    auto* constraint = as<SQLConstraint>(&index);
    const bool isAdded = constraint && checkIndexValid(index) && index.indexListCount() > 0;
    return isAdded ? text("%@%@\n", addSQLConstraint(*constraint), instructionSeparator())
                   : RunnableSybaseStyle::addIndex(index, table);
}

std::string RunnableSQLServerExporter::dropSQLIndex(SQLIndex& index) {
    SQLTable* table = index.parentTable();
    if (!table) return {};
    return text("DROP INDEX %@ ON %@", quoteIdentifier(index.getName()), getCanonicalName(*table));
}

}  // namespace vellicor
