#include "solver/engine/cones/newton_system.h"

#include <gtest/gtest.h>

namespace sdpsol::cones {
namespace {

using Eigen::VectorXd;

/// H = I, and a solver that is wrong by a factor.
class Inaccurate final : public NewtonSystem {
 public:
  explicit Inaccurate(double factor) : factor_(factor) {}
  Eigen::Index size() const override { return objective_.size(); }
  const VectorXd& objective() const override { return objective_; }
  VectorXd multiply(const VectorXd& u) const override { return u; }
  VectorXd multiply_transposed(const VectorXd& z) const override { return z; }
  bool factor(const NtScaling& /*scaling*/) override { return true; }
  VectorXd solve_once(const VectorXd& right) const override { return factor_ * right; }
  VectorXd product(const VectorXd& u) const override { return u; }
  VectorXd point(const VectorXd& u) const override { return u; }

 private:
  double factor_;
  VectorXd objective_ = VectorXd::Zero(5);
};

TEST(NewtonSystem, GainsTheDigitsThatOnePassLacks) {
  const VectorXd right = VectorXd::LinSpaced(5, 1, 2);
  EXPECT_LE((Inaccurate(0.99).solve(right) - right).norm(), 1e-11);
}

TEST(NewtonSystem, KeepsTheFirstSolutionWhereMorePassesMakeItWorse) {
  const VectorXd right = VectorXd::Ones(5);
  EXPECT_EQ(Inaccurate(-2).solve(right), VectorXd(-2 * right));
}

}  // namespace
}  // namespace sdpsol::cones
