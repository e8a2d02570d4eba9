#include "solver/dense/symmetric_eigen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace sdpsol {
namespace {

TEST(SymmetricEigen, GivesValuesInAscendingOrderWithTheirVectors) {
  Eigen::MatrixXd matrix(2, 2);
  matrix << 1, 2, 2, -2;  // 2 along (2,1), -3 along (1,-2)
  const SymmetricEigen eigen = symmetric_eigen(matrix);
  ASSERT_EQ(eigen.values.size(), 2);
  EXPECT_NEAR(eigen.values[0], -3, 1e-14);
  EXPECT_NEAR(eigen.values[1], 2, 1e-14);
  EXPECT_NEAR(eigen.vectors(1, 0) / eigen.vectors(0, 0), -2, 1e-14);
  EXPECT_NEAR(eigen.vectors.col(1).norm(), 1, 1e-14);
  EXPECT_TRUE(symmetric_eigenvalues(matrix).isApprox(eigen.values, 1e-14));
}

TEST(SymmetricEigen, OfOneNumberIsTheNumber) {
  const SymmetricEigen eigen = symmetric_eigen(Eigen::MatrixXd::Constant(1, 1, -7));
  EXPECT_EQ(eigen.values[0], -7);
  EXPECT_EQ(eigen.vectors(0, 0), 1);
}

TEST(SymmetricEigen, TakesAMatrixApart) {
  std::srand(3);
  for (int trial = 0; trial < 400; ++trial) {
    const Eigen::Index n = 1 + trial % 6;
    Eigen::MatrixXd matrix = Eigen::MatrixXd::Random(n, n);
    if (trial % 3 == 0) matrix = matrix.col(0) * matrix.col(0).transpose();  // singular
    matrix = (matrix + matrix.transpose()).eval() * std::pow(10.0, trial % 41 - 20);
    const auto& [values, vectors] = symmetric_eigen(matrix);
    const double size = matrix.norm();
    EXPECT_LE((vectors.transpose() * vectors - Eigen::MatrixXd::Identity(n, n)).norm(), 1e-14);
    EXPECT_LE((matrix * vectors - vectors * values.asDiagonal()).norm(), 1e-14 * size);
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
    EXPECT_LE((symmetric_eigenvalues(matrix) - values).norm(), 1e-14 * size);
  }
}

TEST(SymmetricEigen, TakesOneThatIsDiagonalAsItIs) {
  const Eigen::Vector3d diagonal(3, -1, 0);
  const SymmetricEigen eigen = symmetric_eigen(diagonal.asDiagonal());
  EXPECT_EQ(eigen.values, Eigen::Vector3d(-1, 0, 3));
  EXPECT_TRUE((symmetric_eigen(Eigen::MatrixXd::Zero(3, 3)).values.isZero(0)));
}

// A caller that asks "is it below 0?" must not be told so by leftovers.
TEST(SymmetricEigen, IsNotANumberWhereTheEntriesAreNot) {
  Eigen::MatrixXd matrix = Eigen::MatrixXd::Identity(3, 3);
  matrix(1, 0) = matrix(0, 1) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(std::isnan(symmetric_eigen(matrix).values[0]));
  EXPECT_TRUE(std::isnan(symmetric_eigenvalues(matrix)[2]));
  matrix(1, 0) = matrix(0, 1) = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(std::isnan(symmetric_eigen(matrix).values[0]));
}

}  // namespace
}  // namespace sdpsol
