// tests/support/dialect_text.h — what a dialect writes for a one-line document.
#pragma once

#include <string>
#include <string_view>

#include "tests/support/document_builder.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/exporter_source.h"

namespace vellicor::testing {

[[nodiscard]] inline std::shared_ptr<GenericSQLExporter> exporterOf(std::string_view dialect) {
    return std::dynamic_pointer_cast<GenericSQLExporter>(exporterNamed(dialect));
}

[[nodiscard]] inline std::string scriptOf(std::string_view dialect, SQLContainer& container) {
    return exporterOf(dialect)->export_(container);
}
[[nodiscard]] inline std::string scriptOf(std::string_view dialect, std::string_view description) {
    return scriptOf(dialect, *document(description));
}

/// The definition of the first column of a table made of one part.
[[nodiscard]] inline std::string columnOf(std::string_view dialect, std::string_view part) {
    auto container = document("t(" + std::string(part) + ")");
    return exporterOf(dialect)->export_(*table(*container, "t")->getFields().front());
}

/// The statements behind the tables.
[[nodiscard]] inline Statements postLoadOf(std::string_view dialect, std::string_view description) {
    auto container = document(description);
    container->reorderByForeignKeys();
    return exporterOf(dialect)->postLoadAsVectorSQLContainer(*container);
}

/// An operation on the column `a` of two tables `t`, the new one and the current one.
template <class Operation>
auto altered(std::string_view newPart, std::string_view currentPart, Operation operation) {
    auto next = document("t(" + std::string(newPart) + ")");
    auto current = document("t(" + std::string(currentPart) + ")");
    return operation(*as<SQLField>(table(*next, "t")->getField(0)), *as<SQLField>(table(*current, "t")->getField(0)));
}

}  // namespace vellicor::testing
