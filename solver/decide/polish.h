// Multipliers closer to their balance than an engine brings them.
#pragma once

#include <vector>

#include "solver/check/multipliers.h"

namespace sdpsol {

/// Moves multipliers towards the exact balance of every unknown by a few steps of
/// Newton's method in the entries of their factors. Unlike the checker's own
/// correction it turns the faces that the multipliers live on: where a contradiction
/// has a single, singular certificate, such as the unstable eigenvector of a system,
/// the engine finds that face only to its own accuracy.
/// Proves nothing. Large systems come back as they are.
/// Cost: unknowns^2 * (entries of the factors), a few times.
std::vector<Multiplier> polish(const Problem& problem, std::vector<Multiplier> multipliers);

}  // namespace sdpsol
