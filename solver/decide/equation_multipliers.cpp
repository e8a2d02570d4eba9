#include "solver/decide/equation_multipliers.h"

#include <cmath>
#include <utility>

#include "solver/dense/least_squares.h"

namespace sdpsol {
namespace {

constexpr double kRounding = 1e-12;

/// One column per row, one entry per unknown, scaled; `constants` one per row.
struct Columns {
  Eigen::MatrixXd matrix;
  Eigen::VectorXd constants;
};

Columns columns_of(const Problem& problem, const std::vector<PinnedRow>& rows,
                   const std::vector<double>& sizes) {
  const auto count = static_cast<Eigen::Index>(rows.size());
  Columns columns{Eigen::MatrixXd::Zero(problem.unknowns, count), Eigen::VectorXd::Zero(count)};
  for (Eigen::Index e = 0; e < count; ++e) {
    for (const AffineTerm& t : problem.blocks[rows[static_cast<std::size_t>(e)].block].terms) {
      if (t.unknown == kConstant) {
        columns.constants[e] = t.value;
      } else {
        columns.matrix(t.unknown, e) = t.value * sizes[static_cast<std::size_t>(t.unknown)];
      }
    }
  }
  return columns;
}

/// The first coefficient that is not 0.
double leading_coefficient(const Block& row) {
  for (const AffineTerm& t : row.terms) {
    if (varies(t)) return t.value;
  }
  return 1;
}

/// The multiplier that puts a signed weight on a row; on its opposite where the
/// sign asks for that. Nothing if there is none, or if the weight is no number.
std::optional<Multiplier> pinned_multiplier(const Problem& problem, const PinnedRow& row,
                                            double weight) {
  if (!std::isfinite(weight) || weight == 0) return std::nullopt;
  const auto multiplier = [](std::size_t block, double factor) {
    return Multiplier{block, Eigen::MatrixXd::Constant(1, 1, factor)};
  };
  const Block& block = problem.blocks[row.block];
  if (block.sense == Sense::kEqual) return multiplier(row.block, weight);
  if (weight > 0) return multiplier(row.block, std::sqrt(weight));
  if (!row.opposite) return std::nullopt;
  const double ratio =
      leading_coefficient(block) / leading_coefficient(problem.blocks[*row.opposite]);
  return multiplier(*row.opposite, std::sqrt(-weight * std::fabs(ratio)));
}

/// What the multipliers leave of each unknown, times its size.
Eigen::VectorXd rest_of(const Problem& problem, const std::vector<double>& sizes,
                        const std::vector<Multiplier>& multipliers) {
  Eigen::VectorXd rest = Eigen::VectorXd::Zero(problem.unknowns);
  for (const Multiplier& y : multipliers) {
    const Eigen::MatrixXd weight = y.factor * y.factor.transpose();
    for (const AffineTerm& t : problem.blocks[y.block].terms) {
      if (t.unknown == kConstant) continue;
      rest[t.unknown] += (t.row == t.column ? 1 : 2) * weight(t.row, t.column) * t.value *
                         sizes[static_cast<std::size_t>(t.unknown)];
    }
  }
  return rest;
}

}  // namespace

void append_equation_multipliers(const Problem& problem, const std::vector<PinnedRow>& rows,
                                 const std::vector<double>& sizes,
                                 std::vector<Multiplier>& multipliers, bool for_objective) {
  if (rows.empty()) return;
  Eigen::VectorXd rest = rest_of(problem, sizes, multipliers);
  for (std::size_t k = 0; for_objective && k < sizes.size(); ++k) {
    rest[static_cast<Eigen::Index>(k)] += problem.objective->cost[k] * sizes[k];
  }
  const Eigen::MatrixXd matrix = columns_of(problem, rows, sizes).matrix;
  const Eigen::VectorXd weights = LeastSquares(matrix).solve(-rest);
  // An equation that only rounding would weigh must not take part: dependences
  // among the others are exact, with it they are not.
  const Eigen::VectorXd effects = matrix.colwise().norm().transpose().cwiseProduct(weights);
  const double least = kRounding * effects.cwiseAbs().maxCoeff();
  for (Eigen::Index e = 0; e < weights.size(); ++e) {
    if (!(std::fabs(effects[e]) > least)) continue;
    auto multiplier = pinned_multiplier(problem, rows[static_cast<std::size_t>(e)], weights[e]);
    if (multiplier) multipliers.push_back(std::move(*multiplier));
  }
}

std::vector<Multiplier> contradiction_among(const Problem& problem,
                                            const std::vector<PinnedRow>& rows,
                                            const std::vector<double>& sizes) {
  // What least squares leaves of A'w = -c is orthogonal to every column of A: as
  // weights it cancels all unknowns, and its product with c is its own square.
  const Columns columns = columns_of(problem, rows, sizes);
  const Eigen::MatrixXd transposed = columns.matrix.transpose();
  const Eigen::VectorXd solution = LeastSquares(transposed).solve(columns.constants);
  const Eigen::VectorXd left = columns.constants - transposed * solution;
  std::vector<Multiplier> multipliers;
  for (std::size_t e = 0; e < rows.size(); ++e) {
    const double weight = -left[static_cast<Eigen::Index>(e)];
    if (std::fabs(weight) < kRounding * columns.constants.norm()) continue;
    if (auto multiplier = pinned_multiplier(problem, rows[e], weight)) {
      multipliers.push_back(std::move(*multiplier));
    }
  }
  return multipliers;
}

}  // namespace sdpsol
