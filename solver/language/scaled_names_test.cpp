// Terms read in one go, and those that must not be.
#include "solver/language/scaled_names.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "solver/language/test_read_text.h"

namespace sdpsol {
namespace {

std::vector<AffineTerm> terms_of(const std::string& sum) {
  const ReadText read = read_text("variable x, y; variable M(2,2); c = 3; E = " + sum + "; E > 0;");
  EXPECT_TRUE(read.model) << read.report;
  if (!read.model) return {};
  return written_out(read.model->conditions.at(0).difference, read.model->forms).terms;
}

TEST(ScaledNames, MeanWhatTheyMeanWithBlanks) {
  const std::vector<std::pair<std::string, std::string>> sums = {
      {"1+2*x", "1 + 2 * x"},
      {"x+-2.5e-3*y", "x + -2.5e-3 * y"},
      {"x-+--2*y+3*c", "x - + - - 2 * y + 3 * c"},
      {"x-0*y", "x - 0 * y"},
      {"x-2*y*3", "x - 2 * y * 3"},
      {"x+2*y/4-1*x", "x + 2 * y / 4 - 1 * x"},
      {"x+2*y'", "x + 2 * y '"},
      {"x+2*M(1,2)-4*y", "x + 2 * M ( 1 , 2 ) - 4 * y"},
      {"x+2*sum(M)+1*y", "x + 2 * sum ( M ) + 1 * y"},
      {"[1+2*x,-3*y;4-1*y,5]*ones(2,1)", "[1 + 2 * x , -3 * y ; 4 - 1 * y , 5] * ones(2,1)"},
      {"sum(M+2*M-[1*x,0;0,1*y])", "sum(M + 2 * M - [1 * x , 0 ; 0 , 1 * y])"}};
  for (const auto& [dense, spaced] : sums) EXPECT_EQ(terms_of(dense), terms_of(spaced)) << dense;
}

TEST(ScaledNames, LeaveErrorsToTheGrammar) {
  EXPECT_EQ(read_text("variable x;\nx+2*x-3*q > 0;\n").report,
            "t.def:2:9: error: 'q' is not defined\n    2 | x+2*x-3*q > 0;\n      |         ^\n");
  EXPECT_EQ(read_text("variable x;\nx+1e999*x > 0;\n").report,
            "t.def:2:3: error: '1e999' is too large for a number, the largest is about 1.8e308\n   "
            " 2 | x+1e999*x > 0;\n      |  "
            " ^~~~~\n");
  EXPECT_EQ(
      read_text("variable x, M(2,2);\nx+2*x+3*M > 0;\n").report,
      "t.def:2:6: error: '+' needs equal shapes: left is 1x1, right is 2x2; only the number 0 "
      "stretches to any shape\n    2 | x+2*x+3*M > 0;\n      | ~~~~~^~~~\n");
}

}  // namespace
}  // namespace sdpsol
