// tests/engines/migration_cases.h — every kind of difference between two documents, one case a line.
#pragma once

#include "tests/engines/engine.h"

namespace vellicor::testing {

/// Runs all cases as one migration, with names quoted where they must be and always; when that fails, each by itself, so
/// that the failure names the case.
void expectMigrationCasesOnEngine(Engine& engine);

}  // namespace vellicor::testing
