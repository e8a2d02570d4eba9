// Which columns of a matrix are independent, and what it maps to zero.
#pragma once

#include <Eigen/Core>
#include <vector>

namespace sdpsol {

/// The columns of a matrix in the order in which they were found independent.
struct ColumnOrder {
  Eigen::Index rank = 0;
  std::vector<Eigen::Index> order;  ///< every column once; the first `rank` are independent
};

/// @param threshold columns that stand out of the span of the others by less than
///     this share of the longest are dependent.
/// Method: Householder QR with column pivoting.
ColumnOrder order_columns(const Eigen::MatrixXd& matrix, double threshold);

/// Orthonormal base of the vectors x with matrix * x = 0, n x (n - rank).
/// @param matrix m x n.
Eigen::MatrixXd nullspace_base(const Eigen::MatrixXd& matrix);

}  // namespace sdpsol
