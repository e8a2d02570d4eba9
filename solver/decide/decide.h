// From a problem to a checked verdict.
#pragma once

#include "solver/decide/outcome.h"
#include "solver/engine/engine.h"

namespace sdpsol {

/// Decides a problem: engines propose, the checker decides. A verdict other than
/// kUndetermined is proven; it holds with and without coefficients at noise level.
/// @param limits bounds every run of the engine.
/// Errors: none; every way in which an engine can give up is kUndetermined.
Outcome decide(const Problem& problem, Engine& engine, const Limits& limits);

/// Decides with `first`, and again with `fallback` where nothing could be proven, where the
/// proven bound is far from the objective, and where all that is proven is a lack of room or
/// an empty box, if the problem is small. The better answer counts.
Outcome decide_with_fallback(const Problem& problem, Engine& first, Engine& fallback,
                             const Limits& limits);

}  // namespace sdpsol
