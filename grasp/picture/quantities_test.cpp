#include "grasp/picture/quantities.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace grasp::picture {
namespace {

TEST(RoundStep, IsTheLargestRoundNumberNotAboveTheLimit) {
  EXPECT_DOUBLE_EQ(round_step(1), 1);
  EXPECT_DOUBLE_EQ(round_step(1.99), 1);
  EXPECT_DOUBLE_EQ(round_step(0.049), 0.02);
  EXPECT_DOUBLE_EQ(round_step(731), 500);
  for (double power = 1e-12; power < 1e12; power *= 10) {
    EXPECT_NEAR(round_step(power) / power, 1, 1e-9);
  }
}

TEST(RoundStep, IsNothingWithoutALimit) {
  EXPECT_EQ(round_step(0), 0);
  EXPECT_EQ(round_step(-1), 0);
  EXPECT_EQ(round_step(std::numeric_limits<double>::infinity()), 0);
  EXPECT_EQ(round_step(std::nan("")), 0);
}

TEST(LengthInWords, TakesTheUnitThatFits) {
  EXPECT_EQ(length_in_words(2e-5), "20 \u00b5m");
  EXPECT_EQ(length_in_words(1e-4), "0.1 mm");
  EXPECT_EQ(length_in_words(5e-3), "5 mm");
  EXPECT_EQ(length_in_words(1e-2), "1 cm");
  EXPECT_EQ(length_in_words(0.5), "50 cm");
  EXPECT_EQ(length_in_words(1), "1 m");
  EXPECT_EQ(length_in_words(50), "50 m");
  EXPECT_EQ(length_in_words(1000), "1 km");
}

TEST(ForceInWords, HasThreeDigitsInTheUnitOfTheLargest) {
  EXPECT_EQ(force_in_words(4.2, 10), "4.2 N");
  EXPECT_EQ(force_in_words(1.0 / 3, 10), "0.333 N");
  EXPECT_EQ(force_in_words(1234.4, 2000), "1234 N");
  EXPECT_EQ(force_in_words(0.0042, 0.01), "4.2 mN");
  EXPECT_EQ(force_in_words(25000, 30000), "25 kN");
}

TEST(ForceInWords, SaysRoundingAsZero) {
  EXPECT_EQ(force_in_words(3e-8, 10), "0 N");
  EXPECT_EQ(force_in_words(0, 0), "0 \u00b5N");
}

}  // namespace
}  // namespace grasp::picture
