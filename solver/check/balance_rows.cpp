#include "solver/check/balance_rows.h"

#include <cmath>
#include <numbers>

#include "solver/check/evaluate.h"

namespace sdpsol {
namespace {

/// Numbers the unknowns that occur, with a value that is not 0, where a
/// multiplier reaches; -1 for the others. Index 0 stands for the constants, which
/// are only marked.
std::vector<Eigen::Index> number_reached(const Problem& problem, const Weights& weights,
                                         std::vector<BalanceRows::Row>& rows) {
  std::vector<Eigen::Index> row_of(static_cast<std::size_t>(problem.unknowns) + 1, -1);
  for (std::size_t b = 0; b < weights.count(); ++b) {
    for (const AffineTerm& t : weights.block(b).terms) {
      Eigen::Index& row = row_of[static_cast<std::size_t>(t.unknown - kConstant)];
      if (t.value == 0 || row >= 0 || !weights.multiplier(b).reaches(t)) continue;
      row = 0;
      if (t.unknown == kConstant) continue;
      row = static_cast<Eigen::Index>(rows.size());
      rows.push_back({.unknown = t.unknown});
    }
  }
  return row_of;
}

/// Adds L' * F * L of one run of terms to a packed row.
/// @return a bound on the rounding.
double add_terms(const Weights& weights, std::size_t b, const AffineTerm* first,
                 const AffineTerm* last,
                 Eigen::Ref<Eigen::RowVectorXd, 0, Eigen::InnerStride<>> to) {
  const Eigen::MatrixXd& factor = weights.multiplier(b).factor;
  double size = 0;
  for (const AffineTerm* t = first; t != last; ++t) {
    if (t->value == 0) continue;
    if (weights.is_equation(b)) {
      to[weights.offset(b)] += t->value * factor(0, 0);
      size += std::fabs(t->value * factor(0, 0));
      continue;
    }
    const auto li = factor.row(t->row);
    const auto lj = factor.row(t->column);
    const bool diagonal = t->row == t->column;
    Eigen::Index at = weights.offset(b);
    for (Eigen::Index column = 0; column < factor.cols(); ++column) {
      for (Eigen::Index row = 0; row <= column; ++row, ++at) {
        const double entry =
            diagonal ? li[row] * li[column] : li[row] * lj[column] + lj[row] * li[column];
        to[at] += t->value * entry * (row == column ? 1 : std::numbers::sqrt2);
      }
    }
    size += (diagonal ? 1 : 2) * std::fabs(t->value) * li.norm() * lj.norm();
  }
  return sum_rounding(static_cast<std::size_t>(last - first)) * size;
}

void set_targets(const Problem& problem, const std::vector<Eigen::Index>& row_of,
                 BalanceRows& result) {
  for (std::size_t k = 0; k < result.unreached.size(); ++k) {
    const double cost = problem.objective->cost[k];
    if (row_of[k + 1] < 0) {
      result.unreached[k] = std::fabs(cost);
    } else {
      result.rows[static_cast<std::size_t>(row_of[k + 1])].target = -cost;
    }
  }
}

void normalise(BalanceRows& result) {
  for (std::size_t r = 0; r < result.rows.size(); ++r) {
    BalanceRows::Row& row = result.rows[r];
    auto entries = result.matrix.row(static_cast<Eigen::Index>(r));
    row.scale = entries.norm();
    if (!(row.scale > 0)) {  // cancelled in floating point: no M can be found from it
      row.scale = 1;
      continue;
    }
    entries /= row.scale;
    row.error = row.error / row.scale + 4 * 0x1p-52;
  }
}

}  // namespace

BalanceRows gather_balance_rows(const Problem& problem, const Weights& weights, BalanceOf what) {
  BalanceRows result;
  const std::vector<Eigen::Index> row_of = number_reached(problem, weights, result.rows);
  const Eigen::Index size = weights.packed().size();
  const auto count = static_cast<Eigen::Index>(result.rows.size());
  result.matrix = Eigen::MatrixXd::Zero(count + 1, size);  // the last row: the constants
  double constant_error = 0;
  for (std::size_t b = 0; b < weights.count(); ++b) {
    for_each_unknown(weights.block(b), [&](const AffineTerm* first, const AffineTerm* last) {
      const Eigen::Index row = row_of[static_cast<std::size_t>(first->unknown - kConstant)];
      if (row < 0) return;
      const bool constant = first->unknown == kConstant;
      const double error =
          add_terms(weights, b, first, last, result.matrix.row(constant ? count : row));
      (constant ? constant_error : result.rows[static_cast<std::size_t>(row)].error) += error;
    });
  }
  result.constant_norm = (result.matrix.row(count).norm() + constant_error) * (1 + 1e-12);
  // Constants that a multiplier reaches must cancel provably, even where their
  // operator happens to be 0 in floating point.
  if (what == BalanceOf::kUnknownsAndConstant && row_of[0] >= 0) {
    result.rows.push_back({.unknown = kConstant, .error = constant_error});
  } else {
    result.matrix.conservativeResize(count, Eigen::NoChange);
  }
  result.unreached.assign(static_cast<std::size_t>(problem.unknowns), 0.0);
  if (what == BalanceOf::kObjective) set_targets(problem, row_of, result);
  normalise(result);
  return result;
}

}  // namespace sdpsol
