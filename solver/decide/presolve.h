// What can be settled before an engine is asked.
#pragma once

#include "solver/decide/program.h"
#include "solver/problem/problem.h"

namespace sdpsol {

/// The inequalities and equations worth an engine's time: of rows that bound the
/// same linear form only the tightest, rows without unknowns not at all, and two
/// non-strict bounds that meet as one equation.
Selection select_conditions(const Problem& problem);

/// The problem with every non-strict matrix inequality reduced by its exact null
/// vectors. Blocks keep their numbers.
Problem reduce_singular_matrices(const Problem& problem);

/// Multipliers of the reduced problem as those of the problem itself: weights of 0
/// for the rows that were struck out.
void restore_struck_rows(const Problem& problem, std::vector<Multiplier>& multipliers);

/// The rows of a problem, and the diagonals of its matrices as rows: what every
/// feasible point satisfies, without what makes semidefinite programs hard.
struct DiagonalRelaxation {
  Problem problem;
  /// Per block of it: the block and the row that it was taken from.
  struct Origin {
    std::size_t block = 0;
    std::int32_t row = 0;
  };
  std::vector<Origin> origins;
};
DiagonalRelaxation relax_to_diagonals(const Problem& problem);

/// Multipliers of a relaxation as those of the problem that it was made of.
std::vector<Multiplier> lift_multipliers(const Problem& problem,
                                         const DiagonalRelaxation& relaxation,
                                         const std::vector<Multiplier>& multipliers);

/// True if reduce_singular_matrices() would change anything.
bool has_singular_matrices(const Problem& problem);

}  // namespace sdpsol
