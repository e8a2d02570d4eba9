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

/// Row or column of an entry, 0 to 65,535. Short, because terms are kept by the
/// million, and to fetch memory for them is much of what they cost.
using EntryIndex = std::uint16_t;

/// value * unknown (or the constant `value`) in entry (row, column), both from 0.
struct AffineTerm {
  EntryIndex row = 0;
  EntryIndex column = 0;
  std::int32_t unknown = kConstant;  ///< index of a scalar unknown, or kConstant
  double value = 0;
  /// Sum of the magnitudes that `value` was added up from (S in the verdicts):
  /// where terms cancel, value is small and magnitude is not.
  double magnitude = 0;

  AffineTerm() = default;
  AffineTerm(std::int32_t at_row, std::int32_t at_column, std::int32_t of_unknown, double its_value,
             double its_magnitude)
      : unknown(of_unknown), value(its_value), magnitude(its_magnitude) {
    move_to(at_row, at_column);
  }
  void move_to(std::int32_t to_row, std::int32_t to_column) {
    row = static_cast<EntryIndex>(to_row);
    column = static_cast<EntryIndex>(to_column);
  }
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
