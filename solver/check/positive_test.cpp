// Matrices of integers, whose definiteness is known exactly.
#include "solver/check/positive.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace sdpsol {
namespace {

using Eigen::MatrixXd;

bool positive(const MatrixXd& value) {
  return certainly_positive_definite(value, MatrixXd::Zero(value.rows(), value.cols()));
}

MatrixXd symmetric(double a, double b, double c) {
  MatrixXd m(2, 2);
  m << a, b, b, c;
  return m;
}

TEST(Positive, TheEmptyMatrixIs) {
  EXPECT_TRUE(positive(MatrixXd(0, 0)));
}

TEST(Positive, OneNumber) {
  EXPECT_TRUE(positive(MatrixXd::Constant(1, 1, 1e-300)));
  EXPECT_FALSE(positive(MatrixXd::Zero(1, 1)));
  EXPECT_FALSE(positive(MatrixXd::Constant(1, 1, std::nan(""))));
  EXPECT_FALSE(
      certainly_positive_definite(MatrixXd::Ones(1, 1), MatrixXd::Constant(1, 1, std::nan(""))));
}

TEST(Positive, WellConditionedOnesAreRecognised) {
  for (const int n : {2, 3, 10, 50}) {
    EXPECT_TRUE(positive(MatrixXd::Identity(n, n)));
    MatrixXd m = MatrixXd::Ones(n, n);
    m.diagonal().array() += 1e-6;
    EXPECT_TRUE(positive(m)) << n;
  }
}

TEST(Positive, NegativeZeroAndIndefiniteOnesAreNot) {
  EXPECT_FALSE(positive(-MatrixXd::Identity(3, 3)));
  EXPECT_FALSE(positive(MatrixXd::Zero(3, 3)));
  EXPECT_FALSE(positive(symmetric(1, 2, 1)));
  EXPECT_FALSE(positive(symmetric(1, 0, 0)));
}

TEST(Positive, BarelyIndefiniteMatricesAreNeverAccepted) {
  // [a*a, a*b; a*b, b*b + d] has the determinant a*a*d; all entries are exact.
  std::mt19937_64 random(2);
  std::uniform_int_distribution<int> factor(1, 90000000);
  for (int round = 0; round < 100000; ++round) {
    const double a = factor(random);
    const double b = factor(random);
    for (const double d : {0.0, -1.0}) {
      ASSERT_FALSE(positive(symmetric(a * a, a * b, b * b + d))) << a << " " << b << " " << d;
    }
  }
}

TEST(Positive, SingularGramMatricesAreNeverAccepted) {
  std::mt19937_64 random(3);
  std::uniform_int_distribution<int> size(2, 9);
  std::uniform_int_distribution<int> entry(-1000, 1000);
  for (int round = 0; round < 20000; ++round) {
    const int n = size(random);
    const MatrixXd a = MatrixXd::NullaryExpr(n, n - 1, [&] { return entry(random); });
    MatrixXd gram = a * a.transpose();
    ASSERT_FALSE(positive(gram));
    gram.diagonal() *= 1 + 1e-9;
    if (gram.diagonal().minCoeff() > 0) {
      ASSERT_TRUE(positive(gram));
    }
  }
}

TEST(Positive, TheErrorMayMakeItSingular) {
  const MatrixXd half = symmetric(0, 0.5, 0);
  EXPECT_TRUE(certainly_positive_definite(MatrixXd::Identity(2, 2), half));
  EXPECT_FALSE(certainly_positive_definite(MatrixXd::Identity(2, 2), 2 * half));
  EXPECT_FALSE(certainly_positive_definite(symmetric(1, 0.5, 1), half));
  EXPECT_FALSE(certainly_positive_definite(MatrixXd::Identity(2, 2), symmetric(1, 0, 0)));
}

TEST(Positive, ScalingFromBothSidesChangesNothing) {
  std::mt19937_64 random(4);
  std::uniform_int_distribution<int> power(-200, 200);
  std::normal_distribution<double> normal;
  int accepted = 0;
  for (int round = 0; round < 2000; ++round) {
    const MatrixXd a = MatrixXd::NullaryExpr(4, 4, [&] { return normal(random); });
    MatrixXd m = a * a.transpose();
    m = (m + m.transpose()).eval() / 2;
    if (round % 2 == 0) m.diagonal().array() -= 0.1;
    const Eigen::VectorXd scale =
        Eigen::VectorXd::NullaryExpr(4, [&] { return std::exp2(power(random)); });
    const MatrixXd scaled = scale.asDiagonal() * m * scale.asDiagonal();
    ASSERT_EQ(positive(m), positive(scaled)) << m;
    accepted += positive(m) ? 1 : 0;
  }
  EXPECT_GT(accepted, 500);
  EXPECT_LT(accepted, 1900);
}

TEST(Positive, NoAnswerIsBuiltOnNumbersThatAreNone) {
  for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    EXPECT_FALSE(positive(symmetric(1, bad, 1))) << bad;
    EXPECT_FALSE(positive(symmetric(bad, 0, 1))) << bad;
    EXPECT_FALSE(certainly_positive_definite(MatrixXd::Identity(2, 2), symmetric(0, bad, 0)));
  }
  EXPECT_FALSE(positive(symmetric(1e-320, 1, 1e-320)));
  EXPECT_FALSE(positive(symmetric(1e308, 1.7e308, 1e308)));
}

}  // namespace
}  // namespace sdpsol
