#include "solver/check/evaluate.h"

#include <gtest/gtest.h>

#include <limits>

#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::ProblemBuilder;

TEST(Evaluate, FillsBothTrianglesAndAddsUpMagnitudes) {
  // [1 - 2x, x + y; ., 3y] at x = 2, y = -1
  const Problem problem =
      ProblemBuilder(2)
          .matrix(Sense::kStrict, 2, {{1, {{0, -2}}}, {0, {{0, 1}, {1, 1}}}, {0, {{1, 3}}}})
          .build();
  const Evaluated at = evaluate(problem.blocks[0], {2, -1});
  EXPECT_EQ(at.value, (Eigen::MatrixXd(2, 2) << -3, 1, 1, -3).finished());
  EXPECT_EQ(at.magnitude, (Eigen::MatrixXd(2, 2) << 5, 3, 3, 3).finished());
}

TEST(Evaluate, ACancelledCoefficientStillCounts) {
  Problem problem = ProblemBuilder(1).row(Sense::kStrict, {1, {{0, 0}}}).build();
  problem.blocks[0].terms[1].magnitude = 7;
  const Evaluated at = evaluate(problem.blocks[0], {-2});
  EXPECT_EQ(at.value(0, 0), 1);
  EXPECT_EQ(at.magnitude(0, 0), 15);
}

TEST(Evaluate, ABlockWithoutTermsIsZero) {
  const Evaluated at = evaluate(Block{3, Sense::kStrict, 0, {}}, {});
  EXPECT_TRUE(at.value.isZero(0));
  EXPECT_TRUE(at.magnitude.isZero(0));
}

TEST(RelativeRoom, IsTheShareOfWhatWasAddedUp) {
  const Problem problem = ProblemBuilder(1)
                              .row(Sense::kStrict, {-1, {{0, 1}}})
                              .matrix(Sense::kStrict, 2, {{4, {}}, {1, {}}, {1, {}}})
                              .build();
  EXPECT_DOUBLE_EQ(relative_room(evaluate(problem.blocks[0], {3})), 0.5);
  // [1, 1/2; 1/2, 1] after scaling
  EXPECT_NEAR(relative_room(evaluate(problem.blocks[1], {3})), 0.5, 1e-15);
}

TEST(RelativeRoom, AZeroOnTheDiagonalLeavesNone) {
  const Problem problem =
      ProblemBuilder(0).matrix(Sense::kStrict, 2, {{1, {}}, {1, {}}, {}}).build();
  EXPECT_EQ(relative_room(evaluate(problem.blocks[0], {})),
            -std::numeric_limits<double>::infinity());
}

}  // namespace
}  // namespace sdpsol
