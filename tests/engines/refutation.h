// What is wrong with an outcome, found without the checker: by what was planted, and by
// rational arithmetic at the points that it names.
#pragma once

#include "solver/decide/outcome.h"
#include "tests/engines/engine_problems.h"

namespace sdpsol::testing {

/// Why the outcome cannot be right; null if nothing is known against it. A text that
/// lasts.
const char* refutation(const EngineProblem& drawn, const Outcome& outcome);

}  // namespace sdpsol::testing
