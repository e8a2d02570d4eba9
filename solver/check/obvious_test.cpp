// Contradictions that need no engine, and what must not be taken for one.
#include "solver/check/obvious.h"

#include <gtest/gtest.h>

#include <random>

#include "solver/check/test_linear_truth.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::Form;
using testing::kEqual;
using testing::kNonStrict;
using testing::kStrict;
using testing::kX;
using testing::ProblemBuilder;

std::string reason(const ProblemBuilder& builder) {
  const auto found = find_obvious_contradiction(builder.build());
  return found ? found->reason : "";
}

const std::string kFalseRelation = "a relation between constants is false";
const std::string kBounds = "two bounds exclude each other";

TEST(Obvious, FalseRelationsBetweenConstants) {
  EXPECT_EQ(reason(ProblemBuilder(0).row(kStrict, {})), kFalseRelation);
  EXPECT_EQ(reason(ProblemBuilder(0).row(kStrict, {-1, {}})), kFalseRelation);
  EXPECT_EQ(reason(ProblemBuilder(0).row(kNonStrict, {-1, {}})), kFalseRelation);
  EXPECT_EQ(reason(ProblemBuilder(0).row(kEqual, {1, {}})), kFalseRelation);
  EXPECT_EQ(reason(ProblemBuilder(0).row(kEqual, {-1, {}})), kFalseRelation);
}

TEST(Obvious, TrueRelationsBetweenConstants) {
  EXPECT_EQ(reason(ProblemBuilder(0)
                       .row(kStrict, {1e-300, {}})
                       .row(kNonStrict, {})
                       .row(kEqual, {})
                       .matrix(kStrict, 2, {{2, {}}, {1, {}}, {1, {}}})),
            "");
}

TEST(Obvious, TheRoundingOfReadingIsNoContradiction) {
  // -2^-50 left of constants that add up to 1 in size
  Problem problem = ProblemBuilder(0).row(kNonStrict, {-0x1p-50, {}}).build();
  problem.blocks[0].terms[0].magnitude = 1;
  EXPECT_FALSE(find_obvious_contradiction(problem).has_value());
  problem.blocks[0].terms[0].value = -0x1p-47;
  EXPECT_TRUE(find_obvious_contradiction(problem).has_value());
}

TEST(Obvious, BoundsNamesBothConditions) {
  // x < 5, y > 0, x > 6
  const auto found = find_obvious_contradiction(ProblemBuilder(2)
                                                    .row(kStrict, {5, {{0, -1}}})
                                                    .row(kStrict, {0, {{1, 1}}})
                                                    .row(kStrict, {-6, {{0, 1}}})
                                                    .build());
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->reason, kBounds);
  EXPECT_EQ(found->conditions, (std::vector<std::int32_t>{0, 2}));
}

TEST(Obvious, EquationsThatDiffer) {
  EXPECT_EQ(reason(ProblemBuilder(1).row(kEqual, {-1, {{0, 1}}}).row(kEqual, {-4, {{0, 2}}})),
            kBounds);
  EXPECT_EQ(reason(ProblemBuilder(1).row(kEqual, {-1, {{0, 1}}}).row(kEqual, {2, {{0, -2}}})), "");
}

TEST(Obvious, ABoundAboveAnEquation) {
  EXPECT_EQ(reason(ProblemBuilder(1).row(kEqual, {-1, {{0, 1}}}).row(kStrict, {-1, {{0, 1}}})),
            kBounds);
  EXPECT_EQ(reason(ProblemBuilder(1).row(kEqual, {-1, {{0, 1}}}).row(kNonStrict, {-1, {{0, 1}}})),
            "");
}

TEST(Obvious, AZeroOnTheDiagonal) {
  EXPECT_EQ(reason(ProblemBuilder(1).matrix(kStrict, 2, {kX, {1, {}}, {}})),
            "a diagonal entry is 0 for every value of the variables");
  EXPECT_EQ(reason(ProblemBuilder(1).matrix(kNonStrict, 2, {kX, {1, {}}, {}})),
            "a constant other than 0 stands beside a diagonal entry that is always 0");
  EXPECT_EQ(reason(ProblemBuilder(1).matrix(kNonStrict, 2, {kX, {1, {{0, 1}}}, {}})), "");
  EXPECT_EQ(reason(ProblemBuilder(1).matrix(kNonStrict, 2, {kX, {}, {}})), "");
}

TEST(Obvious, MatricesThatAreNeverPositive) {
  EXPECT_EQ(reason(ProblemBuilder(0).matrix(kNonStrict, 2, {{1, {}}, {2, {}}, {1, {}}})),
            "a constant matrix is not positive");
  EXPECT_EQ(reason(ProblemBuilder(1).matrix(kStrict, 2, {kX, kX, kX})),
            "a matrix is singular for every value of the variables");
}

TEST(Obvious, ProductsThatOverflowOrVanishProveNothing) {
  // s*(x + y + z) > 0, -s*(x + y + 3z) > 0: not parallel
  for (const double s : {1e200, 1e-200, 1e160, 1e-165}) {
    EXPECT_EQ(reason(ProblemBuilder(3)
                         .row(kStrict, {0, {{0, s}, {1, s}, {2, s}}})
                         .row(kStrict, {0, {{0, -s}, {1, -s}, {2, -3 * s}}})),
              "")
        << s;
  }
}

TEST(Obvious, TinyConstantsBetweenBoundsLeaveAGap) {
  // 0 < x < c
  for (const double c : {1e-100, 1e-165, 1e-200, 1e-300}) {
    EXPECT_EQ(reason(ProblemBuilder(1).row(kStrict, kX).row(kStrict, {c, {{0, -1}}})), "") << c;
  }
}

TEST(Obvious, BarelyPositiveConstantMatricesAreNotDeclaredFalse) {
  // [a*a, a*b; a*b, b*b + c*c], exact in doubles
  std::mt19937 random(6);
  std::uniform_int_distribution<int> factor(1, 90000000);
  for (int round = 0; round < 20000; ++round) {
    const double a = factor(random);
    const double b = factor(random);
    const double c = 1 + round % 3;
    ASSERT_EQ(reason(ProblemBuilder(0).matrix(kStrict, 2,
                                              {{a * a, {}}, {a * b, {}}, {b * b + c * c, {}}})),
              "")
        << a << " " << b << " " << c;
  }
}

TEST(Obvious, NothingFeasibleIsEverExcluded) {
  std::mt19937 random(7);
  const auto uniform = [&](int from, int to) {
    return std::uniform_int_distribution<int>(from, to)(random);
  };
  int excluded = 0;
  for (int round = 0; round < 20000; ++round) {
    std::vector<testing::ExactRow> rows(static_cast<std::size_t>(uniform(1, 8)));
    for (testing::ExactRow& row : rows) {
      row.coefficients[0] = uniform(-2, 2);
      row.coefficients[1] = uniform(-1, 1);
      row.constant = uniform(-2, 2);
      row.sense = static_cast<Sense>(uniform(0, 2));
    }
    if (!find_obvious_contradiction(testing::problem_of(rows, 2))) continue;
    ++excluded;
    ASSERT_FALSE(testing::exactly_feasible(rows)) << "round " << round;
  }
  EXPECT_GT(excluded, 2000);
}

}  // namespace
}  // namespace sdpsol
