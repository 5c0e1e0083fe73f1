// tests/engines/migration_run.h — a migration on an engine, and what it must leave behind.
#pragma once

#include <string>
#include <vector>

#include "tests/engines/engine.h"

namespace vellicor::testing {

/// What a run of a pair of documents found; empty texts when all is well.
struct MigrationRun {
    std::string trouble;  ///< what is wrong, with the scripts
    bool refusedRows = false;  ///< the engine refused the rows that are there, as the plan said it might
    std::vector<std::string> gaps;
};

/// Creates the old database, fills it, runs the plan and compares: the catalog with that of a fresh database of the new
/// document, and the values of columns that stay and keep their type. A second plan must be empty, and the way back,
/// without rows, must lead to the old catalog.
[[nodiscard]] MigrationRun runMigration(Engine& engine, SQLContainer& before, SQLContainer& after, const std::string& rows);

/// Leaves out each statement of the plan in turn: the comparison must notice, or the engine refuse the rest.
[[nodiscard]] std::vector<std::string> unnoticedStatements(Engine& engine, SQLContainer& before, SQLContainer& after);

}  // namespace vellicor::testing
