// Steps in the program's own unknowns, with dense normal equations: for few unknowns,
// and where their action has no structure.
#pragma once

#include <vector>

#include "solver/engine/cones/newton_system.h"

namespace sdpsol::cones {

class VariableSystem final : public NewtonSystem {
 public:
  /// @param layout must outlive this.
  VariableSystem(const Layout& layout, const std::vector<double>& objective);

  Eigen::Index size() const override { return matrix_.cols(); }
  const Eigen::VectorXd& objective() const override { return objective_; }
  Eigen::VectorXd multiply(const Eigen::VectorXd& u) const override { return matrix_ * u; }
  Eigen::VectorXd multiply_transposed(const Eigen::VectorXd& z) const override {
    return matrix_.transpose() * z;
  }
  bool factor(const NtScaling& scaling) override;
  Eigen::VectorXd solve_once(const Eigen::VectorXd& right) const override;
  Eigen::VectorXd product(const Eigen::VectorXd& u) const override;
  Eigen::VectorXd point(const Eigen::VectorXd& u) const override { return u; }

 private:
  const Layout& layout_;
  Eigen::VectorXd objective_;
  Eigen::MatrixXd matrix_;  ///< G
  Eigen::MatrixXd scaled_;  ///< W^-T * G
  Eigen::VectorXd size_;    ///< which scales the columns of that to norm 1
  Eigen::MatrixXd root_;    ///< R of its QR factorisation
};

}  // namespace sdpsol::cones
