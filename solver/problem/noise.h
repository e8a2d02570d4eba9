// Coefficients that look like the rounding noise of whoever computed them.
#pragma once

#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol {

/// Conditions that hold a coefficient which is not 0 but below 1e-12 of the
/// largest coefficient of its unknown, or of its own magnitude; constants count
/// by their own magnitude only. Sorted, without repetitions.
std::vector<std::int32_t> noisy_conditions(const Problem& problem);

/// The problem with 0 in place of every such coefficient; magnitudes stay.
Problem without_noise(const Problem& problem);

}  // namespace sdpsol
