#include "solver/dense/triangular_factor.h"

#include <gtest/gtest.h>

namespace sdpsol {
namespace {

TEST(TriangularFactor, HasTheSquareOfTheMatrix) {
  Eigen::MatrixXd matrix(4, 2);
  matrix << 1, 2,  //
      3, 4,        //
      5, 6,        //
      7, 9;
  const Eigen::MatrixXd r = triangular_factor(matrix);
  ASSERT_EQ(r.rows(), 2);
  ASSERT_EQ(r.cols(), 2);
  EXPECT_EQ(r(1, 0), 0);
  EXPECT_TRUE((r.transpose() * r).isApprox(matrix.transpose() * matrix, 1e-14));
}

TEST(TriangularFactor, KeepsDigitsThatTheSquareLoses) {
  // The square of 1e-9 beside 1 is nothing in a double.
  Eigen::MatrixXd matrix(2, 2);
  matrix << 1, 1,  //
      0, 1e-9;
  EXPECT_NEAR(std::abs(triangular_factor(matrix)(1, 1)), 1e-9, 1e-15);
}

}  // namespace
}  // namespace sdpsol
