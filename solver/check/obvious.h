// Contradictions that need no engine.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol {

/// A contradiction and the conditions it comes from.
struct ObviousContradiction {
  std::string reason;
  std::vector<std::int32_t> conditions;  ///< one or two indices
};

/// Looks for a false relation between constants, two rows that bound the same
/// linear form from both sides and leave nothing between, and matrix
/// inequalities that a zero on the diagonal or a null vector rules out.
/// Every answer is a proof; no answer means nothing.
std::optional<ObviousContradiction> find_obvious_contradiction(const Problem& problem);

}  // namespace sdpsol
