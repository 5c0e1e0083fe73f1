// tests/engines/classic_refusals.h — what engines say to classic scripts.
#pragma once

#include "tests/engines/engine.h"

namespace vellicor::testing {

/// Documents whose classic script the engine refuses, in the words that docs/runnable-scripts.md quotes, and whose
/// runnable script it takes.
void expectClassicScriptsAreRefused(Engine& engine);

/// Documents whose classic script the engine takes for something else.
void expectClassicScriptsAreMisread(Engine& engine);

}  // namespace vellicor::testing
