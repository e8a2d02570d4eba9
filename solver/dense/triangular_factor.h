// The triangle of a QR factorisation.
#pragma once

#include <Eigen/Core>

namespace sdpsol {

/// R, n x n upper triangular, with R'*R = A'*A, found without forming the product.
/// @param matrix A, m x n, m >= n.
/// Method: Householder QR.
Eigen::MatrixXd triangular_factor(const Eigen::MatrixXd& matrix);

}  // namespace sdpsol
