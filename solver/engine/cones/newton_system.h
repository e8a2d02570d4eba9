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
  /// Takes apart H = G'*W^-1*W^-T*G. False if it is singular.
  virtual bool factor(const NtScaling& scaling) = 0;
  /// The u of the subspace with H*u = right in it, but for rounding.
  virtual Eigen::VectorXd solve(const Eigen::VectorXd& right) const = 0;
  /// The program's unknowns.
  virtual Eigen::VectorXd point(const Eigen::VectorXd& u) const = 0;
};

/// Solves again for what a solution leaves of the right side, as long as that gets less.
/// @param solve takes a right side.  @param product the inverse of it, but for rounding.
template <typename Solve, typename Product>
Eigen::VectorXd refined_solution(const Eigen::VectorXd& right, Solve solve, Product product) {
  constexpr int kMostPasses = 5;
  Eigen::VectorXd solution = solve(right);
  Eigen::VectorXd rest = right - product(solution);
  double size = rest.norm();
  for (int pass = 0; pass < kMostPasses && size > 1e-15 * right.norm(); ++pass) {
    const Eigen::VectorXd better = solution + solve(rest);
    rest = right - product(better);
    const double next_size = rest.norm();
    if (!(next_size < size)) break;
    solution = better;
    if (next_size > size / 2) break;
    size = next_size;
  }
  return solution;
}

}  // namespace sdpsol::cones
