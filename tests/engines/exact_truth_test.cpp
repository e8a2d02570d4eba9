// The arithmetic that everything else is held against.
#include "tests/engines/exact_truth.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solver/problem/test_problem.h"

namespace sdpsol::testing {
namespace {

// [1, x; x, 1] in a relation to 0, and x >= -1/4
Problem disc(Sense sense) {
  return ProblemBuilder(1)
      .matrix(sense, 2, {{1, {}}, {0, {{0, 1}}}, {1, {}}})
      .row(Sense::kNonStrict, {0.25, {{0, 1}}})
      .build();
}

ExactWeight weight(std::size_t block, const std::vector<Rational>& upper, std::int32_t size) {
  ExactWeight result{block, RationalMatrix(size)};
  std::size_t at = 0;
  for (std::size_t i = 0; i < result.weight.size(); ++i) {
    for (std::size_t j = i; j < result.weight.size(); ++j) result.weight.at(i, j) = upper[at++];
  }
  return result;
}

TEST(ExactTruth, TellsSingularFromDefiniteToTheLastBit) {
  EXPECT_TRUE(satisfies(disc(Sense::kNonStrict), rational({1})));
  EXPECT_FALSE(satisfies(disc(Sense::kStrict), rational({1})));
  EXPECT_TRUE(satisfies(disc(Sense::kStrict), rational({std::nextafter(1, 0)})));
  EXPECT_FALSE(satisfies(disc(Sense::kNonStrict), rational({std::nextafter(1, 2)})));
  EXPECT_FALSE(satisfies(disc(Sense::kNonStrict), rational({-0.5})));
}

TEST(ExactTruth, MeasuresRoomInTheSizesOfWhatIsAddedUp) {
  EXPECT_TRUE(satisfies(disc(Sense::kStrict), rational({0.5}), Rational(1, 3)));
  EXPECT_FALSE(satisfies(disc(Sense::kStrict), rational({0.5}), Rational(1, 2)));
}

TEST(ExactTruth, TakesTheBoxAtItsWord) {
  Problem problem = ProblemBuilder(1).row(Sense::kStrict, {0, {{0, 1}}}).build();
  EXPECT_TRUE(satisfies(problem, rational({15000})));
  EXPECT_FALSE(satisfies(problem, rational({std::nextafter(15000, 1e9)})));
  problem.boxed = false;
  EXPECT_TRUE(satisfies(problem, rational({1e9})));
}

TEST(ExactTruth, FindsTheSolutionWhereARowThatIsMetSeemsToHaveRoom) {
  // 3*x + 3*y >= 1, -y >= 0: whoever moves onto the first alone leaves the second
  const Problem problem = ProblemBuilder(2)
                              .row(Sense::kNonStrict, {-1, {{0, 3}, {1, 3}}})
                              .row(Sense::kNonStrict, {0, {{1, -1}}})
                              .build();
  EXPECT_TRUE(satisfied_within(problem, {1.0 / 3, -1e-31}, {1e-16, 1e-16}, 0));
  EXPECT_FALSE(satisfied_within(problem, {1.0 / 3, -1e-31}, {1e-18, 1e-18}, 0));
}

TEST(ExactTruth, FindsTheSolutionWithinADistance) {
  // 3*x == 1, x > 0
  const Problem problem = ProblemBuilder(1)
                              .row(Sense::kEqual, {-1, {{0, 3}}})
                              .row(Sense::kStrict, {0, {{0, 1}}})
                              .build();
  EXPECT_FALSE(satisfies(problem, rational({1.0 / 3})));
  EXPECT_TRUE(satisfied_within(problem, {1.0 / 3}, {1e-16}, 0));
  EXPECT_FALSE(satisfied_within(problem, {1.0 / 3}, {1e-18}, 0));
  EXPECT_EQ(violation(problem, rational({1.0 / 3}), Rational(1e-9)), nullptr);
  EXPECT_STREQ(violation(problem, rational({0.34}), Rational(1e-9)),
               "the reported point violates an equation");
}

TEST(ExactTruth, KnowsAContradictionFromWhatIsNearlyOne) {
  // x > 1 and x < 1: 0 > 0
  const Problem problem = ProblemBuilder(1)
                              .row(Sense::kStrict, {-1, {{0, 1}}})
                              .row(Sense::kNonStrict, {1, {{0, -1}}})
                              .build();
  EXPECT_TRUE(contradict(problem, {weight(0, {1}, 1), weight(1, {1}, 1)}));
  EXPECT_FALSE(contradict(problem, {weight(0, {1}, 1), weight(1, {Rational(1 + 1e-15)}, 1)}));
  EXPECT_FALSE(contradict(problem, {weight(0, {-1}, 1), weight(1, {-1}, 1)}));
  EXPECT_FALSE(contradict(problem, {weight(0, {0}, 1), weight(1, {0}, 1)}));
}

TEST(ExactTruth, ProvesOptimaByWeightsInTheirCones) {
  Problem problem = disc(Sense::kNonStrict);
  problem.objective = LinearObjective{.cost = {1}};
  const Rational half(1, 2);
  EXPECT_TRUE(bound_the_objective(problem, {weight(0, {half, -half, half}, 2)}, 1));
  EXPECT_FALSE(bound_the_objective(problem, {weight(0, {half, -half, half}, 2)}, Rational(0.99)));
  EXPECT_FALSE(bound_the_objective(problem, {weight(0, {0, -half, 0}, 2)}, 1));
}

}  // namespace
}  // namespace sdpsol::testing
