// The linear algebra of one problem: the unknowns that the method works in, and the
// normal equations of its steps. How the unknowns act on the cones decides which of
// them are best (see variable_system.h, range_system.h); the method does not care.
#pragma once

#include <Eigen/Core>

#include "solver/engine/cones/nt_scaling.h"

namespace sdpsol::cones {

/// maximise c'u where s = h + G*u is in the cones, and u in a subspace.
class NewtonSystem {
 public:
  NewtonSystem() = default;
  NewtonSystem(const NewtonSystem&) = delete;
  NewtonSystem& operator=(const NewtonSystem&) = delete;
  virtual ~NewtonSystem() = default;

  /// Numbers of u.
  virtual Eigen::Index size() const = 0;
  /// c, in the subspace.
  virtual const Eigen::VectorXd& objective() const = 0;
  /// G*u
  virtual Eigen::VectorXd multiply(const Eigen::VectorXd& u) const = 0;
  /// G'*z, projected on the subspace.
  virtual Eigen::VectorXd multiply_transposed(const Eigen::VectorXd& z) const = 0;
  /// Takes apart H = G'*W^-1*W^-T*G. False if no good can come of it.
  virtual bool factor(const NtScaling& scaling) = 0;
  /// The u of the subspace with H*u = right in it, as one pass through the factors has it.
  virtual Eigen::VectorXd solve_once(const Eigen::VectorXd& right) const = 0;
  /// H*u, projected on the subspace.
  virtual Eigen::VectorXd product(const Eigen::VectorXd& u) const = 0;
  /// The same as solve_once(), and again for what is left of the right side, as long as that
  /// gets less.
  Eigen::VectorXd solve(const Eigen::VectorXd& right) const;
  /// The program's unknowns.
  virtual Eigen::VectorXd point(const Eigen::VectorXd& u) const = 0;
};

}  // namespace sdpsol::cones
