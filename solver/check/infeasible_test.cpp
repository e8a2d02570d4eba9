// What multipliers prove, claim by claim, and what they must not.
#include "solver/check/infeasible.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "solver/check/test_known_optimum.h"
#include "solver/check/test_multipliers.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::kEqual;
using testing::kNonStrict;
using testing::KnownOptimum;
using testing::kStrict;
using testing::on_row;
using testing::ProblemBuilder;

// l < x < u
Problem between(double l, double u, Sense sense = kStrict) {
  return ProblemBuilder(1).row(sense, {-l, {{0, 1}}}).row(sense, {u, {{0, -1}}}).build();
}

TEST(Disprove, ANegativeConstantIsAContradiction) {
  EXPECT_EQ(disprove(between(1, 0), {on_row(0, 1), on_row(1, 1)}), Disproof::kInfeasible);
  EXPECT_EQ(disprove(between(1, 0, kNonStrict), {on_row(0, 1), on_row(1, 1)}),
            Disproof::kInfeasible);
}

TEST(Disprove, RoughMultipliersAreGoodEnough) {
  EXPECT_EQ(disprove(between(1, 0), {on_row(0, 0.9), on_row(1, 1.1)}), Disproof::kInfeasible);
}

TEST(Disprove, WrongMultipliersAreNot) {
  EXPECT_EQ(disprove(between(1, 0), {on_row(0, 1)}), Disproof::kNone);
  EXPECT_EQ(disprove(between(1, 0), {on_row(1, 1)}), Disproof::kNone);
  EXPECT_EQ(disprove(between(0, 1), {on_row(0, 1), on_row(1, 1)}), Disproof::kNone);
  EXPECT_EQ(disprove(between(1, 0), {}), Disproof::kNone);
}

TEST(Disprove, ZeroGreaterThanZeroNeedsAStrictInequality) {
  EXPECT_EQ(disprove(between(3, 3), {on_row(0, 1), on_row(1, 1)}), Disproof::kInfeasible);
  EXPECT_EQ(disprove(between(3, 3, kNonStrict), {on_row(0, 1), on_row(1, 1)}),
            Disproof::kBorderline);
  // The strict row does not take part.
  const Problem problem = ProblemBuilder(1)
                              .row(kNonStrict, {-3, {{0, 1}}})
                              .row(kNonStrict, {3, {{0, -1}}})
                              .row(kStrict, {1, {{0, 1}}})
                              .build();
  EXPECT_NE(disprove(problem, {on_row(0, 1), on_row(1, 1), on_row(2, 0)}), Disproof::kInfeasible);
}

TEST(Disprove, EquationsTakeEitherSign) {
  // x == 2, x > 3
  const Problem problem =
      ProblemBuilder(1).row(kEqual, {-2, {{0, 1}}}).row(kStrict, {-3, {{0, 1}}}).build();
  EXPECT_EQ(disprove(problem, {on_row(0, -1), on_row(1, 1)}), Disproof::kInfeasible);
  const Problem possible =
      ProblemBuilder(1).row(kEqual, {-4, {{0, 1}}}).row(kStrict, {-3, {{0, 1}}}).build();
  EXPECT_EQ(disprove(possible, {on_row(0, -1), on_row(1, 1)}), Disproof::kNone);
}

TEST(Disprove, MatricesByTheirFace) {
  // [x, 2; 2, -x] >= 0: x weighs 0 under Y = [1,-1;-1,1] and the constant -4
  const Problem problem =
      ProblemBuilder(1).matrix(kNonStrict, 2, {{0, {{0, 1}}}, {2, {}}, {0, {{0, -1}}}}).build();
  Eigen::MatrixXd face(2, 1);
  face << 1, -1;
  EXPECT_EQ(disprove(problem, {{0, face}}), Disproof::kInfeasible);
  face << 1, 1;
  EXPECT_EQ(disprove(problem, {{0, face}}), Disproof::kNone);
}

TEST(Disprove, TheBoxMayCarryAMillionthOfTheConstant) {
  // x + y >= 1, -x - (1 + d)*y >= 1 under |y| <= 15000: two multipliers cannot
  // balance both unknowns, d*y is left.
  const auto rows = [](double d) {
    return ProblemBuilder(2)
        .row(kNonStrict, {-1, {{0, 1}, {1, 1}}})
        .row(kNonStrict, {-1, {{0, -1}, {1, -1 - d}}})
        .build();
  };
  const std::vector<Multiplier> both = {on_row(0, 1), on_row(1, 1)};
  EXPECT_EQ(disprove(rows(1e-12), both), Disproof::kInfeasible);
  EXPECT_EQ(disprove(rows(1e-9), both), Disproof::kEmptyBox);
}

