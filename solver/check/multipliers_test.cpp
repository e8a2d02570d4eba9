// Weighted sums, and their way onto the exact balance.
#include "solver/check/multipliers.h"

#include <gtest/gtest.h>

#include "solver/check/balance.h"
#include "solver/check/test_multipliers.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::kEqual;
using testing::kStrict;
using testing::on_row;
using testing::ProblemBuilder;

// x > 1, x < 0
const Problem kApart =
    ProblemBuilder(1).row(kStrict, {-1, {{0, 1}}}).row(kStrict, {0, {{0, -1}}}).build();

TEST(Weights, SumsWeighBothTriangles) {
  // [x, 2y; 2y, 5]
  const Problem problem =
      ProblemBuilder(2).matrix(kStrict, 2, {{0, {{0, 1}}}, {0, {{1, 2}}}, {5, {}}}).build();
  Eigen::MatrixXd factor(2, 1);
  factor << 3, -1;  // Y = [9,-3;-3,1]
  const std::vector<Multiplier> multipliers = {{0, factor}};
  const Weights weights(problem, multipliers);
  const Weights::Sums sums = weights.sums();
  EXPECT_EQ(sums.values, (std::vector<long double>{5, 9, -12}));
  EXPECT_EQ(weights.constant_weight(), 5);
  EXPECT_EQ(weights.diagonal_weights(0), (std::vector<double>{5, 9, 0}));
  EXPECT_TRUE(weights.weighs(kStrict));
  EXPECT_FALSE(weights.weighs(Sense::kNonStrict));
}

TEST(Weights, AnEquationHasItsMultiplierAsItStands) {
  const Problem problem = ProblemBuilder(1).row(kEqual, {2, {{0, 3}}}).build();
  const std::vector<Multiplier> multipliers = {on_row(0, -4)};
  EXPECT_EQ(Weights(problem, multipliers).sums().values, (std::vector<long double>{-8, -12}));
}

TEST(Weights, AZeroMultiplierDoesNotTakePart) {
  const std::vector<Multiplier> multipliers = {on_row(0, 0)};
  EXPECT_FALSE(Weights(kApart, multipliers).weighs(kStrict));
}

TEST(Balance, ExactMultipliersStayAsTheyAre) {
  const std::vector<Multiplier> multipliers = {on_row(0, 1), on_row(1, 1)};
  const Balance balance(kApart, multipliers, BalanceOf::kUnknowns);
  EXPECT_TRUE(balance.exact());
  EXPECT_LT(balance.correction(), 1e-14);
  EXPECT_EQ(balance.rests(), std::vector<double>{0});
  EXPECT_NEAR(balance.constant().middle, -1, 1e-14);
}

TEST(Balance, RoughMultipliersAreCorrected) {
  const std::vector<Multiplier> multipliers = {on_row(0, 1), on_row(1, 1.1)};
  const Balance balance(kApart, multipliers, BalanceOf::kUnknowns);
  EXPECT_TRUE(balance.exact());
  const auto sums = balance.weights().sums();
  EXPECT_NEAR(static_cast<double>(sums.values[1]), 0, 1e-15);
  EXPECT_GT(balance.constant().middle, -1.21);
  EXPECT_LT(balance.constant().middle, -1);
}

TEST(Balance, MultipliersThatCannotBalanceLeaveARest) {
  const std::vector<Multiplier> multipliers = {on_row(0, 2)};
  const Balance balance(kApart, multipliers, BalanceOf::kUnknowns);
  EXPECT_FALSE(balance.exact());
  EXPECT_GE(balance.rests()[0], 4);
  EXPECT_NEAR(balance.rests()[0], 4, 1e-9);
}

TEST(Balance, ACorrectionOutOfTheConesIsNotMade) {
  // The multiplier of x < 0 would have to become -1: x > 1 and 2x > 0 only.
  const Problem problem =
      ProblemBuilder(1).row(kStrict, {-1, {{0, 1}}}).row(kStrict, {0, {{0, 2}}}).build();
  const std::vector<Multiplier> multipliers = {on_row(0, 1), on_row(1, 1)};
  const Balance balance(problem, multipliers, BalanceOf::kUnknowns);
  EXPECT_FALSE(balance.exact());
  EXPECT_NEAR(balance.rests()[0], 3, 1e-9);
}

TEST(Balance, DependentUnknownsBalanceTogether) {
  // x + 2y > 1, -x - 2y > 0
  const Problem problem = ProblemBuilder(2)
                              .row(kStrict, {-1, {{0, 1}, {1, 2}}})
                              .row(kStrict, {0, {{0, -1}, {1, -2}}})
                              .build();
  const std::vector<Multiplier> multipliers = {on_row(0, 1), on_row(1, 1.01)};
  EXPECT_TRUE(Balance(problem, multipliers, BalanceOf::kUnknowns).exact());
}

TEST(Balance, AlmostDependentUnknownsDoNot) {
  const Problem problem = ProblemBuilder(2)
                              .row(kStrict, {-1, {{0, 1}, {1, 2}}})
                              .row(kStrict, {0, {{0, -1}, {1, -2 - 1e-12}}})
                              .build();
  const std::vector<Multiplier> multipliers = {on_row(0, 1), on_row(1, 1.01)};
  EXPECT_FALSE(Balance(problem, multipliers, BalanceOf::kUnknowns).exact());
}

TEST(Balance, ConstantsOfDifferentSizeDoNotCancel) {
  const std::vector<Multiplier> multipliers = {on_row(0, 1), on_row(1, 1)};
  EXPECT_FALSE(Balance(kApart, multipliers, BalanceOf::kUnknownsAndConstant).exact());
}

TEST(Balance, TheRestOfAnUnknownInReachOfNoMultiplierIsItsCost) {
  const Problem problem = ProblemBuilder(2).row(kStrict, {3, {{0, -1}}}).maximise({1, -2}).build();
  const std::vector<Multiplier> multipliers = {on_row(0, 1)};
  const Balance balance(problem, multipliers, BalanceOf::kObjective);
  EXPECT_NEAR(balance.rests()[0], 0, 1e-12);
  EXPECT_EQ(balance.rests()[1], 2);
}

}  // namespace
}  // namespace sdpsol
