// Multipliers of equations, which engines do not return.
#pragma once

#include <optional>
#include <vector>

#include "solver/check/multipliers.h"

namespace sdpsol {

/// A row that an engine is asked to hold with equality.
struct PinnedRow {
  std::size_t block = 0;
  /// If the row is an inequality: the one that bounds the same form from the other
  /// side at the same place.
  std::optional<std::size_t> opposite;
};

/// Appends the multipliers with which the pinned rows balance, as well as they can,
/// what the given ones leave of each unknown: least squares in unknowns scaled by
/// `sizes`.
/// @param for_objective balance against the objective instead of against 0.
void append_equation_multipliers(const Problem& problem, const std::vector<PinnedRow>& rows,
                                 const std::vector<double>& sizes,
                                 std::vector<Multiplier>& multipliers, bool for_objective = false);

/// Multipliers under which the rows add up to a constant other than 0, if they
/// contradict each other; else what rounding leaves, or nothing.
std::vector<Multiplier> contradiction_among(const Problem& problem,
                                            const std::vector<PinnedRow>& rows,
                                            const std::vector<double>& sizes);

}  // namespace sdpsol
