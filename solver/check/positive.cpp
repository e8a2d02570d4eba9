#include "solver/check/positive.h"

#include <Eigen/Cholesky>
#include <cmath>

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
  const double size = static_cast<double>(n);
  const double backward = 2 * (size + 2) * size * unit;
  for (Eigen::Index i = 0; i < n; ++i) {
    // Both matrices are symmetric: the sum of a row is that of its column.
    double errors = 0;
    double values = 0;
    for (Eigen::Index j = 0; j < n; ++j) {
      errors += error(j, i) * scale[j];
      values += std::fabs(scaled(j, i));
    }
    scaled(i, i) -= errors * scale[i] * (1 + 16 * unit) + values * (8 * unit);
    scaled(i, i) -= backward + 4 * unit;
  }
  const Eigen::LLT<Eigen::Ref<Eigen::MatrixXd>> factor(scaled);  // in place
  // A NaN on the way is no pivot that the factorisation would stop at.
  return factor.info() == Eigen::Success && scaled.diagonal().allFinite();
}

double proven_smallest_singular_value(const Eigen::MatrixXd& gram, const Eigen::MatrixXd& error,
                                      std::initializer_list<double> tried) {
  for (const double s : tried) {
    Eigen::MatrixXd shifted = gram;
    shifted.diagonal().array() -= s * s;
    if (certainly_positive_definite(shifted, error)) return s;
  }
  return 0;
}

}  // namespace sdpsol
