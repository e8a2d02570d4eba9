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
/// @param grain what else it may be off by.
inline bool exceeds(double value, double limit, double grain = 0) {
  return value - limit > kRounding * std::max({1.0, std::fabs(value), std::fabs(limit)}) + grain;
}

/// What the rounding of the reported point may make of its objective. A point misses an
/// equation by the rounding of its terms, and an objective that is a large multiple of the
/// equation shows it.
double grain_of(const Problem& problem, const Outcome& outcome);

/// Why the outcome cannot be right; null if nothing is known against it. A text that
/// lasts.
const char* refutation(const EngineProblem& drawn, const Outcome& outcome);

}  // namespace sdpsol::testing
