#include "solver/decide/polish.h"

#include <cmath>

#include "solver/dense/least_squares.h"

namespace sdpsol {
namespace {

constexpr int kSteps = 4;
constexpr Eigen::Index kMaxEntries = 1'000'000;

Eigen::Index entries_of(const std::vector<Multiplier>& multipliers) {
  Eigen::Index entries = 0;
  for (const Multiplier& y : multipliers) entries += y.factor.size();
  return entries;
}

/// What is left of each unknown, over the size of what was added up for it; and a 0.
Eigen::VectorXd rests_of(const Weights::Sums& sums) {
  Eigen::VectorXd rests = Eigen::VectorXd::Zero(static_cast<Eigen::Index>(sums.values.size()));
  for (Eigen::Index k = 0; k + 1 < rests.size(); ++k) {
    const auto at = static_cast<std::size_t>(k) + 1;
    rests[k] = sums.sizes[at] > 0 ? static_cast<double>(sums.values[at]) / sums.sizes[at] : 0;
  }
  return rests;
}

/// Derivatives of these rests, one column per entry of the factors: of <F, L*L'> it is
/// 2*F*L; an equation's factor is its multiplier. The last row keeps the size of all
/// factors together: shrinking them would do away with any rest.
Eigen::MatrixXd derivatives(const Problem& problem, const std::vector<Multiplier>& multipliers,
                            const Weights::Sums& sums) {
  Eigen::MatrixXd matrix = Eigen::MatrixXd::Zero(problem.unknowns + 1, entries_of(multipliers));
  Eigen::Index first = 0;
  for (const Multiplier& y : multipliers) {
    const Block& block = problem.blocks[y.block];
    const Eigen::Index rows = y.factor.rows();
    for (const AffineTerm& t : block.terms) {
      if (t.unknown == kConstant || t.value == 0) continue;
      const double size = sums.sizes[static_cast<std::size_t>(t.unknown) + 1];
      if (!(size > 0)) continue;
      const double value = t.value / size;
      for (Eigen::Index c = 0; c < y.factor.cols(); ++c) {
        const Eigen::Index column = first + c * rows;
        if (block.sense == Sense::kEqual) {
          matrix(t.unknown, column) += value;
          continue;
        }
        matrix(t.unknown, column + t.row) += 2 * value * y.factor(t.column, c);
        if (t.row == t.column) continue;
        matrix(t.unknown, column + t.column) += 2 * value * y.factor(t.row, c);
      }
    }
    matrix.row(problem.unknowns).segment(first, y.factor.size()) = y.factor.reshaped();
    first += y.factor.size();
  }
  matrix.row(problem.unknowns).normalize();
  return matrix;
}

void add(const Eigen::VectorXd& step, std::vector<Multiplier>& multipliers) {
  Eigen::Index first = 0;
  for (Multiplier& y : multipliers) {
    y.factor.reshaped() += step.segment(first, y.factor.size());
    first += y.factor.size();
  }
}

}  // namespace

std::vector<Multiplier> polish(const Problem& problem, std::vector<Multiplier> multipliers) {
  if (multipliers.empty() || entries_of(multipliers) * problem.unknowns > kMaxEntries) {
    return multipliers;
  }
  std::vector<Multiplier> best = multipliers;
  double least = HUGE_VAL;
  for (int step = 0; step <= kSteps; ++step) {
    const Weights::Sums sums = Weights(problem, multipliers).sums();
    const Eigen::VectorXd rests = rests_of(sums);
    const double size = rests.lpNorm<Eigen::Infinity>();
    if (!(size < least)) break;
    least = size;
    best = multipliers;
    const Eigen::VectorXd change =
        LeastSquares(derivatives(problem, multipliers, sums)).solve(-rests);
    if (!change.allFinite()) break;
    add(change, multipliers);
  }
  return best;
}

}  // namespace sdpsol
