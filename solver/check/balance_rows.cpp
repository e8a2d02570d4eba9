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

// Factors of so few rows are not worth matrices of their own.
constexpr std::size_t kFewRows = 4;

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

/// Adds L' * F * L of a row, a single number, or F * L of an equation.
/// @return a bound on the rounding.
double add_number(double weight, Terms terms, double* to) {
  double size = 0;
  for (const AffineTerm& t : terms) {
    *to += t.value * weight;
    size += std::fabs(t.value * weight);
  }
  return sum_rounding(terms.size()) * size;
}

/// Adds L' * F * L of one run of terms to the entries of M_b in a packed row.
/// @param norms of the rows of L.
/// @return a bound on the rounding.
double add_terms(const Eigen::MatrixXd& factor, const Eigen::VectorXd& norms, Terms terms,
                 double* to) {
  double size = 0;
  for (const AffineTerm& t : terms) {
    size += (t.row == t.column ? 1 : 2) * std::fabs(t.value) * norms[t.row] * norms[t.column];
  }
  const auto rows = static_cast<std::size_t>(factor.rows());
  if (terms.size() <= rows || rows <= kFewRows) {
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
  Eigen::VectorXd scales = result.matrix.rowwise().norm();
  for (std::size_t r = 0; r < result.rows.size(); ++r) {
    BalanceRows::Row& row = result.rows[r];
    double& scale = scales[static_cast<Eigen::Index>(r)];
    const bool cancelled = !(scale > 0);  // in floating point: no M can be found from it
    if (cancelled) scale = 1;
    row.scale = scale;
    if (!cancelled) row.error = row.error / scale + 4 * 0x1p-52;
  }
  for (auto column : result.matrix.colwise()) column.array() /= scales.array();
}

}  // namespace

BalanceRows gather_balance_rows(const Problem& problem, const Weights& weights, BalanceOf what) {
  BalanceRows result;
  const std::vector<Eigen::Index> row_of = number_reached(problem, weights, result.rows);
  const Eigen::Index size = weights.packed().size();
  const auto count = static_cast<Eigen::Index>(result.rows.size());
  // Constants that a multiplier reaches must cancel provably, even where their
  // operator happens to be 0 in floating point.
  const bool with_constant = what == BalanceOf::kUnknownsAndConstant && row_of[0] >= 0;
  result.matrix = Eigen::MatrixXd::Zero(count + (with_constant ? 1 : 0), size);
  Eigen::RowVectorXd constants = Eigen::RowVectorXd::Zero(size);
  double constant_error = 0;
  Eigen::RowVectorXd entries;
  for (std::size_t b = 0; b < weights.count(); ++b) {
    const Eigen::MatrixXd& factor = weights.multiplier(b).factor;
    const bool single = factor.size() == 1;
    const double weight = factor(0, 0) * (weights.is_equation(b) ? 1 : factor(0, 0));
    const Eigen::VectorXd norms = single ? Eigen::VectorXd() : factor.rowwise().norm();
    const Eigen::Index offset = weights.offset(b);
    const Eigen::Index length = factor.cols() * (factor.cols() + 1) / 2;
    for_each_unknown(weights.block(b), [&](const AffineTerm* first, const AffineTerm* last) {
      const Eigen::Index row = row_of[static_cast<std::size_t>(first->unknown - kConstant)];
      if (row < 0) return;
      const bool constant = first->unknown == kConstant;
      const Terms terms(first, last);
      entries.setZero(length);
      const double error = single ? add_number(weight, terms, entries.data())
                                  : add_terms(factor, norms, terms, entries.data());
      if (constant) {
        constants.segment(offset, length) += entries;
        constant_error += error;
      } else {
        result.matrix.row(row).segment(offset, length) += entries;
        result.rows[static_cast<std::size_t>(row)].error += error;
      }
    });
  }
  result.constant_norm = (constants.norm() + constant_error) * (1 + 1e-12);
  if (with_constant) {
    result.matrix.row(count) = constants;
    result.rows.push_back({.unknown = kConstant, .error = constant_error});
  }
  result.unreached.assign(static_cast<std::size_t>(problem.unknowns), 0.0);
  if (what == BalanceOf::kObjective) set_targets(problem, row_of, result);
  normalise(result);
  return result;
}

}  // namespace sdpsol
