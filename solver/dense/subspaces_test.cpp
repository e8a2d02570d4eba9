#include "solver/dense/subspaces.h"

#include <gtest/gtest.h>

namespace sdpsol {
namespace {

TEST(OrderColumns, PutsIndependentOnesFirst) {
  // The middle column is the sum of the others and the longest.
  Eigen::MatrixXd matrix(3, 3);
  matrix << 1, 1, 0,  //
      0, 2, 2,        //
      0, 0, 0;
  const ColumnOrder columns = order_columns(matrix, 1e-9);
  EXPECT_EQ(columns.rank, 2);
  EXPECT_EQ(columns.order[0], 1);
  EXPECT_TRUE(std::is_permutation(columns.order.begin(), columns.order.end(),
                                  std::vector<Eigen::Index>{0, 1, 2}.begin()));
}

TEST(OrderColumns, TakesShortRestsForRounding) {
  Eigen::MatrixXd matrix(2, 2);
  matrix << 1, 1,  //
      0, 1e-8;
  EXPECT_EQ(order_columns(matrix, 1e-9).rank, 2);
  EXPECT_EQ(order_columns(matrix, 1e-7).rank, 1);
}

TEST(OrderColumns, FindsNothingInColumnsWithoutEntries) {
  const ColumnOrder columns = order_columns(Eigen::MatrixXd(0, 2), 1e-9);
  EXPECT_EQ(columns.rank, 0);
  EXPECT_EQ(columns.order, (std::vector<Eigen::Index>{0, 1}));
}

TEST(NullspaceBase, IsOrthonormalAndMappedToZero) {
  Eigen::MatrixXd matrix(2, 4);
  matrix << 1, 2, 3, 4,  //
      2, 4, 6, 9;
  const Eigen::MatrixXd base = nullspace_base(matrix);
  ASSERT_EQ(base.rows(), 4);
  ASSERT_EQ(base.cols(), 2);
  EXPECT_TRUE((base.transpose() * base).isIdentity(1e-14));
  EXPECT_TRUE((matrix * base).isZero(1e-13));
}

TEST(NullspaceBase, IsEmptyForIndependentColumns) {
  EXPECT_EQ(nullspace_base(Eigen::MatrixXd::Identity(3, 2)).cols(), 0);
}

TEST(NullspaceBase, IsEverythingForTheZeroMatrix) {
  EXPECT_EQ(nullspace_base(Eigen::MatrixXd::Zero(1, 3)).cols(), 3);
}

}  // namespace
}  // namespace sdpsol
