// tests/engines/migration_pairs.h — pairs of documents made by number: one, and what a few changes make of it.
#pragma once

#include <cstdint>

#include "tests/engines/engine.h"

namespace vellicor::testing {

/// Runs the pairs from `first` on. A pair that fails is reported with its number and the fewest changes that still fail.
/// VELLICOR_MIGRATION_PAIRS sets another count.
void expectGeneratedMigrationsOnEngine(Engine& engine, std::uint64_t first, std::uint64_t count);

}  // namespace vellicor::testing
