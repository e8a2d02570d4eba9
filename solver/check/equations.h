// A point and the equations it should satisfy.
#pragma once

#include <optional>
#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol {

/// Moves the point onto the rows `equations` (indices of blocks of size 1, each
/// read as F(v) = 0) by least squares.
void move_onto(const Problem& problem, const std::vector<std::size_t>& equations,
               std::vector<double>& point);

/// Per unknown, how far an exact solution of all the equations can be from the
/// point; empty if the point itself is an exact solution. No value if nothing
/// could be proven: dependent equations are accepted only where they depend
/// exactly.
std::optional<std::vector<double>> distance_to_solution(const Problem& problem,
                                                        const std::vector<std::size_t>& equations,
                                                        const std::vector<double>& point);

}  // namespace sdpsol
