// The value of every expression: a matrix whose entries are affine in the
// unknowns, held as one flat list of terms.
//
// Flat, because the big values are block rows of forces with hundreds of terms
// each: concatenating is appending with an offset, adding is appending, and
// nothing that has grown is copied entry by entry into a deeper structure.
#pragma once

#include <cstdint>
#include <vector>

namespace sdpsol {

/// Index of the term that belongs to no unknown.
inline constexpr std::int32_t kConstant = -1;

/// value * unknown (or the constant `value`) in entry (row, column), both from 0.
struct AffineTerm {
  std::int32_t row = 0;
  std::int32_t column = 0;
  std::int32_t unknown = kConstant;  ///< index of a scalar unknown, or kConstant
  double value = 0;
  /// Sum of the magnitudes that `value` was added up from (S in the verdicts):
  /// where terms cancel, value is small and magnitude is not.
  double magnitude = 0;
  friend bool operator==(const AffineTerm&, const AffineTerm&) = default;
};

/// rows x columns matrix, entries affine in the unknowns.
struct AffineMatrix {
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  /// Any order; several terms may share entry and unknown until collect_terms().
  std::vector<AffineTerm> terms;
};

/// Sorts by (row, column, unknown) and adds up terms that share all three. A
/// term whose value cancels to 0 stays, because its magnitude still counts.
void collect_terms(AffineMatrix& matrix);

}  // namespace sdpsol
