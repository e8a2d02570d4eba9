// Matrix inequalities and rows as problems for engines, blocks of up to six rows.
#pragma once

#include <random>

#include "tests/engines/engine_problems.h"

namespace sdpsol::testing {

EngineProblem planted_point(std::mt19937& random);
EngineProblem planted_point_and_equations(std::mt19937& random);
EngineProblem negative_constant(std::mt19937& random);
EngineProblem zero_constant(std::mt19937& random);

/// With an objective that is bounded by multipliers inside their cones.
EngineProblem bounded_objective(std::mt19937& random);
/// By multipliers of low rank, or on few of the blocks: the optimum may be flat, or
/// never quite reached.
EngineProblem flat_objective(std::mt19937& random);
/// By nothing at all, often.
EngineProblem free_objective(std::mt19937& random);
/// Of a problem without any point.
EngineProblem objective_of_a_contradiction(std::mt19937& random);

/// On the border, in small integers.
EngineProblem border_of_integers(std::mt19937& random);
/// Rows alone; the truth is that of exact arithmetic.
EngineProblem rows_alone(std::mt19937& random);

/// The problem in other units: blocks, the objective and the unknowns, together or each
/// on its own, are measured in powers of two from 1e-4 to 1e4, so that nothing is
/// rounded. The box keeps every point that it held.
void change_units(EngineProblem& drawn, std::mt19937& random);

}  // namespace sdpsol::testing
