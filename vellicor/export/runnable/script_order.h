// vellicor/export/runnable/script_order.h — the order in which a server takes objects and statements.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vellicor/export/generic_exporter_create.h"
#include "vellicor/export/runnable/runnable_dialect.h"

namespace vellicor {

using ReferencingTables = std::unordered_map<const SQLTable*, std::vector<SQLTable*>>;

/// By target: the tables whose foreign key objects lead there.
[[nodiscard]] ReferencingTables tablesReferencingByKey(SQLContainer& container);
/// Views behind everything else, each behind the views that its query names.
void putViewsLast(SQLContainer::Objects& objects, GenericNames& names);
/// The statements of the set behind all others.
void putLast(Statements& statements, const std::unordered_set<std::string>& last);
/// What stands in front of the tables: the user's statements, the schemas and the drops.
[[nodiscard]] std::string runnablePrologue(GenericCreateScript& exporter, RunnableDialect& dialect,
                                           SQLContainer& container);

}  // namespace vellicor
