// Exact linear dependence among coefficient matrices.
#pragma once

#include <Eigen/Core>
#include <vector>

#include "solver/check/multipliers.h"

namespace sdpsol {

/// True only if, in every entry that the multipliers reach, the coefficients of
/// `unknown` are exactly the combination of those of `basis` (kConstant stands
/// for the constants). Multipliers that balance the basis exactly then balance
/// `unknown` exactly too, although nothing in floating point could tell.
/// @param combination the weights as a floating-point solve found them; fractions
///        with a small common denominator are tried in their place, which is what
///        contradictions written by people consist of.
bool is_exact_combination(const Problem& problem, const std::vector<Multiplier>& multipliers,
                          std::int32_t unknown, const std::vector<std::int32_t>& basis,
                          const Eigen::VectorXd& combination);

/// The smallest denominator, up to 1000, that makes every weight an integer
/// within the accuracy of a floating-point solve; 0 if there is none.
double common_denominator(const Eigen::VectorXd& weights);

}  // namespace sdpsol
