#include "solver/check/positive.h"

#include <Eigen/Cholesky>

namespace sdpsol {

bool certainly_positive_definite(const Eigen::MatrixXd& value, const Eigen::MatrixXd& error) {
  const Eigen::Index n = value.rows();
  if (n == 0) return true;
  if (n == 1) return certainly_positive(value(0, 0), error(0, 0));
  const Eigen::VectorXd diagonal = value.diagonal();
  if (!value.allFinite() || !error.allFinite() || !(diagonal.minCoeff() > 0)) return false;
  const Eigen::VectorXd scale = diagonal.cwiseSqrt().cwiseInverse();
  if (!scale.allFinite()) return false;

  Eigen::MatrixXd scaled = scale.asDiagonal() * value * scale.asDiagonal();
  // |x'Ex| <= sum of |e_ij||x_i||x_j| <= sum over i of x_i^2 * (sum over j of |e_ij|),
  // so the row sums of an entrywise error, put on the diagonal, cover it. The
  // first factor covers the rounding of the products with `scale`.
  const double unit = 0x1p-53;
  const Eigen::VectorXd row_errors =
      (scale.asDiagonal() * error * scale.asDiagonal()).rowwise().sum() * (1 + 16 * unit) +
      scaled.cwiseAbs().rowwise().sum() * (8 * unit);
  const double size = static_cast<double>(n);
  const double backward = 2 * (size + 2) * size * unit;
  scaled.diagonal() -= row_errors;
  scaled.diagonal().array() -= backward + 4 * unit;
  const Eigen::LLT<Eigen::MatrixXd> factor(scaled);
  // A NaN on the way is no pivot that the factorisation would stop at.
  return factor.info() == Eigen::Success && factor.matrixLLT().diagonal().allFinite();
}

}  // namespace sdpsol
