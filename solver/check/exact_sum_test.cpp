// Sums compared with 128-bit integers.
#include "solver/check/exact_sum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace sdpsol {
namespace {

__extension__ using Wide = __int128;

constexpr double kMax = std::numeric_limits<double>::max();

ExactSum sum_of(const std::vector<double>& values) {
  ExactSum sum;
  for (const double v : values) sum.add(v);
  return sum;
}

TEST(ExactSum, KeepsWhatADoubleLoses) {
  const ExactSum sum = sum_of({1e16, 1, -1e16});
  EXPECT_TRUE(sum.exact());
  EXPECT_EQ(sum.estimate(), 1);
  EXPECT_EQ(sum.sign(), 1);
}

TEST(ExactSum, IsZeroOnlyIfEverythingCancels) {
  EXPECT_TRUE(sum_of({0.1, 0.2, -0.1, -0.2}).certainly_zero());
  EXPECT_FALSE(sum_of({0.1, 0.2, -0.3}).certainly_zero());
  EXPECT_EQ(sum_of({0.1, 0.2, -0.3}).sign(), 1);
  EXPECT_TRUE(ExactSum().certainly_zero());
}

TEST(ExactSum, ProductsAreExact) {
  ExactSum sum;
  sum.add_product(0.1, 3);
  sum.add(-0.3);
  EXPECT_EQ(sum.estimate(), std::fma(0.1, 3, -0.3));
  EXPECT_FALSE(sum.certainly_zero());
}

TEST(ExactSum, AgreesWithIntegersOf128Bits) {
  std::mt19937_64 random(1);
  std::uniform_int_distribution<std::int64_t> factor(-(1LL << 53), 1LL << 53);
  std::uniform_int_distribution<int> kind(0, 3);
  for (int round = 0; round < 20000; ++round) {
    ExactSum sum;
    Wide truth = 0;
    std::int64_t a = 0;
    std::int64_t b = 0;
    for (int i = 0; i < 8; ++i) {
      // Every other product almost cancels its predecessor.
      if (i % 2 == 0) {
        a = factor(random);
        b = factor(random) >> 8;
      } else {
        b = -b + kind(random) / 3;
      }
      sum.add_product(static_cast<double>(a), static_cast<double>(b));
      truth += static_cast<Wide>(a) * b;
    }
    ASSERT_TRUE(sum.exact());
    ASSERT_EQ(sum.sign(), truth > 0 ? 1 : truth < 0 ? -1 : 0);
    ASSERT_NEAR(sum.estimate(), static_cast<double>(truth),
                0x1p-52 * std::fabs(static_cast<double>(truth)));
  }
}

TEST(ExactSum, AVanishingProductSpoilsTheSum) {
  ExactSum sum;
  sum.add_product(1e-200, 1e-200);
  EXPECT_FALSE(sum.exact());
  EXPECT_FALSE(sum.certainly_zero());
}

TEST(ExactSum, AProductWhoseRoundingErrorMayVanishSpoilsTheSum) {
  ExactSum sum;
  sum.add_product(1e-150 / 3, 1e-150 / 7);
  EXPECT_FALSE(sum.exact());
}

TEST(ExactSum, OverflowAndNotANumberSpoilTheSum) {
  EXPECT_FALSE(sum_of({kMax, kMax, -kMax, -kMax}).certainly_zero());
  EXPECT_FALSE(sum_of({std::nan("")}).certainly_zero());
  EXPECT_FALSE(sum_of({HUGE_VAL, -HUGE_VAL}).certainly_zero());
  ExactSum product;
  product.add_product(1e200, 1e200);
  product.add_product(-1e200, 1e200);
  EXPECT_FALSE(product.certainly_zero());
}

TEST(ExactSum, StaysSpoilt) {
  ExactSum sum;
  sum.add(std::nan(""));
  sum.add(1);
  sum.add(-1);
  EXPECT_FALSE(sum.exact());
}

TEST(ExactSum, AProductThatUnderflowsTakesNothingElseAlong) {
  ExactSum sum;
  sum.add(2);
  sum.add_product(1e-200, 1e-200);
  sum.add_product(3, 5);
  EXPECT_FALSE(sum.exact());
  EXPECT_EQ(sum.estimate(), 17);
}

}  // namespace
}  // namespace sdpsol
