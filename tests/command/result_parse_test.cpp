// Result files as the unit's parser reads them: every name and every value, bit
// by bit, and no word of the heading taken for a marker.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

#include "solver/command/result_text.h"
#include "solver/command/test_report.h"
#include "unit/sdpsol_wrapper.h"

namespace sdpsol {
namespace {

sdpsol_wrapper::result parsed(const std::string& text) {
  sdpsol_wrapper driver("sdpsol", "in", "out");
  driver.resultText = text;
  EXPECT_EQ(driver.parseResult(), 0);
  EXPECT_EQ(driver.lastResult.valueCount,
            static_cast<int>(driver.lastResult.variableValues.size()));
  return driver.lastResult;
}

void expect_same_bits(const std::vector<double>& actual, const std::vector<double>& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(actual[i]), std::bit_cast<std::uint64_t>(expected[i]))
        << "value " << i << ": " << actual[i] << " instead of " << expected[i];
  }
}

/// The heading may hold none of the words that the parser goes by.
void expect_clean_heading(const std::string& text, bool feasible) {
  const std::size_t end = text.find("*** Objective value");
  ASSERT_NE(end, std::string::npos);
  const std::string heading = text.substr(0, end);
  EXPECT_EQ(text.find("*** Objective value", end + 1), std::string::npos);
  for (const char* word : {"Variable", "***", "NO OBJECTIVE."}) {
    EXPECT_EQ(heading.find(word), std::string::npos) << word;
  }
  const bool says_no = text.find("INFEASIBLE") != std::string::npos ||
                       text.find("FEASIBILITY CANNOT BE DETERMINED") != std::string::npos;
  EXPECT_EQ(says_no, !feasible);
}

TEST(ParsedResult, OfEveryShape) {
  const Model model = model_of_all_shapes();
  const std::string text = result_text(feasible_report(model, point_of_all_shapes()));
  expect_clean_heading(text, true);
  const auto result = parsed(text);
  EXPECT_TRUE(result.feasible);
  EXPECT_EQ(result.objectiveValue, 0);
  EXPECT_EQ(result.variableNames,
            std::vector<std::string>({"z",   "G_0", "G_1", "G_2", "G_3", "G_4", "G_5",
                                      "S_0", "S_1", "S_2", "S_3", "S_4", "S_5", "S_6",
                                      "S_7", "S_8", "D_0", "D_1", "D_2", "D_3", "one"}));
  expect_same_bits(result.variableValues,
                   {-0.1, 1,  2.5, -3e-10, 1e300, 5e-324, 1.0 / 3, 11, 21,   31,       21,
                    22,   32, 31,  32,     33.25, 0,      0,       0,  1e22, 0.1 + 0.2});
}

TEST(ParsedResult, OfObjectives) {
  Model model;
  model.variables = {test_variable(model, "x")};
  model.objective.emplace();
  Report report = feasible_report(model, {1});
  for (const double value : {3.43119587, -1e-300, 1e22, 0.1 + 0.2, -15000.0}) {
    for (const bool maximize : {true, false}) {
      model.objective->maximize = maximize;
      report.outcome.objective = value;
      const std::string text = result_text(report);
      expect_clean_heading(text, true);
      const auto result = parsed(text);
      EXPECT_EQ(result.objectiveValue, maximize ? value : -value);
      EXPECT_EQ(result.variableNames, std::vector<std::string>({"x"}));
      EXPECT_EQ(result.variableValues, std::vector<double>({1}));
    }
  }
}

TEST(ParsedResult, WithEverythingThatAHeadingCanHold) {
  Model model;
  model.variables = {test_variable(model, "x", 2, 2, Variable::Shape::kDiagonal)};
  model.objective.emplace();
  Report report = feasible_report(model, {1, 2});
  report.outcome.objective = 5;
  report.gap = INFINITY;
  report.warnings = {"the objective is limited only by BIGM",
                     "the objective may be better than reported, see its bound"};
  const std::string text = result_text(report);
  expect_clean_heading(text, true);
  const auto result = parsed(text);
  EXPECT_TRUE(result.feasible);
  EXPECT_EQ(result.objectiveValue, 5);
  expect_same_bits(result.variableValues, {1, 0, 0, 2});
}

TEST(ParsedResult, OfTheOtherVerdictsHoldsNothing) {
  Model model;
  model.variables = {test_variable(model, "x")};
  model.objective.emplace();
  for (const Verdict verdict : {Verdict::kInfeasible, Verdict::kUndetermined}) {
    Report report;
    report.model = &model;
    report.outcome.verdict = verdict;
    report.outcome.reason = "the reason";
    report.outcome.point = {1};
    const std::string text = result_text(report);
    expect_clean_heading(text, false);
    const auto result = parsed(text);
    EXPECT_FALSE(result.feasible);
    EXPECT_EQ(result.objectiveValue, 0);
    EXPECT_EQ(result.valueCount, 0);
  }
}

TEST(ParsedResult, WithoutVariables) {
  const Model model;
  const auto result = parsed(result_text(feasible_report(model, {})));
  EXPECT_TRUE(result.feasible);
  EXPECT_EQ(result.valueCount, 0);
}

TEST(ParsedResult, OfRandomVariablesInRandomOrder) {
  std::mt19937_64 random(11);
  auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 300; ++round) {
    Model model;
    std::vector<std::string> names;
    std::vector<double> values;
    std::vector<double> point;
    const int count = 1 + below(6);
    for (int v = 0; v < count; ++v) {
      const std::string name(1 + static_cast<std::size_t>(below(3)), static_cast<char>('a' + v));
      const int rows = 1 + below(4);
      const int columns = 1 + below(4);
      model.variables.push_back(test_variable(model, name, rows, columns));
      for (int k = 0; k < rows * columns; ++k) {
        auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) value = below(1000);
        point.push_back(value);
        values.push_back(value);
        names.push_back(rows * columns == 1 ? name : name + "_" + std::to_string(k));
      }
    }
    const auto result = parsed(result_text(feasible_report(model, point)));
    EXPECT_EQ(result.variableNames, names);
    expect_same_bits(result.variableValues, values);
  }
}

}  // namespace
}  // namespace sdpsol
