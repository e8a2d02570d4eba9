#include "solver/language/arithmetic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "solver/language/language_error.h"
#include "tests/support/message_of.h"

namespace sdpsol {
namespace {

using Terms = std::vector<AffineTerm>;

AffineMatrix number(double value) {
  return constant(value);
}
AffineMatrix unknown(std::int32_t index) {
  return {1, 1, {{0, 0, index, 1, 1}}};
}

AffineMatrix dense(std::int32_t rows, std::int32_t columns, const std::vector<double>& values) {
  AffineMatrix matrix{rows, columns, {}};
  for (std::int32_t i = 0; i < rows * columns; ++i) {
    const double value = values[static_cast<std::size_t>(i)];
    if (value != 0) {
      matrix.terms.push_back({i / columns, i % columns, kConstant, value, std::abs(value)});
    }
  }
  return matrix;
}

AffineMatrix collected(AffineMatrix matrix) {
  collect_terms(matrix);
  return matrix;
}

template <typename Action>
std::string error_of(const Action& action) {
  return test_support::message_of<LanguageError>(action);
}

TEST(Add, AddsValuesAndMagnitudes) {
  const AffineMatrix sum = collected(subtract(number(5), number(3), {}));
  EXPECT_EQ(sum.terms, (Terms{{0, 0, kConstant, 2, 8}}));
  const AffineMatrix gone = collected(subtract(unknown(0), unknown(0), {}));
  EXPECT_EQ(gone.terms, (Terms{{0, 0, 0, 0, 2}}));
}

TEST(Add, StretchesOnlyTheNumberZero) {
  const AffineMatrix matrix = dense(2, 2, {1, 2, 3, 4});
  EXPECT_EQ(add(matrix, number(0), {}).terms, matrix.terms);
  EXPECT_EQ(add(number(0), matrix, {}).rows, 2);
  EXPECT_EQ(subtract(number(0), unknown(3), {}).terms, (Terms{{0, 0, 3, -1, 1}}));
  EXPECT_EQ(error_of([&] { add(matrix, number(1), {}); }),
            "'+' needs equal shapes: left is 2x2, right is 1x1; only the number 0 stretches to any "
            "shape");
  EXPECT_EQ(error_of([&] {
              subtract(dense(1, 2, {1, 1}), matrix, {});
            }),
            "'-' needs equal shapes: left is 1x2, right is 2x2");
}

TEST(Add, StretchesACancelledConstantWithItsMagnitude) {
  const AffineMatrix cancelled = subtract(number(1), number(1), {});
  const AffineMatrix sum = collected(add(dense(1, 2, {1, 0}), cancelled, {}));
  EXPECT_EQ(sum.terms, (Terms{{0, 0, kConstant, 1, 3}, {0, 1, kConstant, 0, 2}}));
}

TEST(Multiply, ScalesByANumberFromEitherSide) {
  AffineMatrix three = add(number(1), number(2), {});
  EXPECT_EQ(multiply(three, unknown(4), {}).terms, (Terms{{0, 0, 4, 3, 3}}));
  EXPECT_EQ(multiply(unknown(4), three, {}).terms, (Terms{{0, 0, 4, 3, 3}}));
  const AffineMatrix minus_half = subtract(number(1.5), number(2), {});
  EXPECT_EQ(multiply(minus_half, unknown(4), {}).terms, (Terms{{0, 0, 4, -0.5, 3.5}}));
}

TEST(Multiply, LeavesNothingOfALiteralZero) {
  EXPECT_TRUE(multiply(number(0), unknown(0), {}).terms.empty());
  EXPECT_TRUE(multiply(dense(2, 2, {1, 2, 3, 4}), number(0), {}).terms.empty());
  EXPECT_TRUE(multiply(unknown(0), dense(2, 2, {0, 0, 0, 0}), {}).terms.empty());
}

TEST(Multiply, KeepsAFactorThatCancelledInSight) {
  const AffineMatrix cancelled = subtract(number(1), number(1), {});
  EXPECT_EQ(multiply(cancelled, unknown(0), {}).terms, (Terms{{0, 0, 0, 0, 2}}));
}

TEST(Multiply, SpreadsAScalarWithUnknownsOverAMatrix) {
  const AffineMatrix scalar = add(number(2), unknown(1), {});
  const AffineMatrix product = collected(multiply(scalar, dense(2, 2, {1, 0, 0, -3}), {}));
  EXPECT_EQ(product.rows, 2);
  EXPECT_EQ(
      product.terms,
      (Terms{
          {0, 0, kConstant, 2, 2}, {0, 0, 1, 1, 1}, {1, 1, kConstant, -6, 6}, {1, 1, 1, -3, 3}}));
}

TEST(Multiply, MultipliesMatricesWithUnknownsInOneOfThem) {
  const AffineMatrix a = dense(2, 2, {1, 2, 3, 4});
  const AffineMatrix column{2, 1, {{0, 0, 0, 1, 1}, {1, 0, 1, 1, 1}}};
  const AffineMatrix product = multiply(a, column, {});
  EXPECT_EQ(product.rows, 2);
  EXPECT_EQ(product.columns, 1);
  EXPECT_EQ(product.terms,
            (Terms{{0, 0, 0, 1, 1}, {0, 0, 1, 2, 2}, {1, 0, 0, 3, 3}, {1, 0, 1, 4, 4}}));
  const AffineMatrix square = multiply(transpose(column), transpose(a), {});
  EXPECT_EQ(square.terms,
            (Terms{{0, 0, 0, 1, 1}, {0, 0, 1, 2, 2}, {0, 1, 0, 3, 3}, {0, 1, 1, 4, 4}}));
}

TEST(Multiply, RejectsUnfitShapesAndTwoFactorsWithUnknowns) {
  EXPECT_EQ(error_of([] {
              multiply(dense(1, 2, {1, 1}), dense(1, 2, {1, 1}), {});
            }),
            "'*' needs as many columns on the left as rows on the right: left is 1x2, right is "
            "1x2");
  try {
    multiply(unknown(2), unknown(5), {});
    FAIL();
  } catch (const LanguageError& error) {
    EXPECT_STREQ(error.what(), "variables in both factors: a product may hold them in one only");
    EXPECT_EQ(error.unknowns, (std::vector<std::int32_t>{2, 5}));
  }
}

TEST(Multiply, ReportsOverflowAndDropsUnderflow) {
  EXPECT_EQ(error_of([] { multiply(number(1e200), multiply(number(1e200), unknown(0), {}), {}); }),
            "a coefficient becomes too large for a number");
  const AffineMatrix large = multiply(number(1e200), unknown(0), {});
  const AffineMatrix matrix = dense(2, 2, {1e200, 0, 0, 1});
  EXPECT_EQ(error_of([&] { multiply(large, matrix, {}); }),
            "a coefficient becomes too large for a number");
  EXPECT_EQ(error_of([&] { multiply(matrix, matrix, {}); }),
            "a coefficient becomes too large for a number");
  EXPECT_TRUE(multiply(number(1e-200), number(1e-200), {}).terms.empty());
}

TEST(Divide, DividesByAConstantScalarOnly) {
  EXPECT_EQ(divide(unknown(0), number(-4), {}).terms, (Terms{{0, 0, 0, -0.25, 0.25}}));
  EXPECT_EQ(error_of([] { divide(unknown(0), number(0), {}); }), "division by 0");
  EXPECT_EQ(error_of([] { divide(number(0), number(0), {}); }), "division by 0");
  EXPECT_EQ(error_of([] { divide(number(1), subtract(number(1), number(1), {}), {}); }),
            "division by 0");
  EXPECT_EQ(error_of([] { divide(number(1), unknown(0), {}); }),
            "a divisor must not hold variables");
  EXPECT_EQ(error_of([] {
              divide(number(1), dense(2, 1, {1, 2}), {});
            }),
            "a divisor must be a scalar, this one is 2x1");
}

TEST(Divide, PassesOnTheUncertaintyOfTheDivisor) {
  const AffineMatrix one = subtract(number(3), number(2), {});  // 1, added up from 5
  EXPECT_EQ(divide(number(8), one, {}).terms, (Terms{{0, 0, kConstant, 8, 40}}));
}

TEST(Transpose, SwapsRowsAndColumns) {
  const AffineMatrix matrix = transpose(dense(1, 2, {5, 6}));
  EXPECT_EQ(matrix.rows, 2);
  EXPECT_EQ(matrix.terms, (Terms{{0, 0, kConstant, 5, 5}, {1, 0, kConstant, 6, 6}}));
}

TEST(Settle, ReportsSumsThatOverflow) {
  AffineMatrix sum = add(number(1e308), number(1e308), {});
  EXPECT_EQ(error_of([&] { settle(sum, {}); }), "a coefficient becomes too large for a number");
}

}  // namespace
}  // namespace sdpsol
