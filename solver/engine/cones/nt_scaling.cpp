#include "solver/engine/cones/nt_scaling.h"

#include <Eigen/Cholesky>
#include <cmath>

#include "solver/dense/symmetric_eigen.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

/// s0^2 - |s1|^2; not positive, or not a number, outside the cone.
double determinant(const Eigen::Ref<const VectorXd>& s) {
  const double length = s.tail(s.size() - 1).norm();
  return s[0] > 0 ? (s[0] - length) * (s[0] + length) : -1;
}

/// v := eta * [w0, w1'; w1, I + w1*w1'/(1 + w0)] * v. The inverse has 1/eta and -w1.
void apply(double eta, double sign, const VectorXd& w, Eigen::Ref<VectorXd> v) {
  const Index tail = w.size() - 1;
  const double inner = sign * w.tail(tail).dot(v.tail(tail));
  const double head = w[0] * v[0] + inner;
  v.tail(tail) += (sign * (inner / (1 + w[0]) + v[0])) * w.tail(tail);
  v[0] = head;
  v *= eta;
}

/// a * v * a' as packed matrices.
VectorXd conjugated(const MatrixXd& a, const Eigen::Ref<const VectorXd>& v) {
  VectorXd result(v.size());
  pack(a * unpack(v, a.rows()) * a.transpose(), result);
  return result;
}

}  // namespace

NtScaling::NtScaling(const Layout& layout)
    : layout_(layout),
      lambda_(layout.dimension),
      second_order_(layout.parts.size()),
      dense_(layout.parts.size()) {}

void NtScaling::set_identity() {
  inverse_rows_ = VectorXd::Ones(layout_.rows);
  for (std::size_t p = 0; p < layout_.parts.size(); ++p) {
    const Part& part = layout_.parts[p];
    if (part.is_second_order()) {
      second_order_[p] = {1, VectorXd::Unit(part.dimension, 0)};
    } else {
      dense_[p].r = dense_[p].inverse = MatrixXd::Identity(part.order, part.order);
    }
  }
}

bool NtScaling::update(const VectorXd& s, const VectorXd& z) {
  const Index rows = layout_.rows;
  if (!s.allFinite() || !z.allFinite()) return false;
  if (!((s.head(rows).array() > 0).all() && (z.head(rows).array() > 0).all())) return false;
  inverse_rows_ = (z.head(rows).array() / s.head(rows).array()).sqrt();
  lambda_.head(rows) = (s.head(rows).array() * z.head(rows).array()).sqrt();
  for (std::size_t p = 0; p < layout_.parts.size(); ++p) {
    const bool inside =
        layout_.parts[p].is_second_order() ? update_second_order(p, s, z) : update_dense(p, s, z);
    if (!inside) return false;
  }
  return lambda_.allFinite();
}

bool NtScaling::update_second_order(std::size_t p, const VectorXd& s, const VectorXd& z) {
  const Part& part = layout_.parts[p];
  const auto s_here = s.segment(part.first, part.dimension);
  const auto z_here = z.segment(part.first, part.dimension);
  const double s_size = determinant(s_here);
  const double z_size = determinant(z_here);
  if (!(s_size > 0 && z_size > 0)) return false;
  const double s_root = std::sqrt(s_size);
  const double z_root = std::sqrt(z_size);
  const double gamma = std::sqrt((1 + s_here.dot(z_here) / (s_root * z_root)) / 2);
  SecondOrder& scaling = second_order_[p];
  scaling.eta = std::sqrt(s_root / z_root);
  const Index tail = part.dimension - 1;
  scaling.w = s_here / s_root;
  scaling.w.tail(tail) -= z_here.tail(tail) / z_root;
  scaling.w /= 2 * gamma;
  // Only w1 is taken from the sum: w0 follows from it.
  scaling.w[0] = std::sqrt(1 + scaling.w.tail(tail).squaredNorm());
  auto lambda = lambda_.segment(part.first, part.dimension);
  lambda = z_here;
  apply(scaling.eta, 1, scaling.w, lambda);
  return true;
}

bool NtScaling::update_dense(std::size_t p, const VectorXd& s, const VectorXd& z) {
  const Part& part = layout_.parts[p];
  const MatrixXd z_matrix = unpack(z.segment(part.first, part.dimension), part.order);
  const Eigen::LLT<MatrixXd> s_factor(unpack(s.segment(part.first, part.dimension), part.order));
  if (s_factor.info() != Eigen::Success) return false;
  const MatrixXd lower = s_factor.matrixL();
  const SymmetricEigen eigen = symmetric_eigen(lower.transpose() * z_matrix * lower);
  if (!(eigen.values.minCoeff() > 0)) return false;
  const VectorXd values = eigen.values.cwiseSqrt();
  const VectorXd root = values.cwiseSqrt();
  dense_[p].r = lower * eigen.vectors * root.cwiseInverse().asDiagonal();
  dense_[p].inverse = root.asDiagonal() * eigen.vectors.transpose();
  s_factor.matrixL().solveInPlace<Eigen::OnTheRight>(dense_[p].inverse);
  pack(values.asDiagonal(), lambda_.segment(part.first, part.dimension));
  return true;
}

void NtScaling::map(VectorXd& v, bool inverse, bool transposed) const {
  auto rows = v.head(layout_.rows).array();
  if (inverse) {
    rows *= inverse_rows_.array();
  } else {
    rows /= inverse_rows_.array();
  }
  for (std::size_t p = 0; p < layout_.parts.size(); ++p) {
    const Part& part = layout_.parts[p];
    auto piece = v.segment(part.first, part.dimension);
    if (part.is_second_order()) {
      const auto& [eta, w] = second_order_[p];
      apply(inverse ? 1 / eta : eta, inverse ? -1 : 1, w, piece);
    } else {
      const MatrixXd& factor = inverse ? dense_[p].inverse : dense_[p].r;
      piece = transposed ? conjugated(factor, piece) : conjugated(factor.transpose(), piece);
    }
  }
}

void NtScaling::unscale_transposed(std::size_t p, Eigen::Ref<MatrixXd> columns) const {
  const Part& part = layout_.parts[p];
  if (part.is_second_order()) {
    for (auto column : columns.colwise()) {
      apply(1 / second_order_[p].eta, -1, second_order_[p].w, column);
    }
    return;
  }
  if (columns.cols() <= part.dimension) {
    for (auto column : columns.colwise()) column = conjugated(dense_[p].inverse, column);
    return;
  }
  // As one matrix, which is found with as many applications as it has columns.
  MatrixXd map = MatrixXd::Identity(part.dimension, part.dimension);
  for (auto column : map.colwise()) column = conjugated(dense_[p].inverse, column);
  columns = map * columns;
}

}  // namespace sdpsol::cones
