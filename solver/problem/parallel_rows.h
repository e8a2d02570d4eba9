// Rows that bound the same linear form.
#pragma once

#include <cstddef>
#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol {

/// A row of a group: its coefficients are factor * (those of the group's first
/// row), exactly, with factor = scale / (the first row's scale).
struct ParallelRow {
  std::size_t block = 0;
  double scale = 0;  ///< the row's first coefficient
  double constant = 0;
  double constant_magnitude = 0;
};

/// Groups the rows (size 1, at least one coefficient that is not 0) of a problem
/// whose coefficients are exactly proportional. Single rows are groups too.
/// Order: by first block. Cost: linear in the coefficients, up to collisions.
std::vector<std::vector<ParallelRow>> group_parallel_rows(const Problem& problem);

}  // namespace sdpsol
