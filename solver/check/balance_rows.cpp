#include "solver/check/balance_rows.h"

#include <cmath>
#include <numbers>
#include <span>

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

/// Calls visit(row, column, factor that packing puts on the entry) for the upper
/// triangle of a symmetric matrix in the order of packed rows.
template <typename Visitor>
void for_each_packed(Eigen::Index size, Visitor visit) {
  for (Eigen::Index column = 0; column < size; ++column) {
    for (Eigen::Index row = 0; row < column; ++row) visit(row, column, std::numbers::sqrt2);
    visit(column, column, 1.0);
  }
}

using Terms = std::span<const AffineTerm>;

/// Adds L' * F * L, term by term: best where F has few.
void add_term_by_term(const Eigen::MatrixXd& factor, Terms terms, double* to) {
  for (const AffineTerm& t : terms) {
    if (t.value == 0) continue;
    const auto li = factor.row(t.row);
    const auto lj = factor.row(t.column);
    const bool diagonal = t.row == t.column;
    double* entry = to;
    for_each_packed(factor.cols(), [&](Eigen::Index a, Eigen::Index b, double packing) {
      const double product = diagonal ? li[a] * li[b] : li[a] * lj[b] + lj[a] * li[b];
      *entry++ += t.value * product * packing;
    });
  }
}

/// Adds L' * (F * L).
void add_product(const Eigen::MatrixXd& factor, Terms terms, double* to) {
  const Eigen::MatrixXd transposed = factor.transpose();
  Eigen::MatrixXd product = Eigen::MatrixXd::Zero(transposed.rows(), transposed.cols());
  for (const AffineTerm& t : terms) {
    product.col(t.row) += t.value * transposed.col(t.column);
    if (t.row != t.column) product.col(t.column) += t.value * transposed.col(t.row);
  }
  const Eigen::MatrixXd sum = transposed * product.transpose();
  for_each_packed(sum.rows(), [&](Eigen::Index a, Eigen::Index b, double packing) {
    *to++ += sum(a, b) * packing;
  });
}

/// Adds L' * F * L of one run of terms to a packed row.
/// @return a bound on the rounding.
double add_terms(const Weights& weights, std::size_t b, Terms terms, double* row) {
  const Eigen::MatrixXd& factor = weights.multiplier(b).factor;
  double* const to = row + weights.offset(b);
  double size = 0;
  if (weights.is_equation(b)) {
    for (const AffineTerm& t : terms) {
      *to += t.value * factor(0, 0);
      size += std::fabs(t.value * factor(0, 0));
    }
    return sum_rounding(terms.size()) * size;
  }
  const Eigen::VectorXd norms = factor.rowwise().norm();
  for (const AffineTerm& t : terms) {
    size += (t.row == t.column ? 1 : 2) * std::fabs(t.value) * norms[t.row] * norms[t.column];
  }
  const auto rows = static_cast<std::size_t>(factor.rows());
  if (terms.size() <= rows) {
    add_term_by_term(factor, terms, to);
    return sum_rounding(terms.size()) * size;
  }
  add_product(factor, terms, to);
  return sum_rounding(2 * rows) * size;
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
  result.matrix = BalanceRows::Matrix::Zero(count + 1, size);  // the last row: the constants
  double constant_error = 0;
  for (std::size_t b = 0; b < weights.count(); ++b) {
    for_each_unknown(weights.block(b), [&](const AffineTerm* first, const AffineTerm* last) {
      const Eigen::Index row = row_of[static_cast<std::size_t>(first->unknown - kConstant)];
      if (row < 0) return;
      const bool constant = first->unknown == kConstant;
      const double error = add_terms(weights, b, Terms(first, last),
                                     result.matrix.row(constant ? count : row).data());
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
