// Rows that bound the same form, and coefficients that may be noise.
#include <gtest/gtest.h>

#include "solver/problem/noise.h"
#include "solver/problem/parallel_rows.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::kStrict;
using testing::ProblemBuilder;

TEST(ParallelRows, ProportionalRowsAreOneGroup) {
  const auto groups = group_parallel_rows(ProblemBuilder(2)
                                              .row(kStrict, {5, {{0, 1}, {1, 3}}})
                                              .row(kStrict, {0, {{0, 1}, {1, 2}}})
                                              .row(kStrict, {7, {{0, -0.1}, {1, -0.1 * 3}}})
                                              .row(kStrict, {8, {{0, -2}, {1, -6}}})
                                              .build());
  // 0.1 * 3 is no double: the third row stands alone.
  ASSERT_EQ(groups.size(), 3U);
  ASSERT_EQ(groups[0].size(), 2U);
  EXPECT_EQ(groups[0][1].block, 3U);
  EXPECT_EQ(groups[0][1].scale, -2);
  EXPECT_EQ(groups[0][1].constant, 8);
  EXPECT_EQ(groups[0][1].constant_magnitude, 8);
}

TEST(ParallelRows, ZerosAndConstantsDoNotCount) {
  const auto groups = group_parallel_rows(ProblemBuilder(2)
                                              .row(kStrict, {1, {}})
                                              .row(kStrict, {0, {{0, 0}, {1, 1}}})
                                              .row(kStrict, {0, {{1, 4}}})
                                              .matrix(kStrict, 2, {{1, {}}, {}, {1, {}}})
                                              .build());
  ASSERT_EQ(groups.size(), 1U);
  EXPECT_EQ(groups[0].size(), 2U);
}

TEST(Noise, IsBelowAMillionMillionthOfItsUnknown) {
  const Problem problem = ProblemBuilder(2)
                              .row(kStrict, {1e-20, {{0, 1}, {1, 1e-14}}})
                              .row(kStrict, {0, {{0, 0.9e-12}}})
                              .row(kStrict, {0, {{0, 1.1e-12}, {1, 1e-14}}})
                              .build();
  // The second unknown is small everywhere, and a constant has no neighbours.
  EXPECT_EQ(noisy_conditions(problem), std::vector<std::int32_t>{1});
  const Problem clean = without_noise(problem);
  EXPECT_EQ(clean.blocks[1].terms[0].value, 0);
  EXPECT_EQ(clean.blocks[1].terms[0].magnitude, 0.9e-12);
  EXPECT_EQ(clean.blocks[2].terms, problem.blocks[2].terms);
}

TEST(Noise, IsBelowAMillionMillionthOfWhatItCancelledFrom) {
  Problem problem = ProblemBuilder(1).row(kStrict, {1e-13, {{0, 1e-13}}}).build();
  EXPECT_TRUE(noisy_conditions(problem).empty());
  problem.blocks[0].terms[0].magnitude = 1;
  EXPECT_EQ(noisy_conditions(problem), std::vector<std::int32_t>{0});
  EXPECT_EQ(without_noise(problem).blocks[0].terms[0].value, 0);
  EXPECT_EQ(without_noise(problem).blocks[0].terms[1].value, 1e-13);
}

TEST(Noise, ZeroIsNone) {
  EXPECT_TRUE(noisy_conditions(ProblemBuilder(1).row(kStrict, {0, {{0, 0}}}).build()).empty());
}

}  // namespace
}  // namespace sdpsol
