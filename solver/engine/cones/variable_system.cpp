#include "solver/engine/cones/variable_system.h"

#include <cmath>

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

// Unknowns that make no difference to the cones have the rounding of those that do.
constexpr double kRidge = 1e-14;

}  // namespace

VariableSystem::VariableSystem(const Layout& layout, const std::vector<double>& objective)
    : layout_(layout),
      objective_(
          Eigen::Map<const VectorXd>(objective.data(), static_cast<Index>(objective.size()))),
      matrix_(MatrixXd::Zero(layout.dimension, objective_.size())) {
  const CoordinateTerms& linear = layout.linear;
  for (Index i = 0; i < layout.dimension; ++i) {
    const auto at = static_cast<std::size_t>(i);
    for (std::size_t t = linear.starts[at]; t < linear.starts[at + 1]; ++t) {
      matrix_(i, linear.terms[t].unknown) = linear.terms[t].value;
    }
  }
}

bool VariableSystem::factor(const NtScaling& scaling) {
  scaled_ = matrix_;
  scaled_.topRows(layout_.rows).array().colwise() *= scaling.inverse_rows().array();
  for (std::size_t p = 0; p < layout_.parts.size(); ++p) {
    const Part& part = layout_.parts[p];
    scaling.unscale_transposed(p, scaled_.middleRows(part.first, part.dimension));
  }
  size_ = scaled_.colwise().norm().cwiseInverse();
  if (!size_.allFinite()) return false;
  scaled_ *= size_.asDiagonal();
  MatrixXd normal = MatrixXd::Identity(size(), size()) * kRidge;
  normal.selfadjointView<Eigen::Lower>().rankUpdate(scaled_.transpose());
  factor_.compute(normal);
  return factor_.info() == Eigen::Success;
}

VectorXd VariableSystem::solve(const VectorXd& right) const {
  const VectorXd scaled_right = size_.cwiseProduct(right);
  VectorXd u = factor_.solve(scaled_right);
  // What the ridge and rounding have left.
  const VectorXd rest = scaled_right - scaled_.transpose() * (scaled_ * u);
  u += factor_.solve(rest);
  return size_.cwiseProduct(u);
}

}  // namespace sdpsol::cones
