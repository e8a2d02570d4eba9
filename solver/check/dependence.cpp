#include "solver/check/dependence.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "solver/check/exact_sum.h"

namespace sdpsol {

double common_denominator(const Eigen::VectorXd& weights) {
  for (int candidate = 1; candidate <= 1000; ++candidate) {
    const double denominator = candidate;
    const bool fits = std::all_of(weights.begin(), weights.end(), [&](double weight) {
      const double scaled = weight * denominator;
      return std::fabs(scaled - std::round(scaled)) <=
             1e-9 * denominator * std::max(1.0, std::fabs(weight));
    });
    if (fits) return denominator;
  }
  return 0;
}

bool is_exact_combination(const Problem& problem, const std::vector<Multiplier>& multipliers,
                          std::int32_t unknown, const std::vector<std::int32_t>& basis,
                          const Eigen::VectorXd& combination) {
  const double denominator = common_denominator(combination);
  if (denominator == 0) return false;
  // Weight of each unknown in "combination of the basis minus unknown", times the
  // denominator.
  std::map<std::int32_t, double> weights{{unknown, -denominator}};
  for (std::size_t i = 0; i < basis.size(); ++i) {
    const double weight = std::round(combination[static_cast<Eigen::Index>(i)] * denominator);
    if (weight != 0) weights[basis[i]] = weight;
  }
  for (const Multiplier& y : multipliers) {
    std::map<std::pair<std::int32_t, std::int32_t>, ExactSum> entries;
    for (const AffineTerm& t : problem.blocks[y.block].terms) {
      if (!y.reaches(t)) continue;
      const auto found = weights.find(t.unknown);
      if (found != weights.end()) entries[{t.row, t.column}].add_product(found->second, t.value);
    }
    for (const auto& [place, sum] : entries) {
      if (!sum.certainly_zero()) return false;
    }
  }
  return true;
}

}  // namespace sdpsol
