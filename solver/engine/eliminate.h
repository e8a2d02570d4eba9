// Equations taken out of a cone program, for engines that know none.
#pragma once

#include <Eigen/Core>

#include "solver/engine/engine.h"

namespace sdpsol {

/// Substitutes y = base + directions * w, where the columns of `directions` are
/// an orthonormal base of the null space of the equations' coefficients.
/// Inconsistent equations leave `base` as their least squares solution; the checker
/// finds out.
class Elimination {
 public:
  explicit Elimination(const ConeProgram& program);
  const ConeProgram& reduced() const { return reduced_; }
  /// The iterate of the reduced program as one of the full program.
  Iterate lift(const Iterate& reduced) const;

 private:
  Eigen::VectorXd base_;
  Eigen::MatrixXd directions_;
  double base_value_ = 0;
  ConeProgram reduced_;
};

}  // namespace sdpsol
