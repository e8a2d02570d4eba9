// What is wrong with an outcome, found without the checker: by what was planted, and by
// rational arithmetic at the points that it names.
#pragma once

#include <algorithm>
#include <cmath>

#include "solver/decide/outcome.h"
#include "tests/engines/engine_problems.h"

namespace sdpsol::testing {

/// Points reported beside equations, and values planted in doubles, are off by their
/// rounding.
inline constexpr double kRounding = 1e-9;

/// True if the value is beyond the limit by more than rounding.
inline bool exceeds(double value, double limit) {
  return value - limit > kRounding * std::max({1.0, std::fabs(value), std::fabs(limit)});
}

/// Why the outcome cannot be right; null if nothing is known against it. A text that
/// lasts.
const char* refutation(const EngineProblem& drawn, const Outcome& outcome);

}  // namespace sdpsol::testing
