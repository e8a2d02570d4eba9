// Nesterov-Todd scaling: the linear map W of the cones onto themselves under which a
// point s and its multiplier z look the same, lambda = W*z = W^-T*s.
//
//   row            W = sqrt(s/z)
//   second-order   W = eta * [w0, w1'; w1, I + w1*w1'/(1 + w0)], symmetric
//   dense          W*Z = R'*Z*R, from S = L*L' and the eigenvectors of L'*Z*L
//
// Sources: Nesterov and Todd, Self-scaled barriers and interior-point methods for convex
// programming, 1997; in this form Vandenberghe, The CVXOPT linear and quadratic cone
// program solvers, 2010, section 4.
#pragma once

#include <Eigen/Core>
#include <vector>

#include "solver/engine/cones/layout.h"

namespace sdpsol::cones {

class NtScaling {
 public:
  explicit NtScaling(const Layout& layout);

  /// W = I.
  void set_identity();
  /// The scaling of s and z. False, and of no use, if one of them is not inside the cones.
  bool update(const Eigen::VectorXd& s, const Eigen::VectorXd& z);
  const Eigen::VectorXd& lambda() const { return lambda_; }

  // v := the map applied to v.
  void scale(Eigen::VectorXd& v) const { map(v, false, false); }             ///< W
  void scale_transposed(Eigen::VectorXd& v) const { map(v, false, true); }   ///< W'
  void unscale(Eigen::VectorXd& v) const { map(v, true, false); }            ///< W^-1
  void unscale_transposed(Eigen::VectorXd& v) const { map(v, true, true); }  ///< W^-T

  /// W^-T on the columns of the coordinates of one part. @param columns dimension x any.
  void unscale_transposed(std::size_t part, Eigen::Ref<Eigen::MatrixXd> columns) const;
  /// 1/W of a row.
  double inverse_row(Eigen::Index row) const { return inverse_rows_[row]; }
  Eigen::Ref<const Eigen::VectorXd> inverse_rows() const { return inverse_rows_; }

 private:
  struct SecondOrder {
    double eta = 1;
    Eigen::VectorXd w;  ///< (w0, w1), w0^2 - |w1|^2 = 1
  };
  struct Dense {
    Eigen::MatrixXd r;
    Eigen::MatrixXd inverse;
  };
  void map(Eigen::VectorXd& v, bool inverse, bool transposed) const;
  bool update_second_order(std::size_t p, const Eigen::VectorXd& s, const Eigen::VectorXd& z);
  bool update_dense(std::size_t p, const Eigen::VectorXd& s, const Eigen::VectorXd& z);

  const Layout& layout_;
  Eigen::VectorXd lambda_;
  Eigen::VectorXd inverse_rows_;
  std::vector<SecondOrder> second_order_;  ///< one per part, as are these:
  std::vector<Dense> dense_;
};

}  // namespace sdpsol::cones
