// tests/engines/engine_steps.h — what an engine must make of statements on the tables of the example documents.
#pragma once

#include <string_view>

#include "tests/engines/engine.h"

namespace vellicor::testing {

/// Exports an example, compares catalogs, then works with its tables: keys, uniqueness, defaults, NOT NULL, checks and
/// the actions of foreign keys are the engine's doing.
void expectExampleOnEngine(Engine& engine, std::string_view example);

/// Documents made of what engines refuse in classic text; each script must run.
void expectAwkwardDocumentsRun(Engine& engine);

}  // namespace vellicor::testing
