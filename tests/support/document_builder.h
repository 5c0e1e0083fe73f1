// tests/support/document_builder.h — a document from one line of text.
#pragma once

#include <memory>
#include <string_view>

#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"

namespace vellicor::testing {

/// Tables separated by ";;", each `name(parts)`, the parts separated by ";". A part is one of
///
///     id INTEGER pk auto             column: name, type, then any of  pk auto notnull unique indexed
///                                    default=VALUE  expression=VALUE  check=EXPRESSION  comment=TEXT  -> table.column
///                                    delete=N update=N (codes of actions)
///     index name TYPE (a,b(10))      index; TYPE may be absent
///     constraint name UNIQUE (a,b)   or  constraint name CHECK [expression]
///     key name (a,b) -> table(x,y)   foreign key, then delete=N update=N deferrable deferred
///
/// Names and values with blanks are written with "~" for the blank. A table name may carry a schema.
[[nodiscard]] std::shared_ptr<SQLContainer> document(std::string_view text);

/// Null when there is none; a schema may stand in front of the table.
[[nodiscard]] SQLTable* table(SQLContainer& container, std::string_view name);
[[nodiscard]] SQLField* field(SQLContainer& container, std::string_view table, std::string_view name);

}  // namespace vellicor::testing
