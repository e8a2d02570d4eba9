// Rules of the language that are about more than one statement. What single
// statements mean, and every message, is held by the files of tests/definitions.
#include "solver/language/reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "solver/language/test_read_text.h"

namespace sdpsol {
namespace {

std::size_t error_count(const std::string& report) {
  std::size_t count = 0;
  for (std::size_t at = report.find(": error: "); at != std::string::npos;
       at = report.find(": error: ", at + 1)) {
    ++count;
  }
  return count;
}

TEST(ReadDefinition, GivesTheDefaultsOfTheParameters) {
  const ReadText read = read_text("variable x; x > 0;");
  ASSERT_TRUE(read.model);
  EXPECT_EQ(read.model->parameters, Parameters{});
  EXPECT_EQ(read.model->parameters.max_iterations, 100);
  EXPECT_EQ(read.model->parameters.absolute_tolerance, 4.4e-06);
  EXPECT_FALSE(read.model->objective);
}

TEST(ReadDefinition, NumbersUnknownsInTheOrderOfDeclaration) {
  const ReadText read =
      read_text("variable a, S(3,3) symmetric; variable D(2,2) diagonal, R(2,3); a > 0;");
  ASSERT_TRUE(read.model);
  const auto& variables = read.model->variables;
  ASSERT_EQ(variables.size(), 4U);
  EXPECT_EQ(variables[1].first_unknown, 1);
  EXPECT_EQ(variables[1].shape, Variable::Shape::kSymmetric);
  EXPECT_EQ(variables[2].first_unknown, 7);
  EXPECT_EQ(variables[2].shape, Variable::Shape::kDiagonal);
  EXPECT_EQ(variables[3].first_unknown, 9);
  EXPECT_EQ(variables[3].columns, 3);
  EXPECT_EQ(read.model->unknown_count, 15);
}

TEST(ReadDefinition, NumbersEntriesAsTheModelSays) {
  // Entries row after row; a symmetric variable's lower triangle row after row.
  const auto unknowns = [](const std::string& shape) {
    const ReadText read = read_text("variable X" + shape + "; X == 0;");
    std::vector<std::int32_t> numbers;
    if (!read.model) return numbers;
    for (const AffineTerm& term : read.model->conditions.at(0).difference.terms) {
      numbers.push_back(term.unknown);
    }
    return numbers;
  };
  using Numbers = std::vector<std::int32_t>;
  EXPECT_EQ(unknowns("(2,3)"), (Numbers{0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(unknowns("(3,3) symmetric"), (Numbers{0, 1, 3, 1, 2, 4, 3, 4, 5}));
  EXPECT_EQ(unknowns("(3,3) diagonal"), (Numbers{0, 1, 2}));
}

TEST(ReadDefinition, TakesASymmetricScalarForAScalar) {
  const ReadText read = read_text("variable x symmetric; variable x(1,1); x > 0;");
  ASSERT_TRUE(read.model);
  EXPECT_EQ(read.model->variables.size(), 1U);
  EXPECT_EQ(read.model->variables[0].shape, Variable::Shape::kGeneral);
}

TEST(ReadDefinition, KeepsTheObjectivesNameForLaterUse) {
  const ReadText read = read_text("variable x; minimize f = 2*x + 1; f > 0;");
  ASSERT_TRUE(read.model);
  ASSERT_TRUE(read.model->objective);
  EXPECT_FALSE(read.model->objective->maximize);
  EXPECT_EQ(read.model->objective->name, "f");
  EXPECT_EQ(read.model->conditions.at(0).difference.terms, read.model->objective->value.terms);
}

TEST(ReadDefinition, DoesNotLookBackAtAReassignedName) {
  const ReadText read = read_text("variable x; a = x; b = a; a = 5; b > 0; a > 0;");
  ASSERT_TRUE(read.model);
  EXPECT_EQ(read.model->conditions.at(0).difference.terms.at(0).unknown, 0);
  EXPECT_EQ(read.model->conditions.at(1).difference.terms.at(0).unknown, kConstant);
}

TEST(ReadDefinition, StopsAfterTwentyErrors) {
  std::string text;
  for (int i = 0; i < 30; ++i) text += "1 > ;\n";
  const ReadText read = read_text(text);
  EXPECT_FALSE(read.model);
  EXPECT_EQ(error_count(read.report), Diagnostics::kMaxErrors);
  EXPECT_TRUE(read.report.ends_with("t.def: note: stopped after 20 errors\n")) << read.report;
}

TEST(ReadDefinition, ReportsOnceWhatFollowsFromOneError) {
  const ReadText read = read_text("a = 1/0; b = a + 1; c = [a, b]; c > 0; a > b; d = e;");
  EXPECT_EQ(error_count(read.report), 2U) << read.report;
}

TEST(ReadDefinition, ForgetsAFailureWhenTheNameIsAssignedAgain) {
  const ReadText read = read_text("a = 1/0; a = 2; b = a*c;");
  EXPECT_EQ(error_count(read.report), 2U) << read.report;
  EXPECT_NE(read.report.find("'c' is not defined"), std::string::npos);
}

TEST(ReadDefinition, LimitsNestingAndNotTheLengthOfARowOfSigns) {
  const std::string deep(199, '(');
  const std::string closed(199, ')');
  EXPECT_TRUE(read_text(deep + "1" + closed + " > 0;").model);
  const ReadText too_deep = read_text(std::string(300'000, '[') + "1;");
  EXPECT_FALSE(too_deep.model);
  EXPECT_NE(too_deep.report.find("t.def:1:201: error: more than 200 brackets inside each other\n"),
            std::string::npos)
      << too_deep.report;
  EXPECT_TRUE(read_text(std::string(300'000, '-') + "1 > 0;").model);
  EXPECT_TRUE(read_text("1" + std::string(300'000, '\'') + " > 0;").model);
  EXPECT_NE(read_text("variable x; 1" + std::string(300'000, '\'') + " + [x,x] > 0;")
                .report.find("'+' needs equal shapes"),
            std::string::npos);
}

TEST(ReadDefinition, LimitsTheSizeOfValues) {
  const auto first_error = [](const std::string& text) {
    const std::string report = read_text(text).report;
    return report.substr(0, report.find('\n'));
  };
  EXPECT_EQ(first_error("A = zeros(10000); A = [A, 1];"),
            "t.def:1:27: error: this block has 1 row, the blocks to its left have 10000");
  EXPECT_EQ(first_error("A = zeros(10000); A = [A, zeros(10000,1)];"),
            "t.def:1:27: error: with this block the matrix has more than 10000 rows or columns");
  EXPECT_EQ(first_error("A = zeros(10000); A = [A; zeros(1,10000)];"),
            "t.def:1:27: error: with this block the matrix has more than 10000 rows or columns");
  EXPECT_EQ(
      first_error("A = ones(1000); B = [A,A,A;A,A,A;A,A,A]; C = [B;B];"),
      "t.def:1:49: error: this value would take 18000000 terms; at most 10000000 are allowed");
  EXPECT_EQ(first_error("A = ones(1000)*ones(1000);"),
            "t.def:1:15: error: this product takes 1000000000 multiplications; at most 200000000 "
            "are allowed");
  EXPECT_EQ(first_error("A = ones(1000); B = [A,A,A;A,A,A;A,A,A]; C = B; D = C;"),
            "t.def:1:49: error: all values and conditions together take more than 25000000 terms");
}

TEST(ReadDefinition, SurvivesDoublingSums) {
  std::string text = "variable x; y = x;";
  for (int i = 0; i < 200; ++i) text += "y = y + y;";
  const ReadText read = read_text(text + "y > 0;");
  ASSERT_TRUE(read.model);
  EXPECT_EQ(read.model->conditions.at(0).difference.terms.at(0).value, std::ldexp(1.0, 200));
}

TEST(ReadDefinition, ShowsAWindowOfAnEndlessLine) {
  std::string text = "variable x; y = 1";
  for (int i = 0; i < 200'000; ++i) text += " + x";
  const ReadText read = read_text(text + " + q;" + text);
  EXPECT_FALSE(read.model);
  EXPECT_LT(read.report.size(), 2000U);
}

TEST(ReadDefinition, TellsRubbishFromAText) {
  std::string rubbish = "variable x;\n";
  for (int i = 1; i < 256; ++i) rubbish += static_cast<char>(i);
  EXPECT_FALSE(read_text(rubbish).model);
  const std::string report = read_text(rubbish + '\0').report;
  EXPECT_EQ(report.substr(0, report.find('\n')),
            "t.def:3:246: error: this is not a text: it holds a byte 0");
}

TEST(ReadDefinition, AddsToTheDiagnosticsOfItsCaller) {
  const Source source("t.def", "variable x; x > 0;");
  Diagnostics diagnostics;
  diagnostics.add({Diagnostic::Severity::kError, {0, 1}, "of another text", {}, {}});
  EXPECT_TRUE(read_definition(source, diagnostics));
}

}  // namespace
}  // namespace sdpsol
