#include "solver/check/evaluate.h"

#include <cmath>
#include <limits>

#include "solver/dense/symmetric_eigen.h"

namespace sdpsol {

Evaluated evaluate(const Block& block, const std::vector<double>& point) {
  Evaluated at;
  at.value = Eigen::MatrixXd::Zero(block.size, block.size);
  at.magnitude = Eigen::MatrixXd::Zero(block.size, block.size);
  std::size_t runs = 0;
  std::int32_t previous = kConstant - 1;
  for (const AffineTerm& t : block.terms) {
    const double factor = t.unknown == kConstant ? 1.0 : point[static_cast<std::size_t>(t.unknown)];
    at.value(t.row, t.column) += factor * t.value;
    at.magnitude(t.row, t.column) += std::fabs(factor) * t.magnitude;
    if (t.unknown != previous) ++runs;
    previous = t.unknown;
  }
  at.value.triangularView<Eigen::StrictlyLower>() = at.value.transpose();
  at.magnitude.triangularView<Eigen::StrictlyLower>() = at.magnitude.transpose();
  at.rounding = sum_rounding(runs);
  return at;
}

double relative_room(const Evaluated& at) {
  if (at.value.rows() == 1) {
    return at.magnitude(0, 0) > 0 ? at.value(0, 0) / at.magnitude(0, 0) : 0.0;
  }
  const Eigen::VectorXd size = at.magnitude.diagonal();
  if (!(size.minCoeff() > 0)) return -std::numeric_limits<double>::infinity();
  const Eigen::VectorXd scale = size.cwiseSqrt().cwiseInverse();
  return symmetric_eigenvalues(scale.asDiagonal() * at.value * scale.asDiagonal())[0];
}

}  // namespace sdpsol
