// What a point proves: room, equations, distance, box.
#include "solver/check/feasible.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solver/check/equations.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::Form;
using testing::kEqual;
using testing::kNonStrict;
using testing::kStrict;
using testing::kX;
using testing::ProblemBuilder;

PointResult at(const ProblemBuilder& builder, std::vector<double> point,
               RoomAsked asked = RoomAsked::kForVerdict) {
  return check_point(builder.build(), std::move(point), asked).result;
}

TEST(CheckPoint, AStrictRowNeedsRoom) {
  // x > 1: what was added up is about 2, the room asked 8.8e-6
  const ProblemBuilder above = ProblemBuilder(1).row(kStrict, {-1, {{0, 1}}});
  EXPECT_EQ(at(above, {1 + 9e-6}), PointResult::kProven);
  EXPECT_EQ(at(above, {1 + 8.7e-6}), PointResult::kNotProven);
  EXPECT_EQ(at(above, {1 + 1e-13}, RoomAsked::kBeyondRounding), PointResult::kProven);
  EXPECT_EQ(at(above, {1}, RoomAsked::kBeyondRounding), PointResult::kNotProven);
}

TEST(CheckPoint, AStrictMatrixNeedsRoom) {
  // [1, x; x, 1] > 0: at x the smallest eigenvalue is 1 - x
  const ProblemBuilder unit = ProblemBuilder(1).matrix(kStrict, 2, {{1, {}}, kX, {1, {}}});
  EXPECT_EQ(at(unit, {1 - 4.5e-6}), PointResult::kProven);
  EXPECT_EQ(at(unit, {1 - 4.3e-6}), PointResult::kNotProven);
  EXPECT_EQ(at(unit, {1 - 1e-12}, RoomAsked::kBeyondRounding), PointResult::kProven);
  EXPECT_EQ(at(unit, {1}, RoomAsked::kBeyondRounding), PointResult::kNotProven);
}

TEST(CheckPoint, RoomIsMeasuredByWhatWasAddedUp) {
  // x > 0 with a constant that cancelled from 1e6
  Problem problem = ProblemBuilder(1).row(kStrict, {0, {{0, 1}}}).build();
  EXPECT_EQ(check_point(problem, {1}).result, PointResult::kProven);
  problem.blocks[0].terms.insert(problem.blocks[0].terms.begin(), {0, 0, kConstant, 0, 1e6});
  EXPECT_EQ(check_point(problem, {1}).result, PointResult::kNotProven);
}

TEST(CheckPoint, NonStrictRowsMayBeMet) {
  EXPECT_EQ(at(ProblemBuilder(1).row(kNonStrict, kX), {0}), PointResult::kProven);
  EXPECT_EQ(at(ProblemBuilder(1).row(kNonStrict, kX).row(kNonStrict, {0, {{0, -1}}}), {0}),
            PointResult::kProven);
}

TEST(CheckPoint, ThePointIsMovedOntoTheEquations) {
  const Problem problem =
      ProblemBuilder(2).row(kEqual, {-2, {{0, 1}, {1, 1}}}).row(kStrict, kX).build();
  const FeasibleCheck check = check_point(problem, {0.9, 0.9});
  EXPECT_EQ(check.result, PointResult::kProven);
  EXPECT_NEAR(check.point[0] + check.point[1], 2, 1e-15);
}

TEST(CheckPoint, SolutionsBetweenDoublesHaveADistance) {
  // 3x == 1
  const Problem problem = ProblemBuilder(1).row(kEqual, {-1, {{0, 3}}}).build();
  const FeasibleCheck check = check_point(problem, {0});
  ASSERT_EQ(check.result, PointResult::kProven);
  ASSERT_EQ(check.distance.size(), 1U);
  // The rounding error of 1/3 is 1/3 * 2^-54.
  EXPECT_GE(check.distance[0], 0x1p-54 / 3);
  EXPECT_LT(check.distance[0], 1e-14);
}

