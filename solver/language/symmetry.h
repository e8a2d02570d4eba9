// Coefficient matrices that are symmetric up to the digits they are written with.
#pragma once

#include <cstdint>

#include "solver/language/affine_matrix.h"

namespace sdpsol {

/// Definitions carry six significant digits, so entries that mirror each other
/// may differ by this part of the largest entry of their coefficient matrix.
inline constexpr double kSymmetryTolerance = 1e-5;

/// True if terms that mirror each other are equal.
/// @param matrix square, terms collected.
bool is_symmetric(const AffineMatrix& matrix);

/// What symmetrize() met; where it is not kExact, at the pair of entries that
/// differs most, relative to the largest entry of its coefficient matrix. Differences
/// within the rounding of what the entries were added up from are none.
struct Symmetry {
  enum class Grade { kExact, kRounded, kBroken };
  Grade grade = Grade::kExact;
  std::int32_t unknown = kConstant;  ///< whose coefficient matrix it is
  std::int32_t row = 0;              ///< from 0, above the diagonal: row < column
  std::int32_t column = 0;
  double upper = 0;  ///< entry (row, column)
  double lower = 0;  ///< entry (column, row)
};

/// Replaces each coefficient matrix (of the constant and of every unknown) by its
/// symmetric part: the mean of values and magnitudes that mirror each other.
/// @param matrix square, terms collected. Left as it is where the grade is
///   kBroken; otherwise both triangles hold equal terms at the same places.
/// Cost: linear in terms and rows.
Symmetry symmetrize(AffineMatrix& matrix);

}  // namespace sdpsol
