// Problems planted in small integers, so that what is planted is exact: a point, a
// contradiction, an optimum with the weights that prove it. They have what definitions
// have and grasps have not: symmetric matrix variables, several blocks, equations,
// repeated and constant conditions, conditions that are not strict, unused variables.
#pragma once

#include <random>

#include "tests/engines/engine_problems.h"

namespace sdpsol::testing {

EngineProblem integer_point(std::mt19937& random);
/// Weights inside their cones.
EngineProblem integer_contradiction(std::mt19937& random);
/// A primal and a dual solution that meet, and a point with room beside them.
EngineProblem integer_optimum(std::mt19937& random);
/// An unknown that nothing but the box limits.
EngineProblem optimum_at_the_box(std::mt19937& random);
/// Points, but none of them in the box.
EngineProblem outside_the_box(std::mt19937& random);

// On the border: points of singular matrices, weights of low rank, optima without a point
// that has room.
EngineProblem singular_point(std::mt19937& random);
EngineProblem singular_contradiction(std::mt19937& random);
EngineProblem singular_optimum(std::mt19937& random);
/// Feasible or not by 2^-10 to 2^-44.
EngineProblem hair_of_a_point(std::mt19937& random);
EngineProblem hair_of_a_contradiction(std::mt19937& random);
/// Asks for more than a planted optimum, or for less, by as little. The weights are those
/// that prove the optimum: they contradict, or seem to.
EngineProblem hair_of_an_optimum(std::mt19937& random);

/// The room that planted points are held to.
inline constexpr double kPlantedRoom = 1e-4;

}  // namespace sdpsol::testing
