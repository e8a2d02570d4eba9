#include "solver/check/balance.h"

#include <Eigen/Cholesky>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "solver/check/dependence.h"
#include "solver/check/evaluate.h"
#include "solver/check/positive.h"
#include "solver/dense/least_squares.h"
#include "solver/dense/subspaces.h"

namespace sdpsol {
namespace {

// Rows that stand out of the span of the others by less are not used to settle
// anything: their correction could be as large as the multipliers.
constexpr double kIndependent = 1e-7;

// Cutting matrices of so few rows into pieces costs more than their product.
constexpr Eigen::Index kSmallGram = 24;

/// A*A'.
Eigen::MatrixXd gram_of(const Eigen::MatrixXd& a) {
  if (a.rows() <= kSmallGram) return a.lazyProduct(a.transpose());
  Eigen::MatrixXd gram = Eigen::MatrixXd::Zero(a.rows(), a.rows());
  gram.selfadjointView<Eigen::Lower>().rankUpdate(a);
  gram.triangularView<Eigen::StrictlyUpper>() = gram.transpose();
  return gram;
}

}  // namespace

Balance::Balance(const Problem& problem, const std::vector<Multiplier>& multipliers, BalanceOf what,
                 const std::vector<std::int32_t>& charged)
    : problem_(problem),
      multipliers_(multipliers),
      weights_(problem, multipliers),
      system_(gather_balance_rows(problem, weights_, what)) {
  switch (what) {
    case BalanceOf::kNothing:
      take_as_they_are();
      return;
    case BalanceOf::kObjective:
      if (problem.boxed) {
        correct_for_bound(charged);
      } else if (!settle_all_rows()) {
        take_as_they_are();
      }
      break;
    case BalanceOf::kUnknowns:
    case BalanceOf::kUnknownsAndConstant:
      correct();
      break;
  }
  if (!cones_hold()) take_as_they_are();
}

bool Balance::is_unsettled(std::int32_t unknown) const {
  return std::find(unsettled_.begin(), unsettled_.end(), unknown) != unsettled_.end();
}

void Balance::leave_all_unsettled() {
  sums_ = weights_.sums();
  correction_ = 0;
  unsettled_.clear();
  for (const BalanceRows::Row& row : system_.rows) unsettled_.push_back(row.unknown);
}

void Balance::take_as_they_are() {
  weights_.set_identity();
  leave_all_unsettled();
}

/// |what is left of each row|, rounding included, in the row's own scale.
Eigen::VectorXd Balance::residual_bounds() const {
  Eigen::VectorXd bounds(static_cast<Eigen::Index>(system_.rows.size()));
  for (std::size_t r = 0; r < system_.rows.size(); ++r) {
    const auto k = static_cast<std::size_t>(system_.rows[r].unknown - kConstant);
    const long double left = sums_.values[k] - static_cast<long double>(system_.rows[r].target);
    bounds[static_cast<Eigen::Index>(r)] =
        (static_cast<double>(std::fabs(left)) * (1 + 0x1p-50) + sums_.errors[k]) /
        system_.rows[r].scale;
  }
  return bounds;
}

/// Least squares steps of M onto the balance of the given rows.
void Balance::move(const Eigen::MatrixXd& chosen, const Eigen::MatrixXd& gram,
                   const std::vector<Eigen::Index>& rows) {
  const Eigen::LLT<Eigen::MatrixXd> solver(gram);
  for (int pass = 0; pass < 3; ++pass) {
    Eigen::VectorXd residual = chosen * weights_.packed();
    for (Eigen::Index i = 0; i < residual.size(); ++i) {
      const BalanceRows::Row& row =
          system_.rows[static_cast<std::size_t>(rows[static_cast<std::size_t>(i)])];
      residual[i] -= row.target / row.scale;
    }
    weights_.packed() -= chosen.transpose() * solver.solve(residual);
  }
}

/// A bound inside the box needs no exact balance: what little M leaves, charged
/// to the box, costs less than the distance to exactly balanced multipliers. So
/// nothing about the rows has to be proven here; a small ridge keeps dependent
/// ones harmless.
void Balance::correct_for_bound(const std::vector<std::int32_t>& charged) {
  std::vector<Eigen::Index> rows;
  for (std::size_t r = 0; r < system_.rows.size(); ++r) {
    const std::int32_t unknown = system_.rows[r].unknown;
    if (std::find(charged.begin(), charged.end(), unknown) == charged.end()) {
      rows.push_back(static_cast<Eigen::Index>(r));
    }
  }
  if (!rows.empty()) {
    Eigen::MatrixXd copy;
    const Eigen::MatrixXd& chosen = choose(rows, copy);
    Eigen::MatrixXd gram = gram_of(chosen);
    gram.diagonal().array() += 1e-14;
    move(chosen, gram, rows);
  }
  leave_all_unsettled();
}

/// The given rows of the system. It may be large: all of them in their order are no copy.
const Eigen::MatrixXd& Balance::choose(const std::vector<Eigen::Index>& rows,
                                       Eigen::MatrixXd& copy) const {
  if (rows.size() == system_.rows.size() && std::is_sorted(rows.begin(), rows.end())) {
    return system_.matrix;
  }
  copy = system_.matrix(rows, Eigen::all);
  return copy;
}

/// Moves M onto the balance of the given rows and bounds the correction that is
/// left. False, and nothing changed, if the rows are not provably independent.
bool Balance::settle(const std::vector<Eigen::Index>& rows) {
  Eigen::MatrixXd copy;
  const Eigen::MatrixXd& chosen = choose(rows, copy);
  double worst_error = 0;
  for (const Eigen::Index r : rows) {
    worst_error = std::max(worst_error, system_.rows[static_cast<std::size_t>(r)].error);
  }
  const Eigen::MatrixXd gram = gram_of(chosen);
  // Rows have norm 1: an entry of the exact gram matrix differs by the rounding
  // of the product and by the error of the two rows.
  const double gram_error =
      sum_rounding(static_cast<std::size_t>(weights_.packed().size())) + 3 * worst_error;
  const double smallest = proven_smallest_singular_value(
      gram, Eigen::MatrixXd::Constant(gram.rows(), gram.cols(), gram_error),
      {0.3, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 3e-7});
  if (!(smallest > 0)) return false;

  move(chosen, gram, rows);
  if (!weights_.packed().allFinite()) {
    weights_.set_identity();
    return false;
  }
  sums_ = weights_.sums();
  const Eigen::VectorXd bounds = residual_bounds();
  double squares = 0;
  for (const Eigen::Index r : rows) squares += bounds[r] * bounds[r];
  correction_ = std::sqrt(squares) * (1 + 1e-10) / smallest;
  return true;
}

/// Settles as many rows as provably stand on their own; the others are settled
/// only where they depend on these exactly, coefficient by coefficient.
void Balance::settle_independent_rows() {
  const auto [rank, order] = order_columns(system_.matrix.transpose(), kIndependent);
  const std::vector<Eigen::Index> independent(order.begin(), order.begin() + rank);
  const std::vector<Eigen::Index> dependent(order.begin() + rank, order.end());
  if (independent.empty() || !settle(independent)) {
    leave_all_unsettled();
    return;
  }
  std::vector<std::int32_t> basis;
  Eigen::MatrixXd columns(weights_.packed().size(), rank);
  for (Eigen::Index i = 0; i < rank; ++i) {
    const BalanceRows::Row& row =
        system_.rows[static_cast<std::size_t>(independent[static_cast<std::size_t>(i)])];
    basis.push_back(row.unknown);
    columns.col(i) =
        system_.matrix.row(independent[static_cast<std::size_t>(i)]).transpose() * row.scale;
  }
  const LeastSquares solver(columns);
  for (const Eigen::Index r : dependent) {
    const BalanceRows::Row& row = system_.rows[static_cast<std::size_t>(r)];
    const Eigen::VectorXd combination = solver.solve(system_.matrix.row(r).transpose() * row.scale);
    if (!is_exact_combination(problem_, multipliers_, row.unknown, basis, combination)) {
      unsettled_.push_back(row.unknown);
    }
  }
}

bool Balance::settle_all_rows() {
  if (system_.rows.empty()) {
    sums_ = weights_.sums();
    return true;
  }
  std::vector<Eigen::Index> all(system_.rows.size());
  std::iota(all.begin(), all.end(), 0);
  return static_cast<Eigen::Index>(all.size()) <= weights_.packed().size() && settle(all);
}

void Balance::correct() {
  if (!settle_all_rows()) settle_independent_rows();
}

bool Balance::cones_hold() const {
  for (std::size_t b = 0; b < weights_.count(); ++b) {
    if (weights_.is_equation(b)) continue;
    if (weights_.multiplier(b).factor.cols() == 1) {
      const double m = weights_.packed()[weights_.offset(b)] - correction_;
      if (!certainly_positive(m, std::fabs(m) * 0x1p-52)) return false;
      continue;
    }
    Eigen::MatrixXd m = weights_.middle(b);
    // A correction of norm d moves no eigenvalue by more than d. The error covers
    // the rounding of the subtraction.
    m.diagonal().array() -= correction_;
    const Eigen::MatrixXd error = m.cwiseAbs() * 0x1p-52;
    if (!certainly_positive_definite(m, error)) return false;
  }
  return true;
}

std::vector<double> Balance::rests() const {
  std::vector<double> rests = system_.unreached;
  const Eigen::VectorXd bounds = residual_bounds();
  for (std::size_t r = 0; r < system_.rows.size(); ++r) {
    const BalanceRows::Row& row = system_.rows[r];
    if (row.unknown == kConstant || !is_unsettled(row.unknown)) continue;
    rests[static_cast<std::size_t>(row.unknown)] =
        (bounds[static_cast<Eigen::Index>(r)] + correction_ * (1 + row.error)) * row.scale *
        (1 + 1e-12);
  }
  return rests;
}

bool Balance::nearly_balances(double share) const {
  const std::vector<double> left = rests();
  for (std::size_t k = 0; k < left.size(); ++k) {
    if (!(left[k] <= share * sums_.sizes[k + 1])) return false;
  }
  return true;
}

Balance::Enclosure Balance::constant() const {
  const auto middle = static_cast<double>(sums_.values[0]);
  return {middle,
          sums_.errors[0] + std::fabs(middle) * 0x1p-52 + correction_ * system_.constant_norm};
}

}  // namespace sdpsol