TEST(CheckPoint, EverythingElseHoldsWithinTheDistance) {
  // 3x == 1, x > 1/3: no point, although x = 1/3 rounded up seems to be one
  const double third = 1.0 / 3;
  for (const RoomAsked asked : {RoomAsked::kForVerdict, RoomAsked::kBeyondRounding}) {
    EXPECT_EQ(at(ProblemBuilder(1).row(kEqual, {-1, {{0, 3}}}).row(kStrict, {-third, {{0, 1}}}),
                 {third}, asked),
              PointResult::kNotProven);
  }
}

TEST(CheckPoint, ContradictingEquationsAreNotMet) {
  EXPECT_EQ(at(ProblemBuilder(1).row(kEqual, {-1, {{0, 1}}}).row(kEqual, {-2, {{0, 1}}}), {1}),
            PointResult::kNotProven);
  EXPECT_EQ(
      at(ProblemBuilder(1).row(kEqual, {-1, {{0, 1}}}).row(kEqual, {-1 - 1e-12, {{0, 1}}}), {1}),
      PointResult::kNotProven);
}

TEST(CheckPoint, DependentEquationsAreMetTogether) {
  // x + y == 1, 3x - y == 1/2 and their sum, with thirds in between
  const FeasibleCheck check = check_point(ProblemBuilder(2)
                                              .row(kEqual, {-1, {{0, 1}, {1, 2}}})
                                              .row(kEqual, {-0.5, {{0, 4}, {1, -1}}})
                                              .row(kEqual, {-1.5, {{0, 5}, {1, 1}}})
                                              .build(),
                                          {0, 0});
  EXPECT_EQ(check.result, PointResult::kProven);
}

TEST(CheckPoint, ANonStrictMatrixOnItsBorderNeedsExactNullVectors) {
  EXPECT_EQ(at(ProblemBuilder(1).matrix(kNonStrict, 2, {kX, kX, kX}), {1}), PointResult::kProven);
  // [1, 1; 1, x] at x = 1 is singular, but not for every x.
  EXPECT_EQ(at(ProblemBuilder(1).matrix(kNonStrict, 2, {{1, {}}, {1, {}}, kX}), {1}),
            PointResult::kOnlyWithin1e8);
  EXPECT_EQ(at(ProblemBuilder(1).matrix(kNonStrict, 2, {{1, {}}, {1, {}}, kX}), {1 - 1e-9}),
            PointResult::kOnlyWithin1e8);
  EXPECT_EQ(at(ProblemBuilder(1).matrix(kNonStrict, 2, {{1, {}}, {1, {}}, kX}), {1 - 1e-7}),
            PointResult::kNotProven);
}

TEST(CheckPoint, TheBoxHolds) {
  const ProblemBuilder positive = ProblemBuilder(1).row(kStrict, kX);
  EXPECT_EQ(at(positive, {15000}), PointResult::kProven);
  EXPECT_EQ(at(positive, {15000.000001}), PointResult::kNotProven);
  EXPECT_EQ(at(ProblemBuilder(2).row(kStrict, kX), {1, -15001}), PointResult::kNotProven);
}

TEST(CheckPoint, ASolutionBeyondTheBoxByLessThanADoubleShowsIsNotTaken) {
  // x + y == 15000, y == -t
  for (const double t : {1e-13, 1e-170}) {
    EXPECT_EQ(
        at(ProblemBuilder(2).row(kEqual, {-15000, {{0, 1}, {1, 1}}}).row(kEqual, {t, {{1, 1}}}),
           {15000, -t}),
        PointResult::kNotProven)
        << t;
  }
}

TEST(CheckPoint, NumbersThatAreNoneProveNothing) {
  for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    EXPECT_EQ(at(ProblemBuilder(2).row(kStrict, {1, {{0, 1}}}), {1, bad}), PointResult::kNotProven);
    EXPECT_EQ(at(ProblemBuilder(1).row(kNonStrict, {1, {}}), {bad}), PointResult::kNotProven);
  }
}

