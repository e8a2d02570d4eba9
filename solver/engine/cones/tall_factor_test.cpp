#include "solver/engine/cones/tall_factor.h"

#include <gtest/gtest.h>

namespace sdpsol::cones {
namespace {

using Eigen::MatrixXd;
using Eigen::VectorXd;

MatrixXd some_matrix(Eigen::Index rows, Eigen::Index columns) {
  return MatrixXd::NullaryExpr(rows, columns, [](Eigen::Index i, Eigen::Index j) {
    return std::sin(1.0 + 3.7 * static_cast<double>(i) + 1.3 * static_cast<double>(i * j + j));
  });
}

TEST(TallFactor, FindsAnOrthonormalBaseOfTheLeftNullVectors) {
  const MatrixXd f = some_matrix(12, 7);
  const TallFactor factor(f);
  ASSERT_TRUE(factor.has_full_rank());
  const MatrixXd& w = factor.null_base();
  ASSERT_EQ(w.cols(), 5);
  EXPECT_LE((w.transpose() * f).cwiseAbs().maxCoeff(), 1e-12);
  EXPECT_TRUE((w.transpose() * w).isIdentity(1e-14));
}

TEST(TallFactor, GoesBackFromWhatItMaps) {
  for (const Eigen::Index more : {0, 1, 6}) {
    const MatrixXd f = some_matrix(8 + more, 8);
    const VectorXd z = VectorXd::LinSpaced(8, -1, 2);
    EXPECT_TRUE(TallFactor(f).preimage(f * z).isApprox(z, 1e-10)) << more;
  }
}

TEST(TallFactor, PullsFunctionsBackIntoTheRange) {
  const MatrixXd f = some_matrix(9, 4);
  const TallFactor factor(f);
  const VectorXd c = VectorXd::LinSpaced(4, 1, 3);
  const VectorXd b = factor.pulled_back(c);
  EXPECT_TRUE((f.transpose() * b).isApprox(c, 1e-10));
  EXPECT_LE((factor.null_base().transpose() * b).norm(), 1e-12);
}

TEST(TallFactor, TellsColumnsThatAreNotIndependent) {
  MatrixXd f = some_matrix(9, 4);
  f.col(3) = f.col(0) - 2 * f.col(1);
  EXPECT_FALSE(TallFactor(f).has_full_rank());
}

}  // namespace
}  // namespace sdpsol::cones
