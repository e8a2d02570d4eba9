// Which conditions an engine is asked about.
#include "solver/decide/presolve.h"

#include <gtest/gtest.h>

#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::Form;
using testing::kEqual;
using testing::kNonStrict;
using testing::kStrict;
using testing::ProblemBuilder;

using Blocks = std::vector<std::size_t>;

Blocks inequalities(const ProblemBuilder& builder) {
  return select_conditions(builder.build()).inequalities;
}

Form bound(double constant, double coefficient) {
  return {constant, {{0, coefficient}}};
}

TEST(SelectConditions, KeepsTheTightestOfParallelBoundsOnEachSide) {
  // x > 1, x > 2, 2x > 1, x < 9, x < 7
  EXPECT_EQ(inequalities(ProblemBuilder(1)
                             .row(kStrict, bound(-1, 1))
                             .row(kStrict, bound(-2, 1))
                             .row(kStrict, bound(-1, 2))
                             .row(kStrict, bound(9, -1))
                             .row(kStrict, bound(7, -1))),
            (Blocks{1, 4}));
}

TEST(SelectConditions, KeepsTheStrictOneOfEqualBounds) {
  EXPECT_EQ(
      inequalities(ProblemBuilder(1).row(kNonStrict, bound(-1, 1)).row(kStrict, bound(-2, 2))),
      (Blocks{1}));
  EXPECT_EQ(
      inequalities(ProblemBuilder(1).row(kStrict, bound(-2, 2)).row(kNonStrict, bound(-1, 1))),
      (Blocks{0}));
}

TEST(SelectConditions, TakesNonStrictBoundsThatMeetAsOneEquation) {
  // x >= 3, 2x <= 6
  const Selection selection = select_conditions(
      ProblemBuilder(1).row(kNonStrict, bound(-3, 1)).row(kNonStrict, bound(6, -2)).build());
  EXPECT_TRUE(selection.inequalities.empty());
  ASSERT_EQ(selection.equations.size(), 1U);
  EXPECT_EQ(selection.equations[0].block, 0U);
  EXPECT_EQ(selection.equations[0].opposite, 1U);
}

TEST(SelectConditions, LeavesBoundsThatCrossOrMeetStrictlyToTheEngine) {
  // x >= 3, x <= 2; x > 3, x <= 3
  EXPECT_EQ(
      inequalities(ProblemBuilder(1).row(kNonStrict, bound(-3, 1)).row(kNonStrict, bound(2, -1))),
      (Blocks{0, 1}));
  EXPECT_EQ(
      inequalities(ProblemBuilder(1).row(kStrict, bound(-3, 1)).row(kNonStrict, bound(3, -1))),
      (Blocks{0, 1}));
}

TEST(SelectConditions, TakesEachEquationOnce) {
  const Selection selection = select_conditions(
      ProblemBuilder(1).row(kEqual, bound(-3, 1)).row(kEqual, bound(-6, 2)).build());
  ASSERT_EQ(selection.equations.size(), 1U);
  EXPECT_EQ(selection.equations[0].block, 0U);
  EXPECT_FALSE(selection.equations[0].opposite);
}

TEST(SelectConditions, LeavesOutWhatHoldsNoUnknowns) {
  // 1 > 0; [1,0;0,1] > 0; [x,0;0,1] > 0
  EXPECT_EQ(inequalities(ProblemBuilder(1)
                             .row(kStrict, {1, {}})
                             .matrix(kStrict, 2, {{1, {}}, {}, {1, {}}})
                             .matrix(kStrict, 2, {bound(0, 1), {}, {1, {}}})),
            (Blocks{2}));
}

TEST(ReduceSingularMatrices, SplitsNullVectorsOffNonStrictMatricesOnly) {
  // x * [1,1;1,1], whose null vector is (1,-1)
  const Form x = bound(0, 1);
  const Problem problem =
      ProblemBuilder(1).matrix(kNonStrict, 2, {x, x, x}).matrix(kStrict, 2, {x, x, x}).build();
  ASSERT_TRUE(has_singular_matrices(problem));
  const Problem reduced = reduce_singular_matrices(problem);
  ASSERT_EQ(reduced.blocks.size(), 2U);
  EXPECT_EQ(reduced.blocks[0].size, 1);
  EXPECT_EQ(reduced.blocks[0].sense, kNonStrict);
  ASSERT_EQ(reduced.blocks[0].terms.size(), 1U);
  EXPECT_GT(reduced.blocks[0].terms[0].value, 0);
  EXPECT_EQ(reduced.blocks[1].size, 2);
}

TEST(ReduceSingularMatrices, LeavesARowThatHoldsWhereNothingIsLeft) {
  const Problem problem = ProblemBuilder(0).matrix(kNonStrict, 2, {{}, {}, {}}).build();
  const Problem reduced = reduce_singular_matrices(problem);
  EXPECT_EQ(reduced.blocks[0].size, 1);
  EXPECT_TRUE(reduced.blocks[0].terms.empty());
}

TEST(ReduceSingularMatrices, FindsNothingInARegularMatrix) {
  const Form x = bound(0, 1);
  EXPECT_FALSE(has_singular_matrices(ProblemBuilder(1).matrix(kNonStrict, 2, {x, {}, x}).build()));
}

}  // namespace
}  // namespace sdpsol
