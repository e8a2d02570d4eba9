// The balance of multipliers as one linear system in the entries of M.
#pragma once

#include <Eigen/Core>
#include <vector>

#include "solver/check/multipliers.h"

namespace sdpsol {

/// What must cancel.
enum class BalanceOf {
  kUnknowns,             ///< sum of <Y_b, F_bk> = 0 for every unknown k
  kUnknownsAndConstant,  ///< and the constants too
  kObjective,            ///< sum of <Y_b, F_bk> = -cost[k]
  kNothing,              ///< the multipliers as they are; what is left is only measured
};

/// One row per unknown that the multipliers reach: the operator <., M>, that is
/// the sum over multipliers of L' * F_k * L in packed form, divided by its norm.
struct BalanceRows {
  struct Row {
    std::int32_t unknown = kConstant;
    double scale = 0;   ///< norm before the division
    double error = 0;   ///< rounding of the row (norm, after the division)
    double target = 0;  ///< of the row before the division
  };
  std::vector<Row> rows;
  Eigen::MatrixXd matrix;  ///< rows.size() x packed size
  /// A bound on the norm of the constants' operator, not divided.
  double constant_norm = 0;
  /// Per unknown: |target| where no multiplier reaches it.
  std::vector<double> unreached;
};

BalanceRows gather_balance_rows(const Problem& problem, const Weights& weights, BalanceOf what);

}  // namespace sdpsol
