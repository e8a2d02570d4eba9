// The problem behind a definition, in the form that engines and the checker
// share: unknowns, symmetric blocks that must be positive, equations, an
// objective. Nothing of the text is left but the number of the condition that
// each block came from.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "solver/language/affine_matrix.h"
#include "solver/language/sense.h"

namespace sdpsol {

/// F(v) = F_0 + sum over k of v_k * F_k, symmetric, size x size, which must be
/// positive definite (kStrict) or positive semidefinite (kNonStrict). Size 1 is
/// a linear row; only a row can be an equation (kEqual).
struct Block {
  std::int32_t size = 1;
  Sense sense = Sense::kStrict;
  /// The condition of the definition that this block is a piece of.
  std::int32_t condition = 0;
  /// Upper triangle (row <= column), sorted by unknown, row, column, each at
  /// most once; the constant terms come first. Values may be 0: a coefficient
  /// that cancelled still carries the magnitude it cancelled from.
  std::vector<AffineTerm> terms;
};

/// maximise constant + sum of cost[k] * v_k
struct LinearObjective {
  double constant = 0;
  double constant_magnitude = 0;
  std::vector<double> cost;  ///< one per unknown
};

struct Problem {
  std::int32_t unknowns = 0;
  std::vector<Block> blocks;
  std::optional<LinearObjective> objective;
  double big_m = 15000;
  /// Every unknown obeys |v_k| <= big_m. If not, the box is no condition, and is
  /// only where the value of an objective is looked for that has no bound.
  bool boxed = true;
};

/// True for a coefficient through which an unknown makes a difference.
inline bool varies(const AffineTerm& term) {
  return term.unknown != kConstant && term.value != 0;
}

inline bool has_unknowns(const Block& block) {
  return std::any_of(block.terms.begin(), block.terms.end(), varies);
}

/// Calls visit(first, last) for every run of terms of one unknown (kConstant first).
template <typename Visitor>
void for_each_unknown(const Block& block, Visitor visit) {
  const AffineTerm* first = block.terms.data();
  const AffineTerm* const end = first + block.terms.size();
  while (first != end) {
    const AffineTerm* last = first;
    while (last != end && last->unknown == first->unknown) ++last;
    visit(first, last);
    first = last;
  }
}

}  // namespace sdpsol
