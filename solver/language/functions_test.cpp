#include "solver/language/functions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "solver/language/test_read_text.h"

namespace sdpsol {
namespace {

// What an expression over x (unknown 0), X (2x2, unknowns 1 to 4) and v (3x1,
// unknowns 5 to 7) is, entry by entry: as the left side of an equation with 0.
AffineMatrix value_of(const std::string& expression) {
  const ReadText read = read_text("variable x, X(2,2), v(3,1); " + expression + " == 0;");
  EXPECT_EQ(read.report, "");
  return read.model ? read.model->conditions.at(0).difference : AffineMatrix{};
}

using Terms = std::vector<AffineTerm>;

void expect_value(const std::string& expression, std::int32_t rows, std::int32_t columns,
                  const Terms& terms) {
  const AffineMatrix value = value_of(expression);
  EXPECT_EQ(value.rows, rows) << expression;
  EXPECT_EQ(value.columns, columns) << expression;
  EXPECT_EQ(value.terms, terms) << expression;
}

constexpr std::int32_t kOne = kConstant;

TEST(Functions, ZerosOnesAndEye) {
  expect_value("zeros(2,3)", 2, 3, {});
  expect_value("zeros(2)", 2, 2, {});
  expect_value("ones(1,2)", 1, 2, {{0, 0, kOne, 1, 1}, {0, 1, kOne, 1, 1}});
  expect_value("ones(1)", 1, 1, {{0, 0, kOne, 1, 1}});
  expect_value("eye(2)", 2, 2, {{0, 0, kOne, 1, 1}, {1, 1, kOne, 1, 1}});
  expect_value("zeros(1 + 1, 6/2)", 2, 3, {});
}

TEST(Functions, DiagMakesADiagonalMatrixOfAVector) {
  expect_value("diag(v)", 3, 3, {{0, 0, 5, 1, 1}, {1, 1, 6, 1, 1}, {2, 2, 7, 1, 1}});
  expect_value("diag([2, x])", 2, 2, {{0, 0, kOne, 2, 2}, {1, 1, 0, 1, 1}});
  expect_value("diag(x)", 1, 1, {{0, 0, 0, 1, 1}});
}

TEST(Functions, DiagTakesTheDiagonalOfAMatrix) {
  expect_value("diag(X)", 2, 1, {{0, 0, 1, 1, 1}, {1, 0, 4, 1, 1}});
}

TEST(Functions, TraceAndSum) {
  expect_value("trace(X)", 1, 1, {{0, 0, 1, 1, 1}, {0, 0, 4, 1, 1}});
  expect_value("sum(X)", 1, 1,
               {{0, 0, 1, 1, 1}, {0, 0, 2, 1, 1}, {0, 0, 3, 1, 1}, {0, 0, 4, 1, 1}});
  expect_value("trace(5)", 1, 1, {{0, 0, kOne, 5, 5}});
}

TEST(Functions, ElementsCountFromOne) {
  expect_value("X(2,1)", 1, 1, {{0, 0, 3, 1, 1}});
  expect_value("v(3,1)*2", 1, 1, {{0, 0, 7, 2, 2}});
  expect_value("x(1,1)", 1, 1, {{0, 0, 0, 1, 1}});
}

}  // namespace
}  // namespace sdpsol
