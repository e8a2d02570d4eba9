// Definitions with matrix variables and matrix expressions, as people write them, with
// what was planted known in whole numbers.
#pragma once

#include <random>

#include "tests/engines/engine_problems.h"

namespace sdpsol::testing {

/// Is x' = A*x stable? By construction it is: a matrix proves it.
EngineProblem stable_system(std::mt19937& random);
/// By construction it is not: another one proves that.
EngineProblem unstable_system(std::mt19937& random);
/// The least trace of D*X over matrices X above a given one.
EngineProblem least_matrix(std::mt19937& random);

}  // namespace sdpsol::testing
