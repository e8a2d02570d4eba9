// Blocks at a point, with the sizes of what was added up.
#pragma once

#include <Eigen/Core>

#include "solver/problem/problem.h"

namespace sdpsol {

/// Margins below this share of what was added up mean nothing: definitions
/// carry six significant digits.
inline constexpr double kRoom = 4.4e-6;

/// Numbers are read with a relative error of 2^-53; a contradiction must exceed
/// that by a good factor before it counts.
inline constexpr double kReading = 0x1p-48;

/// Covers the rounding of a sum of `count` products: (count + 8) * 2^-52, twice
/// what the standard bound asks.
inline double sum_rounding(std::size_t count) {
  return (static_cast<double>(count) + 8) * 0x1p-52;
}

/// F(v) and T(v) of one block, both symmetric.
struct Evaluated {
  Eigen::MatrixXd value;      ///< F(v), each entry within rounding * magnitude
  Eigen::MatrixXd magnitude;  ///< T(v) = S_0 + sum of |v_k| * S_k, entry by entry
  double rounding = 0;
};

/// @param point one number per unknown of the problem.
Evaluated evaluate(const Block& block, const std::vector<double>& point);

/// The same of a block of size 1, as numbers: most blocks of a problem are rows.
struct EvaluatedRow {
  double value = 0;
  double magnitude = 0;
  double rounding = 0;
};
EvaluatedRow evaluate_row(const Block& row, const std::vector<double>& point);

/// The largest r with F(v) - r*diag(T(v)) positive semidefinite, in floating
/// point: for reports, not for proofs.
double relative_room(const Evaluated& at);
double relative_room(const EvaluatedRow& at);

}  // namespace sdpsol
