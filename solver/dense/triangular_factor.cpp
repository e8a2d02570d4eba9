#include "solver/dense/triangular_factor.h"

#include <Eigen/QR>

namespace sdpsol {

Eigen::MatrixXd triangular_factor(const Eigen::MatrixXd& matrix) {
  const Eigen::HouseholderQR<Eigen::MatrixXd> qr(matrix);
  return qr.matrixQR().topRows(matrix.cols()).triangularView<Eigen::Upper>();
}

}  // namespace sdpsol
