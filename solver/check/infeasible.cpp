#include "solver/check/infeasible.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "solver/check/evaluate.h"

namespace sdpsol {
namespace {

constexpr double kBoxShare = 1e-6;

double box_charge(const Problem& problem, const Balance& balance) {
  const std::vector<double> rests = balance.rests();
  const double total = std::accumulate(rests.begin(), rests.end(), 0.0);
  if (!problem.boxed) return total == 0 ? 0 : std::numeric_limits<double>::infinity();
  return problem.big_m * total * (1 + 1e-12);
}

bool is_empty_in_box(const Problem& problem, const Balance& balance) {
  const auto [middle, radius] = balance.constant();
  const double charge = box_charge(problem, balance);
  // The charge itself is a sum of what was read.
  const double rounding = kReading * (balance.weights().constant_weight() + charge);
  return middle + radius + charge < -rounding;
}

/// The weighted sum of the conditions says "constant > 0", and it is not so.
bool has_negative_constant(const Problem& problem, const Balance& balance) {
  const auto [middle, radius] = balance.constant();
  if (!(middle + radius < -kReading * balance.weights().constant_weight())) return false;
  if (balance.exact()) return true;
  // The box may make up for a balance that is not quite exact, never stand in for it.
  return balance.nearly_balances(kBoxShare) &&
         box_charge(problem, balance) <= kBoxShare * std::fabs(middle) &&
         is_empty_in_box(problem, balance);
}

bool leaves_no_room(const Balance& balance) {
  const std::vector<double> weights = balance.weights().diagonal_weights(balance.correction());
  const std::vector<double> rests = balance.rests();
  const auto [middle, radius] = balance.constant();
  const double share = kRoom * (1 - 1e-12);
  if (!(middle + radius <= share * weights[0])) return false;
  double total = weights[0];
  for (std::size_t k = 0; k < rests.size(); ++k) {
    if (!(rests[k] <= share * weights[k + 1])) return false;
    total += weights[k + 1];
  }
  return total > 0;
}

/// The proofs account for rounding, not for products that overflow or vanish.
bool have_usable_sizes(const Problem& problem, const std::vector<Multiplier>& multipliers) {
  auto usable = [](double x) { return x == 0 || (std::fabs(x) > 1e-70 && std::fabs(x) < 1e70); };
  return std::all_of(multipliers.begin(), multipliers.end(), [&](const Multiplier& y) {
    const Block& block = problem.blocks[y.block];
    const auto entries = y.factor.reshaped();
    // An equation's multiplier is its one entry, no square of anything.
    if (block.sense == Sense::kEqual && y.factor.cols() != 1) return false;
    return y.factor.rows() == block.size && y.factor.cols() > 0 &&
           std::all_of(entries.begin(), entries.end(), usable) &&
           std::all_of(block.terms.begin(), block.terms.end(),
                       [&](const AffineTerm& t) { return usable(t.value); });
  });
}

/// Calls use(balance) with what the claim rests on, if there is one.
template <typename Use>
Disproof prove(const Problem& problem, const std::vector<Multiplier>& multipliers, Use use) {
  if (multipliers.empty() || !have_usable_sizes(problem, multipliers)) return Disproof::kNone;
  const Balance balanced(problem, multipliers, BalanceOf::kUnknowns);
  if (has_negative_constant(problem, balanced)) {
    use(balanced);
    return Disproof::kInfeasible;
  }
  if (balanced.weights().weighs(Sense::kStrict)) {
    const Balance with_constant(problem, multipliers, BalanceOf::kUnknownsAndConstant);
    if (with_constant.exact()) {
      use(with_constant);
      return Disproof::kInfeasible;
    }
  }
  const Balance as_they_are(problem, multipliers, BalanceOf::kNothing);
  for (const Balance* balance : {&balanced, &as_they_are}) {
    if (!is_empty_in_box(problem, *balance)) continue;
    use(*balance);
    return Disproof::kEmptyBox;
  }
  for (const Balance* balance : {&balanced, &as_they_are}) {
    if (!leaves_no_room(*balance)) continue;
    use(*balance);
    return Disproof::kBorderline;
  }
  return Disproof::kNone;
}

}  // namespace

Disproof disprove(const Problem& problem, const std::vector<Multiplier>& multipliers) {
  return prove(problem, multipliers, [](const Balance&) {});
}

std::vector<Multiplier> balanced_multipliers(const Problem& problem,
                                             const std::vector<Multiplier>& multipliers) {
  std::vector<Multiplier> balanced;
  prove(problem, multipliers,
        [&](const Balance& balance) { balanced = balance.weights().folded(); });
  return balanced;
}

double proven_bound(const Problem& problem, const std::vector<Multiplier>& multipliers,
                    const std::vector<std::int32_t>& charged) {
  if (!have_usable_sizes(problem, multipliers)) return std::numeric_limits<double>::infinity();
  const Balance balance(problem, multipliers, BalanceOf::kObjective, charged);
  const auto [middle, radius] = balance.constant();
  const double charge = box_charge(problem, balance);
  const double constant = problem.objective->constant;
  const double size = std::fabs(constant) + std::fabs(middle) + radius + charge;
  const double bound = constant + middle + radius + charge + size * 0x1p-50;
  return std::isnan(bound) ? std::numeric_limits<double>::infinity() : bound;
}

}  // namespace sdpsol
