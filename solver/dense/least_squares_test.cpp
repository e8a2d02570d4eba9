#include "solver/dense/least_squares.h"

#include <gtest/gtest.h>

namespace sdpsol {
namespace {

TEST(LeastSquares, SolvesRegularSystems) {
  Eigen::Matrix2d matrix;
  matrix << 2, 1, 1, 3;
  const Eigen::VectorXd x = LeastSquares(matrix).solve(Eigen::Vector2d(4, 7));
  EXPECT_TRUE(x.isApprox(Eigen::Vector2d(1, 2), 1e-14));
}

TEST(LeastSquares, ComesAsCloseAsItCan) {
  // x = 1, x = 2, x = 6
  const Eigen::VectorXd x = LeastSquares(Eigen::Vector3d::Ones()).solve(Eigen::Vector3d(1, 2, 6));
  ASSERT_EQ(x.size(), 1);
  EXPECT_NEAR(x[0], 3, 1e-14);
}

TEST(LeastSquares, TakesTheShortestOfManySolutions) {
  // x + y = 2, twice
  const Eigen::VectorXd x =
      LeastSquares(Eigen::MatrixXd::Ones(2, 2)).solve(Eigen::VectorXd::Constant(2, 2.0));
  EXPECT_TRUE(x.isApprox(Eigen::Vector2d(1, 1), 1e-14));
}

TEST(LeastSquares, AnswersZeroWhereNothingCanBeDone) {
  const Eigen::VectorXd x =
      LeastSquares(Eigen::MatrixXd::Zero(1, 2)).solve(Eigen::VectorXd::Ones(1));
  EXPECT_TRUE(x.isZero(0));
}

}  // namespace
}  // namespace sdpsol
