// Eigenvalues of symmetric matrices. Compiled in one place, because the method's
// templates take longer to compile than all that use them.
#pragma once

#include <Eigen/Core>

namespace sdpsol {

struct SymmetricEigen {
  Eigen::VectorXd values;   ///< ascending
  Eigen::MatrixXd vectors;  ///< orthonormal, column i belongs to values[i]
};

/// @param matrix n x n; its lower triangle is read.
/// @return values that are not a number where the iteration does not converge,
///     as with entries that are not finite.
SymmetricEigen symmetric_eigen(const Eigen::MatrixXd& matrix);

/// The values alone, at a third of the cost.
Eigen::VectorXd symmetric_eigenvalues(const Eigen::MatrixXd& matrix);

}  // namespace sdpsol
