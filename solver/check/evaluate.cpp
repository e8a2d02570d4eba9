#include "solver/check/evaluate.h"

#include <cmath>
#include <limits>

#include "solver/dense/symmetric_eigen.h"

namespace sdpsol {
namespace {

double factor_of(const AffineTerm& term, const std::vector<double>& point) {
  return term.unknown == kConstant ? 1.0 : point[static_cast<std::size_t>(term.unknown)];
}

}  // namespace

Evaluated evaluate(const Block& block, const std::vector<double>& point) {
  Evaluated at;
  at.value = Eigen::MatrixXd::Zero(block.size, block.size);
  at.magnitude = Eigen::MatrixXd::Zero(block.size, block.size);
  std::size_t runs = 0;
  std::int32_t previous = kConstant - 1;
  for (const AffineTerm& t : block.terms) {
    const double factor = factor_of(t, point);
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

EvaluatedRow evaluate_row(const Block& row, const std::vector<double>& point) {
  EvaluatedRow at;
  for (const AffineTerm& t : row.terms) {
    const double factor = factor_of(t, point);
    at.value += factor * t.value;
    at.magnitude += std::fabs(factor) * t.magnitude;
  }
  at.rounding = sum_rounding(row.terms.size());
  return at;
}

double relative_room(const EvaluatedRow& at) {
  return at.magnitude > 0 ? at.value / at.magnitude : 0.0;
}

double relative_room(const Evaluated& at) {
  if (at.value.rows() == 1) {
    return relative_room(EvaluatedRow{at.value(0, 0), at.magnitude(0, 0), at.rounding});
  }
  const Eigen::VectorXd size = at.magnitude.diagonal();
  if (!(size.minCoeff() > 0)) return -std::numeric_limits<double>::infinity();
  const Eigen::VectorXd scale = size.cwiseSqrt().cwiseInverse();
  return symmetric_eigenvalues(scale.asDiagonal() * at.value * scale.asDiagonal())[0];
}

}  // namespace sdpsol
