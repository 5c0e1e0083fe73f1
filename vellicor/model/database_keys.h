// vellicor/model/database_keys.h — keys of properties for what databases have and the classic model does not know. Other
// readers of the file format keep them as unknown properties; only runnable scripts and comparisons look at them.
#pragma once

namespace vellicor::keys {

// table
/// "DEFERRABLE" or "DEFERRABLE INITIALLY DEFERRED" for a primary key that may wait.
inline constexpr const char* primaryKeyDeferral = "primaryKeyDeferral";
/// What stands behind the list of columns, as the engine writes it: "STRICT,WITHOUT ROWID".
inline constexpr const char* tableOptions = "tableOptions";

// column
/// Place in the primary key, from 1; set only where the key's order is not the order of the columns.
inline constexpr const char* primaryKeyPosition = "primaryKeyPosition";
/// What stands behind the size of the type: "[]", " unsigned zerofill".
inline constexpr const char* typeSuffix = "typeSuffix";
/// "ALWAYS" or "BY DEFAULT".
inline constexpr const char* identity = "identity";
/// The expression that makes the column's value, and where it is made: "STORED" or "VIRTUAL".
inline constexpr const char* generatedExpression = "generatedExpression";
inline constexpr const char* generatedKind = "generatedKind";
/// Collation in engines other than MySQL, as a name to be quoted; a schema stands in front, behind a dot.
inline constexpr const char* columnCollation = "columnCollation";

// index and unique constraint
/// One line a part where any part is more than a column: "column" stands for the next column of the index,
/// "(expression)" for itself; behind either, its collation, operator class, direction and place of nulls.
inline constexpr const char* indexParts = "indexParts";
/// The condition of a partial index.
inline constexpr const char* indexCondition = "indexCondition";
/// "gin", "hash" and the like; absent for the engine's usual one.
inline constexpr const char* indexMethod = "indexMethod";
/// Columns that the index carries along, one a line.
inline constexpr const char* indexIncludedColumns = "indexIncludedColumns";
/// "index" for uniqueness that is an index only, "constraint" for one that is part of the table; absent: as the dialect
/// has it.
inline constexpr const char* uniqueForm = "uniqueForm";
/// Nulls count as equal.
inline constexpr const char* nullsNotDistinct = "nullsNotDistinct";

// foreign key
/// "FULL".
inline constexpr const char* matchType = "matchType";

// view
/// Names of the columns, one a line, where the view itself lists them.
inline constexpr const char* viewColumns = "viewColumns";
/// The view is kept as a table.
inline constexpr const char* isMaterialized = "isMaterialized";

}  // namespace vellicor::keys