TEST(CheckPoint, ProductsThatLoseTheirLastBitsAreNotBelieved) {
  // 1e-160*x > 3e-323, both sides near the smallest numbers there are
  const Problem problem = ProblemBuilder(1).row(kStrict, {-3e-323, {{0, 1e-160}}}).build();
  for (int i = 0; i < 2000; ++i) {
    const double x = 2.9e-163 + i * 1e-166;
    const bool holds = 1e-160L * x - static_cast<long double>(3e-323) > 0;
    if (!holds) {
      ASSERT_NE(check_point(problem, {x}).result, PointResult::kProven) << x;
    }
  }
}

TEST(CheckPoint, TrueConstantsNeedNoRoom) {
  EXPECT_EQ(at(ProblemBuilder(0).row(kNonStrict, {}).row(kEqual, {}), {}), PointResult::kProven);
  EXPECT_EQ(at(ProblemBuilder(0).row(kStrict, {}), {}), PointResult::kNotProven);
}

TEST(DistanceToSolution, IsNothingForAnExactSolution) {
  const Problem problem = ProblemBuilder(1).row(kEqual, {-2, {{0, 4}}}).build();
  EXPECT_EQ(distance_to_solution(problem, {0}, {0.5}), std::vector<double>{});
}

TEST(DistanceToSolution, CoversTheTrueOne) {
  // x + y == 2 from (1.3, 1): the nearest solution is 0.15*sqrt(2) away
  const Problem problem = ProblemBuilder(2).row(kEqual, {-2, {{0, 1}, {1, 1}}}).build();
  const auto distance = distance_to_solution(problem, {0}, {1.3, 1});
  ASSERT_TRUE(distance.has_value());
  EXPECT_GE((*distance)[0], 0.15);
  EXPECT_GE((*distance)[1], 0.15);
}

TEST(CheckPoint, FalseConstantsAreNoEquationsToMoveOnto) {
  const Form almost_zero{1e-9, {}};
  EXPECT_EQ(check_point(ProblemBuilder(0).row(Sense::kEqual, almost_zero).build(), {}).result,
            PointResult::kNotProven);
  EXPECT_EQ(check_point(ProblemBuilder(1).row(Sense::kEqual, almost_zero).build(), {1}).result,
            PointResult::kNotProven);
}

TEST(CheckPoint, WithoutABoxAnyFinitePointWillDo) {
  Problem problem = ProblemBuilder(1).row(kNonStrict, {-1e6, {{0, 1}}}).build();
  EXPECT_EQ(check_point(problem, {2e6}).result, PointResult::kNotProven);
  problem.boxed = false;
  EXPECT_EQ(check_point(problem, {2e6}).result, PointResult::kProven);
  EXPECT_EQ(check_point(problem, {HUGE_VAL}).result, PointResult::kNotProven);
}

TEST(CheckPoint, AnEquationMayBeRepeatedInOtherUnits) {
  // 3*x + 7*y == 1, which no doubles solve exactly here, and 2^-11 or 2^20 of it
  for (const double unit : {0x1p-11, 0x1p20}) {
    const auto repeated = [&](double constant) {
      return ProblemBuilder(2)
          .row(Sense::kEqual, {-1, {{0, 3}, {1, 7}}})
          .row(Sense::kEqual, {constant * unit, {{0, 3 * unit}, {1, 7 * unit}}})
          .row(Sense::kStrict, {0, {{0, 1}}})
          .row(Sense::kStrict, {0, {{1, 1}}})
          .build();
    };
    const std::vector<double> point = {0.1, 0.1};
    EXPECT_EQ(check_point(repeated(-1), point).result, PointResult::kProven);
    EXPECT_EQ(check_point(repeated(-1 - 0x1p-40), point).result, PointResult::kNotProven);
  }
}

}  // namespace
}  // namespace sdpsol
