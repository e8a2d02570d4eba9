#include "solver/engine/cones/variable_system.h"

#include <algorithm>
#include <cmath>

#include "solver/dense/triangular_factor.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

// Unknowns that make no difference beside the others have pivots that are rounding.
constexpr double kSmallestOwnPivot = 1e-14;

}  // namespace

VariableSystem::VariableSystem(const Layout& layout, const std::vector<double>& objective)
    : layout_(layout),
      objective_(
          Eigen::Map<const VectorXd>(objective.data(), static_cast<Index>(objective.size()))),
      matrix_(MatrixXd::Zero(layout.dimension, objective_.size())) {
  for (Index i = 0; i < layout.dimension; ++i) {
    for (const Term& t : layout.linear.of(i)) matrix_(i, t.unknown) = t.value;
  }
}

bool VariableSystem::factor(const NtScaling& scaling) {
  scaled_.setZero(std::max(layout_.dimension, size()), size());
  scaled_.topRows(layout_.dimension) = matrix_;
  scaled_.topRows(layout_.rows).array().colwise() *= scaling.inverse_rows().array();
  for (std::size_t p = 0; p < layout_.parts.size(); ++p) {
    const Part& part = layout_.parts[p];
    scaling.unscale_transposed(p, scaled_.middleRows(part.first, part.dimension));
  }
  size_ = scaled_.colwise().norm().cwiseInverse();
  if (!size_.allFinite()) return false;
  scaled_ *= size_.asDiagonal();
  // The square of R, which the normal equations are, would lose half of the digits.
  root_ = triangular_factor(scaled_);
  for (double& pivot : root_.diagonal()) {
    if (std::fabs(pivot) < kSmallestOwnPivot) pivot = std::copysign(kSmallestOwnPivot, pivot);
  }
  return true;
}

VectorXd VariableSystem::solve_once(const VectorXd& right) const {
  const auto triangle = root_.triangularView<Eigen::Upper>();
  VectorXd u = size_.cwiseProduct(right);
  triangle.transpose().solveInPlace(u);
  triangle.solveInPlace(u);
  return size_.cwiseProduct(u);
}

VectorXd VariableSystem::product(const VectorXd& u) const {
  const VectorXd v = size_.cwiseInverse().cwiseProduct(u);
  return size_.cwiseInverse().cwiseProduct(scaled_.transpose() * (scaled_ * v));
}

}  // namespace sdpsol::cones
