#include "solver/dense/subspaces.h"

#include <Eigen/QR>

namespace sdpsol {
namespace {

using PivotedQr = Eigen::ColPivHouseholderQR<Eigen::MatrixXd>;

}  // namespace

ColumnOrder order_columns(const Eigen::MatrixXd& matrix, double threshold) {
  ColumnOrder columns;
  columns.order.resize(static_cast<std::size_t>(matrix.cols()));
  if (matrix.size() == 0) {
    for (std::size_t i = 0; i < columns.order.size(); ++i) {
      columns.order[i] = static_cast<Eigen::Index>(i);
    }
    return columns;
  }
  PivotedQr qr(matrix);
  qr.setThreshold(threshold);
  columns.rank = qr.rank();
  const auto& pivots = qr.colsPermutation().indices();
  columns.order.assign(pivots.begin(), pivots.end());
  return columns;
}

Eigen::MatrixXd nullspace_base(const Eigen::MatrixXd& matrix) {
  // Columns of Q in matrix' * P = Q * R: the row space first, then its complement.
  const PivotedQr qr(matrix.transpose());
  const Eigen::MatrixXd q = qr.householderQ();
  return q.rightCols(matrix.cols() - qr.rank());
}

}  // namespace sdpsol
