#include "solver/check/equations.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "solver/check/dependence.h"
#include "solver/check/evaluate.h"
#include "solver/check/exact_sum.h"
#include "solver/check/positive.h"
#include "solver/dense/least_squares.h"
#include "solver/dense/subspaces.h"

namespace sdpsol {
namespace {

constexpr double kIndependentEquation = 1e-9;

/// The equations in unknowns scaled to unit columns, so that metres and
/// millimetres give one answer: row e reads sum over k of matrix(e,k) * w_k = -residual,
/// v_k + column_scale[k] * w_k being a solution.
struct ScaledEquations {
  Eigen::MatrixXd matrix;
  Eigen::VectorXd row_scale;
  Eigen::VectorXd column_scale;
};

ScaledEquations scale_equations(const Problem& problem, const std::vector<std::size_t>& equations) {
  const auto rows = static_cast<Eigen::Index>(equations.size());
  ScaledEquations scaled;
  scaled.matrix = Eigen::MatrixXd::Zero(rows, problem.unknowns);
  for (Eigen::Index e = 0; e < rows; ++e) {
    for (const AffineTerm& t : problem.blocks[equations[static_cast<std::size_t>(e)]].terms) {
      if (t.unknown != kConstant) scaled.matrix(e, t.unknown) = t.value;
    }
  }
  scaled.row_scale = Eigen::VectorXd::Ones(rows);
  scaled.column_scale = Eigen::VectorXd::Ones(problem.unknowns);
  for (int pass = 0; pass < 2; ++pass) {
    for (Eigen::Index e = 0; e < rows; ++e) {
      const double size = scaled.matrix.row(e).lpNorm<Eigen::Infinity>();
      if (!(size > 0)) continue;
      const double power = std::exp2(-std::ilogb(size));  // exact scaling
      scaled.matrix.row(e) *= power;
      scaled.row_scale[e] *= power;
    }
    for (Eigen::Index k = 0; k < scaled.matrix.cols(); ++k) {
      const double size = scaled.matrix.col(k).lpNorm<Eigen::Infinity>();
      if (!(size > 0)) continue;
      const double power = std::exp2(-std::ilogb(size));
      scaled.matrix.col(k) *= power;
      scaled.column_scale[k] *= power;
    }
  }
  return scaled;
}

ExactSum exact_residual(const Block& row, const std::vector<double>& point) {
  ExactSum sum;
  for (const AffineTerm& t : row.terms) {
    if (t.unknown == kConstant) {
      sum.add(t.value);
    } else {
      sum.add_product(t.value, point[static_cast<std::size_t>(t.unknown)]);
    }
  }
  return sum;
}

/// An equation and the power of two that it is multiplied by.
struct ScaledEquation {
  const Block& block;
  double scale = 1;
};

/// `row` is exactly the combination of those in `basis`, all of them scaled, constants
/// included.
bool follows_exactly(const Problem& problem, const ScaledEquation& row,
                     const std::vector<ScaledEquation>& basis, const Eigen::VectorXd& combination) {
  const double denominator = common_denominator(combination);
  if (denominator == 0) return false;
  std::vector<ExactSum> sums(static_cast<std::size_t>(problem.unknowns) + 1);
  auto add = [&](const ScaledEquation& equation, double weight) {
    for (const AffineTerm& t : equation.block.terms) {
      sums[static_cast<std::size_t>(t.unknown - kConstant)].add_product(weight * equation.scale,
                                                                        t.value);
    }
  };
  add(row, -denominator);
  for (std::size_t i = 0; i < basis.size(); ++i) {
    add(basis[i], std::round(combination[static_cast<Eigen::Index>(i)] * denominator));
  }
  for (const ExactSum& sum : sums) {
    if (!sum.certainly_zero()) return false;
  }
  return true;
}

struct Residuals {
  Eigen::VectorXd bounds;  ///< on their sizes, in the scale of the rows
  bool all_zero = true;    ///< exactly
};

/// Nothing if one of them is beyond exact arithmetic.
std::optional<Residuals> bound_residuals(const Problem& problem,
                                         const std::vector<std::size_t>& equations,
                                         const std::vector<double>& point,
                                         const Eigen::VectorXd& row_scale) {
  Residuals residuals{Eigen::VectorXd(row_scale.size())};
  for (Eigen::Index e = 0; e < row_scale.size(); ++e) {
    const ExactSum sum =
        exact_residual(problem.blocks[equations[static_cast<std::size_t>(e)]], point);
    if (!sum.exact()) return std::nullopt;
    residuals.all_zero = residuals.all_zero && sum.certainly_zero();
    residuals.bounds[e] = std::fabs(sum.estimate()) * (1 + 1e-12) * row_scale[e];
  }
  return residuals;
}

/// True if every equation that is not among the independent ones is exactly a combination
/// of these.
/// @param chosen the independent rows, scaled.
bool others_follow(const Problem& problem, const std::vector<std::size_t>& equations,
                   const ScaledEquations& scaled, const ColumnOrder& rows,
                   const Eigen::MatrixXd& chosen) {
  const auto equation = [&](Eigen::Index i) {
    const Eigen::Index e = rows.order[static_cast<std::size_t>(i)];
    return ScaledEquation{problem.blocks[equations[static_cast<std::size_t>(e)]],
                          scaled.row_scale[e]};
  };
  std::vector<ScaledEquation> basis;
  for (Eigen::Index i = 0; i < rows.rank; ++i) basis.push_back(equation(i));
  // Combined as they are scaled: an equation that is repeated in other units is no small
  // fraction of the other.
  const LeastSquares combine(chosen.transpose());
  for (Eigen::Index i = rows.rank; i < scaled.matrix.rows(); ++i) {
    const Eigen::Index e = rows.order[static_cast<std::size_t>(i)];
    const Eigen::VectorXd combination = combine.solve(scaled.matrix.row(e).transpose());
    if (!combination.allFinite() || !follows_exactly(problem, equation(i), basis, combination)) {
      return false;
    }
  }
  return true;
}

}  // namespace

void move_onto(const Problem& problem, const std::vector<std::size_t>& equations,
               std::vector<double>& point) {
  if (problem.unknowns == 0) return;
  const ScaledEquations scaled = scale_equations(problem, equations);
  const LeastSquares solver(scaled.matrix);
  for (int pass = 0; pass < 3; ++pass) {
    Eigen::VectorXd residual(scaled.matrix.rows());
    for (Eigen::Index e = 0; e < residual.size(); ++e) {
      const Block& row = problem.blocks[equations[static_cast<std::size_t>(e)]];
      residual[e] = exact_residual(row, point).estimate() * scaled.row_scale[e];
    }
    if (residual.isZero(0)) return;
    const Eigen::VectorXd step = solver.solve(residual);
    if (!step.allFinite()) return;
    for (Eigen::Index k = 0; k < step.size(); ++k) {
      point[static_cast<std::size_t>(k)] -= step[k] * scaled.column_scale[k];
    }
  }
}

std::optional<std::vector<double>> distance_to_solution(const Problem& problem,
                                                        const std::vector<std::size_t>& equations,
                                                        const std::vector<double>& point) {
  const ScaledEquations scaled = scale_equations(problem, equations);
  const auto residual = bound_residuals(problem, equations, point, scaled.row_scale);
  if (!residual) return std::nullopt;
  if (residual->all_zero) return std::vector<double>{};
  const ColumnOrder rows = order_columns(scaled.matrix.transpose(), kIndependentEquation);
  if (rows.rank == 0) return std::nullopt;

  Eigen::MatrixXd chosen(rows.rank, scaled.matrix.cols());
  double largest = 0;
  for (Eigen::Index i = 0; i < rows.rank; ++i) {
    const Eigen::Index e = rows.order[static_cast<std::size_t>(i)];
    chosen.row(i) = scaled.matrix.row(e);
    largest = std::max(largest, residual->bounds[e]);
  }
  if (!others_follow(problem, equations, scaled, rows, chosen)) return std::nullopt;

  // Scaling by powers of two is exact, so the rows are known without error; the
  // product rounds.
  const Eigen::MatrixXd gram = chosen * chosen.transpose();
  const Eigen::MatrixXd error = (chosen.cwiseAbs() * chosen.cwiseAbs().transpose()) *
                                sum_rounding(static_cast<std::size_t>(scaled.matrix.cols()));
  const double smallest =
      proven_smallest_singular_value(gram, error, {1.0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6});
  if (!(smallest > 0)) return std::nullopt;
  // Residuals this small may have underflowed on the way.
  const double norm =
      largest * std::sqrt(static_cast<double>(rows.rank)) + std::numeric_limits<double>::min();
  const double distance = norm / smallest * (1 + 1e-10);
  std::vector<double> distances;
  for (Eigen::Index k = 0; k < scaled.column_scale.size(); ++k) {
    const bool touched = !chosen.col(k).isZero(0);
    distances.push_back(touched ? distance * scaled.column_scale[k] : 0.0);
  }
  return distances;
}

}  // namespace sdpsol
