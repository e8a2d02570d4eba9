// Least squares with one matrix and any number of right sides.
#pragma once

#include <Eigen/QR>

namespace sdpsol {

class LeastSquares {
 public:
  /// @param matrix m x n, of any rank.
  explicit LeastSquares(const Eigen::MatrixXd& matrix);

  /// The x with the least |matrix * x - right|; of several the one with the least |x|.
  Eigen::VectorXd solve(const Eigen::VectorXd& right) const;

 private:
  Eigen::CompleteOrthogonalDecomposition<Eigen::MatrixXd> factor_;
};

}  // namespace sdpsol
