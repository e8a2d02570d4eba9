#include "solver/check/dependence.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::ProblemBuilder;

Eigen::VectorXd vector(std::initializer_list<double> values) {
  Eigen::VectorXd v(static_cast<Eigen::Index>(values.size()));
  std::copy(values.begin(), values.end(), v.begin());
  return v;
}

TEST(CommonDenominator, OfFractions) {
  EXPECT_EQ(common_denominator(vector({})), 1);
  EXPECT_EQ(common_denominator(vector({2, -7})), 1);
  EXPECT_EQ(common_denominator(vector({1.0 / 3, 0.5})), 6);
  EXPECT_EQ(common_denominator(vector({0.123})), 1000);
}

TEST(CommonDenominator, ThereIsNone) {
  EXPECT_EQ(common_denominator(vector({std::sqrt(2.0)})), 0);
  EXPECT_EQ(common_denominator(vector({0.1234})), 0);
  EXPECT_EQ(common_denominator(vector({std::nan("")})), 0);
  EXPECT_EQ(common_denominator(vector({HUGE_VAL})), 0);
}

// Two rows in x, y, z with z = (x + 2y)/3 in both.
Problem thirds(double last) {
  return ProblemBuilder(3)
      .row(Sense::kStrict, {0, {{0, 3}, {1, 6}, {2, 5}}})
      .row(Sense::kStrict, {0, {{0, -3}, {1, 3}, {2, last}}})
      .build();
}
const std::vector<Multiplier> kBoth = {{0, Eigen::MatrixXd::Ones(1, 1)},
                                       {1, Eigen::MatrixXd::Ones(1, 1)}};

TEST(ExactCombination, IsRecognisedFromRoundedWeights) {
  EXPECT_TRUE(is_exact_combination(thirds(1), kBoth, 2, {0, 1},
                                   vector({1.0 / 3 + 1e-11, 2.0 / 3 - 1e-11})));
}

TEST(ExactCombination, OneUnitInTheLastPlaceIsNoCombination) {
  EXPECT_FALSE(
      is_exact_combination(thirds(1 + 0x1p-52), kBoth, 2, {0, 1}, vector({1.0 / 3, 2.0 / 3})));
}

TEST(ExactCombination, OtherWeightsAreNone) {
  EXPECT_FALSE(is_exact_combination(thirds(1), kBoth, 2, {0, 1}, vector({2.0 / 3, 1.0 / 3})));
}

TEST(ExactCombination, OnlyEntriesInReachCount) {
  // The second row is not weighted: z = x there and z = (x + 2y)/3 in the first.
  const std::vector<Multiplier> first = {{0, Eigen::MatrixXd::Ones(1, 1)}};
  EXPECT_TRUE(is_exact_combination(thirds(17), first, 2, {0, 1}, vector({1.0 / 3, 2.0 / 3})));
}

}  // namespace
}  // namespace sdpsol
