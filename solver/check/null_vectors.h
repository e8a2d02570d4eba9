// Exact null vectors that all coefficient matrices of a block share.
#pragma once

#include "solver/problem/problem.h"

namespace sdpsol {

/// What is left of a block after its common null vectors are split off.
struct NullSplit {
  bool found = false;
  /// Principal submatrix: congruent to the block up to a zero block. Positive
  /// semidefinite exactly when the block is. Size 0 if nothing is left.
  Block rest;
  /// Which rows of the block those of `rest` are. Only with `found`.
  std::vector<std::int32_t> kept;
};

/// Looks for vectors w with F_k * w = 0 for the constant and every unknown,
/// verified without rounding. A strict block that has one cannot be positive
/// definite; a non-strict one may be replaced by `rest`.
NullSplit split_null_vectors(const Block& block);

}  // namespace sdpsol
