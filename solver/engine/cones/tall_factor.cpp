#include "solver/engine/cones/tall_factor.h"

#include <utility>

#include "solver/engine/cones/fixed_numbers.h"

namespace sdpsol::cones {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

namespace {

/// Independent columns, few of them, made orthonormal.
/// Method: modified Gram-Schmidt, twice, which is enough (Giraud, Langou, Rozloznik 2005).
MatrixXd orthonormal(MatrixXd columns) {
  for (int pass = 0; pass < 2; ++pass) {
    for (Index j = 0; j < columns.cols(); ++j) {
      for (Index i = 0; i < j; ++i) {
        columns.col(j) -= columns.col(i).dot(columns.col(j)) * columns.col(i);
      }
      columns.col(j).normalize();
    }
  }
  return columns;
}

}  // namespace

TallFactor::TallFactor(MatrixXd f) : more_rows_(f.rows() - f.cols()) {
  const Index n = f.cols();
  if (n == 0) {
    null_base_ = MatrixXd::Identity(more_rows_, more_rows_);
    has_full_rank_ = true;
    return;
  }
  // Every row gets its part of one of the last ones, so that mixing costs no product.
  shares_ = MatrixXd::Zero(n, more_rows_);
  for (Index i = 0; more_rows_ > 0 && i < n; ++i) shares_(i, i % more_rows_) = fixed_number(i);
  factor_.compute(mix(f));
  has_full_rank_ = factor_.rcond() >= kFullRank;
  if (!has_full_rank_ || more_rows_ == 0) {
    null_base_.resize(f.rows(), 0);
    return;
  }
  const MatrixXd m = factor_.transpose().solve(f.bottomRows(more_rows_).transpose());
  MatrixXd null(f.rows(), more_rows_);
  null.topRows(n) = -m;
  null.bottomRows(more_rows_) =
      MatrixXd::Identity(more_rows_, more_rows_) - shares_.transpose() * m;
  null_base_ = orthonormal(std::move(null));
}

/// (I S)*x
MatrixXd TallFactor::mix(const MatrixXd& x) const {
  const Index n = shares_.rows();
  MatrixXd mixed = x.topRows(n);
  for (Index i = 0; more_rows_ > 0 && i < n; ++i) {
    mixed.row(i) += shares_(i, i % more_rows_) * x.row(n + i % more_rows_);
  }
  return mixed;
}

VectorXd TallFactor::preimage(const VectorXd& x) const {
  if (shares_.rows() == 0) return {};
  return factor_.solve(mix(x));
}

VectorXd TallFactor::pulled_back(const VectorXd& c) const {
  VectorXd b = VectorXd::Zero(shares_.rows() + more_rows_);
  if (shares_.rows() == 0) return b;
  const VectorXd top = factor_.transpose().solve(c);
  b.head(top.size()) = top;
  b.tail(more_rows_) = shares_.transpose() * top;
  b -= null_base_ * (null_base_.transpose() * b);
  return b;
}

}  // namespace sdpsol::cones
