#include "solver/dense/least_squares.h"

namespace sdpsol {

LeastSquares::LeastSquares(const Eigen::MatrixXd& matrix) : factor_(matrix) {}

Eigen::VectorXd LeastSquares::solve(const Eigen::VectorXd& right) const {
  return factor_.solve(right);
}

}  // namespace sdpsol
