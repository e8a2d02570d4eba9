// How close polished multipliers come to their balance.
#include "solver/decide/polish.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::ProblemBuilder;

/// Of every unknown, over what was added up for it.
double largest_rest(const Problem& problem, const std::vector<Multiplier>& multipliers) {
  const Weights::Sums sums = Weights(problem, multipliers).sums();
  double largest = 0;
  for (std::size_t k = 1; k < sums.values.size(); ++k) {
    largest = std::max(largest, std::fabs(static_cast<double>(sums.values[k])) / sums.sizes[k]);
  }
  return largest;
}

TEST(Polish, TurnsASingularMultiplierOntoItsFace) {
  // [x, y; y, w] > 0 and -(x - 2*y + w) - 1 > 0 balance under v*v' and 1, v = [1, -1]
  const Problem problem =
      ProblemBuilder(3)
          .matrix(Sense::kStrict, 2, {{0, {{0, 1}}}, {0, {{1, 1}}}, {0, {{2, 1}}}})
          .row(Sense::kStrict, {-1, {{0, -1}, {1, 2}, {2, -1}}})
          .build();
  const std::vector<Multiplier> rough = {{0, Eigen::Vector2d(1 + 3e-5, -1 + 1e-5)},
                                         {1, Eigen::MatrixXd::Constant(1, 1, 1 - 2e-5)}};
  EXPECT_GT(largest_rest(problem, rough), 1e-6);
  EXPECT_LT(largest_rest(problem, polish(problem, rough)), 1e-15);
}

TEST(Polish, TakesEquationsAlong) {
  // x - y == 0 and y - x - 1 > 0
  const Problem problem = ProblemBuilder(2)
                              .row(Sense::kEqual, {0, {{0, 1}, {1, -1}}})
                              .row(Sense::kStrict, {-1, {{0, -1}, {1, 1}}})
                              .build();
  const std::vector<Multiplier> rough = {{0, Eigen::MatrixXd::Constant(1, 1, 1.001)},
                                         {1, Eigen::MatrixXd::Ones(1, 1)}};
  EXPECT_LT(largest_rest(problem, polish(problem, rough)), 1e-15);
}

TEST(Polish, LeavesWhatCannotBalanceWithoutHarm) {
  // x > 1 alone
  const Problem problem = ProblemBuilder(1).row(Sense::kStrict, {-1, {{0, 1}}}).build();
  const auto polished = polish(problem, {{0, Eigen::MatrixXd::Ones(1, 1)}});
  ASSERT_EQ(polished.size(), 1U);
  EXPECT_TRUE(polished[0].factor.allFinite());
}

}  // namespace
}  // namespace sdpsol
