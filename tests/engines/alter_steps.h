// tests/engines/alter_steps.h — alter statements on an engine.
#pragma once

#include "tests/engines/engine.h"

namespace vellicor::testing {

/// Runs the script of an old document, then the statements that lead to a new one, and compares catalogs.
void expectAlterStatementsRun(Engine& engine);

/// Pairs whose classic statements the engine refuses, in the words that docs/runnable-scripts.md quotes.
void expectClassicAlterStatementsAreRefused(Engine& engine);

}  // namespace vellicor::testing