TEST(Disprove, TheBoxNeverStandsInForABalance) {
  // c*x >= 1 under |x| <= 15000: there are points, if only beyond the box
  const auto row = [](double c) {
    return ProblemBuilder(1).row(kNonStrict, {-1, {{0, c}}}).build();
  };
  EXPECT_EQ(disprove(row(1e-30), {on_row(0, 1)}), Disproof::kEmptyBox);
  EXPECT_EQ(disprove(row(0.999 / 15000), {on_row(0, 1)}), Disproof::kEmptyBox);
  EXPECT_EQ(disprove(row(1.001 / 15000), {on_row(0, 1)}), Disproof::kNone);
}

TEST(Disprove, BeyondTheBox) {
  const auto above = [](double bound) {
    return ProblemBuilder(1).row(kStrict, {-bound, {{0, 1}}}).build();
  };
  EXPECT_EQ(disprove(above(20000), {on_row(0, 1)}), Disproof::kEmptyBox);
  EXPECT_EQ(disprove(above(14999.9), {on_row(0, 1)}), Disproof::kNone);
}

TEST(Disprove, AGapBelowSixDigitsIsBorderline) {
  EXPECT_EQ(disprove(between(1, 1.000001), {on_row(0, 1), on_row(1, 1)}), Disproof::kBorderline);
  EXPECT_EQ(disprove(between(1, 1.00002), {on_row(0, 1), on_row(1, 1)}), Disproof::kNone);
}

TEST(Disprove, TheRoundingOfReadingProvesNothing) {
  Problem problem = between(1, 1 - 0x1p-50);
  EXPECT_NE(disprove(problem, {on_row(0, 1), on_row(1, 1)}), Disproof::kInfeasible);
  problem = between(1, 1 - 0x1p-45);
  EXPECT_EQ(disprove(problem, {on_row(0, 1), on_row(1, 1)}), Disproof::kInfeasible);
}

TEST(Disprove, RefusesSizesThatOverflowOrVanish) {
  for (const double l : {1e80, 1e-80, 1e-150, 1e-200, HUGE_VAL, std::nan("")}) {
    EXPECT_EQ(disprove(between(1, 0), {on_row(0, l), on_row(1, l)}), Disproof::kNone) << l;
  }
  EXPECT_EQ(disprove(between(1e80, 0), {on_row(0, 1), on_row(1, 1)}), Disproof::kNone);
  // 1e-200 > 0 is true
  EXPECT_EQ(disprove(ProblemBuilder(0).row(kStrict, {1e-200, {}}).build(), {on_row(0, 1)}),
            Disproof::kNone);
}

TEST(Disprove, RefusesFactorsOfAnotherShape) {
  EXPECT_EQ(disprove(between(1, 0), {{0, Eigen::MatrixXd::Ones(2, 1)}, on_row(1, 1)}),
            Disproof::kNone);
  EXPECT_EQ(disprove(between(1, 0), {{0, Eigen::MatrixXd(1, 0)}, on_row(1, 1)}), Disproof::kNone);
}

TEST(Disprove, TakesOneNumberForAnEquation) {
  const Problem problem =
      ProblemBuilder(1).row(kEqual, {-1, {{0, 1}}}).row(kStrict, {0, {{0, -1}}}).build();
  EXPECT_EQ(disprove(problem, {on_row(0, 1), on_row(1, 1)}), Disproof::kInfeasible);
  EXPECT_EQ(disprove(problem, {{0, Eigen::MatrixXd::Ones(1, 2)}, on_row(1, 1)}), Disproof::kNone);
}

TEST(Disprove, ANumberThatIsNoneDisprovesNothing) {
  const Problem problem = ProblemBuilder(1)
                              .row(kNonStrict, {1, {}})
                              .row(kStrict, {0, {{0, 1}}})
                              .row(kStrict, {1, {{0, -1}}})
                              .build();
  EXPECT_EQ(disprove(problem, {on_row(0, std::nan("")), on_row(1, 1), on_row(2, 1)}),
            Disproof::kNone);
}

TEST(Disprove, TinyConstantsThatMultipliersLoseAreStillThere) {
  // 0 < x < c
  for (const double c : {1e-60, 1e-100, 1e-165, 1e-200, 1e-300}) {
    for (const double l : {1.0, 1e-60, 1e-90}) {
      EXPECT_NE(disprove(between(0, c), {on_row(0, l), on_row(1, l)}), Disproof::kInfeasible)
          << c << " " << l;
    }
  }
}

TEST(Disprove, ConstantsThatCancelInTheSumAreStillThere) {
  // Both matrices hold [1e16, -1e16; -1e16, 1e16] and are positive definite at
  // x = 1/4; their sum under (1,1,1) loses the 1 of the corner to rounding.
  const double big = 1e16;
  const Problem problem =
      ProblemBuilder(1)
          .matrix(kStrict, 3, {{1, {}}, {}, {}, {big, {{0, 1}}}, {-big, {}}, {big, {}}})
          .matrix(kStrict, 3, {{1, {{0, -2}}}, {}, {}, {big, {{0, 1}}}, {-big, {}}, {big, {}}})
          .build();
  const Eigen::MatrixXd ones = Eigen::MatrixXd::Ones(3, 1);
  EXPECT_NE(disprove(problem, {{0, ones}, {1, ones}}), Disproof::kInfeasible);
}

TEST(Disprove, ASmallMultiplierDoesNotHideItsRest) {
  // x >= 1e30 in a box of 1e31
  Problem problem = ProblemBuilder(1).row(kNonStrict, {-1e30, {{0, 1}}}).build();
  problem.big_m = 1e31;
  for (const double l : {1.0, 1e-30, 1e-60, 1e-150, 1e-175}) {
    EXPECT_EQ(disprove(problem, {on_row(0, l)}), Disproof::kNone) << l;
  }
}

TEST(Disprove, WithoutABoxNothingIsChargedToIt) {
  // x >= 20000: contradictory in the box, and only there
  Problem problem = ProblemBuilder(1).row(kNonStrict, {-20000, {{0, 1}}}).build();
  EXPECT_EQ(disprove(problem, {on_row(0, 1)}), Disproof::kEmptyBox);
  problem.boxed = false;
  EXPECT_EQ(disprove(problem, {on_row(0, 1)}), Disproof::kNone);
}

TEST(ProvenBound, WithoutABoxOnlyAnExactBalanceProvesOne) {
  // maximise x with x <= 3
  Problem problem = ProblemBuilder(1).row(kNonStrict, {3, {{0, -1}}}).maximise({1}).build();
  problem.boxed = false;
  EXPECT_NEAR(proven_bound(problem, {on_row(0, 1)}), 3, 1e-12);
  EXPECT_EQ(proven_bound(problem, {}), HUGE_VAL);
}

TEST(ProvenBound, ExactMultipliersProveTheOptimum) {
  std::mt19937 random(8);
  for (int round = 0; round < 2000; ++round) {
    const KnownOptimum known = testing::random_known_optimum(random);
    std::vector<Multiplier> multipliers;
    for (std::size_t r = 0; r < known.weights.size(); ++r) {
      multipliers.push_back(on_row(r, std::sqrt(known.weights[r])));
    }
    const double bound = proven_bound(known.problem, multipliers);
    ASSERT_GE(bound, known.value);
    ASSERT_NEAR(bound, known.value, 1e-7);
  }
}

TEST(ProvenBound, NoMultipliersProveLessThanTheOptimum) {
  std::mt19937 random(9);
  std::normal_distribution<double> normal;
  for (int round = 0; round < 5000; ++round) {
    const KnownOptimum known = testing::random_known_optimum(random);
    const double error = std::pow(10.0, -(round % 16));
    std::vector<Multiplier> multipliers;
    for (std::size_t r = 0; r < known.weights.size(); ++r) {
      multipliers.push_back(on_row(r, std::sqrt(known.weights[r]) * (1 + error * normal(random))));
    }
    if (round % 5 == 0) multipliers.pop_back();
    ASSERT_GE(proven_bound(known.problem, multipliers), known.value) << "round " << round;
  }
}

TEST(ProvenBound, NumbersThatAreNoneProveNone) {
  const Problem problem = ProblemBuilder(1).row(kStrict, {1, {{0, -1}}}).maximise({1}).build();
  for (const double l : {std::nan(""), HUGE_VAL, 1e80, 1e-80}) {
    EXPECT_EQ(proven_bound(problem, {on_row(0, l)}), HUGE_VAL) << l;
  }
  EXPECT_GE(proven_bound(problem, {}), 15000);
}

}  // namespace
}  // namespace sdpsol
