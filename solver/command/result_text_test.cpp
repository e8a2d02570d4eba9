// Whole result files, spelled out. That other programs read them as they are
// meant: tests/command/result_parse_test.cpp.
#include "solver/command/result_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "solver/command/test_report.h"
#include "solver/command/words.h"

namespace sdpsol {
namespace {

Model model_of_scalars() {
  Model model;
  model.variables = {test_variable(model, "x"), test_variable(model, "z10")};
  model.conditions.resize(1);
  return model;
}

TEST(ResultText, WithAnObjective) {
  Model model = model_of_scalars();
  model.objective.emplace();
  Report report = feasible_report(model, {1, 2.25});
  report.outcome.objective = 3.43119587;
  report.gap = 0.000012344;
  EXPECT_EQ(result_text(report),
            "sdpsol 0.1.0\n"
            "2 unknowns, 1 condition: 2 rows, 1 matrix block up to 12 x 12\n"
            "FEASIBLE\n"
            "tightest conditions at the point that proves it:\n"
            "  line 4: margin 0.125, 0.0123 of its terms\n"
            "  line 12: margin 1.23e+03, 1 of its terms\n"
            "objective within 1.23e-05 of its proven bound\n"
            "engine csdp, 7 iterations\n"
            "\n"
            "*** Objective value\n"
            "objective = 3.43119587\n"
            "\n"
            "*** Variables\n"
            "x = 1\n"
            "\n"
            "z10 = 2.25\n"
            "\n");
}

TEST(ResultText, WithTheTightestOfManyConditionsAndWithEqualities) {
  const Model model = model_of_scalars();
  Report report = feasible_report(model, {1, 2});
  report.margins.clear();
  for (std::uint32_t line = 1; line <= 9; ++line) {
    report.margins.push_back(
        {.condition = line, .line = line, .smallest_eigenvalue = 1, .room = 1});
  }
  report.residuals = {{.condition = 10, .largest = 1.25e-13, .distance = 2e-12},
                      {.condition = 11, .largest = 0, .distance = 3e-12}};
  EXPECT_EQ(result_text(report),
            "sdpsol 0.1.0\n"
            "2 unknowns, 1 condition: 2 rows, 1 matrix block up to 12 x 12\n"
            "FEASIBLE\n"
            "tightest conditions at the point that proves it:\n"
            "  line 1: margin 1, 1 of its terms\n"
            "  line 2: margin 1, 1 of its terms\n"
            "  line 3: margin 1, 1 of its terms\n"
            "  line 4: margin 1, 1 of its terms\n"
            "  line 5: margin 1, 1 of its terms\n"
            "equalities hold within 1.25e-13, and exactly no further away than 3e-12\n"
            "engine csdp, 7 iterations\n"
            "\n"
            "*** Objective value\n"
            "NO OBJECTIVE.\n"
            "\n"
            "*** Variables\n"
            "x = 1\n"
            "\n"
            "z10 = 2\n"
            "\n");
  report.margins.clear();
  report.residuals = {{}};
  const std::string text = result_text(report);
  EXPECT_NE(text.find("FEASIBLE\nequalities hold within 0\nengine"), std::string::npos) << text;
}

TEST(ResultText, WithAMinimisedObjectiveWarningsAndNoBound) {
  Model model = model_of_scalars();
  model.objective.emplace().maximize = false;
  Report report = feasible_report(model, {-15000, 0});
  report.outcome.objective = 15000;
  report.outcome.iterations = 1;
  report.gap = std::numeric_limits<double>::infinity();
  report.margins.resize(1);
  report.warnings = {"the objective is limited only by BIGM", "second"};
  EXPECT_EQ(result_text(report),
            "sdpsol 0.1.0\n"
            "2 unknowns, 1 condition: 2 rows, 1 matrix block up to 12 x 12\n"
            "FEASIBLE\n"
            "tightest conditions at the point that proves it:\n"
            "  line 4: margin 0.125, 0.0123 of its terms\n"
            "no bound of the objective is proven\n"
            "engine csdp, 1 iteration\n"
            "warning: the objective is limited only by BIGM\n"
            "warning: second\n"
            "\n"
            "*** Objective value\n"
            "objective = -15000\n"
            "\n"
            "*** Variables\n"
            "x = -15000\n"
            "\n"
            "z10 = 0\n"
            "\n");
}

TEST(ResultText, SaysForWhichPointsABoundHolds) {
  Model model = model_of_scalars();
  model.objective.emplace();
  model.boxed = false;
  Report report = feasible_report(model, {1, 2});
  report.outcome.objective = 3;
  report.outcome.bound = 3.5;
  report.outcome.bound_reach = 1234.5;
  report.gap = 0.5;
  const std::string text = result_text(report);
  EXPECT_NE(
      text.find("\nobjective within 0.5 of its proven bound, which holds for |v| <= 1.23e+03\n"),
      std::string::npos)
      << text;
}

TEST(ResultText, OfEveryShape) {
  const Model model = model_of_all_shapes();
  const Report report = feasible_report(model, point_of_all_shapes());
  EXPECT_EQ(result_text(report),
            "sdpsol 0.1.0\n"
            "16 unknowns, 3 conditions: 2 rows, 1 matrix block up to 12 x 12\n"
            "FEASIBLE\n"
            "tightest conditions at the point that proves it:\n"
            "  line 4: margin 0.125, 0.0123 of its terms\n"
            "  line 12: margin 1.23e+03, 1 of its terms\n"
            "engine csdp, 7 iterations\n"
            "\n"
            "*** Objective value\n"
            "NO OBJECTIVE.\n"
            "\n"
            "*** Variables\n"
            "z = -0.1\n"
            "\n"
            "G =\n"
            "[\n"
            "  1,\n"
            "  2.5,\n"
            "  -3e-10,\n"
            "  1e+300,\n"
            "  5e-324,\n"
            "  0.3333333333333333,\n"
            "]\n"
            "\n"
            "S =\n"
            "[\n"
            "  11,\n"
            "  21,\n"
            "  31,\n"
            "  21,\n"
            "  22,\n"
            "  32,\n"
            "  31,\n"
            "  32,\n"
            "  33.25,\n"
            "]\n"
            "\n"
            "D =\n"
            "[\n"
            "  0,\n"
            "  0,\n"
            "  0,\n"
            "  1e+22,\n"
            "]\n"
            "\n"
            "one = 0.30000000000000004\n"
            "\n");
}

TEST(ResultText, WithoutVariables) {
  Model model;
  model.conditions.resize(1);
  Report report;
  report.model = &model;
  report.outcome.verdict = Verdict::kFeasible;
  report.rows = 1;
  EXPECT_EQ(result_text(report),
            "sdpsol 0.1.0\n"
            "0 unknowns, 1 condition: 1 row, 0 matrix blocks\n"
            "FEASIBLE\n"
            "\n"
            "*** Objective value\n"
            "NO OBJECTIVE.\n"
            "\n"
            "*** Variables\n"
            "\n");
}

TEST(ResultText, OfAContradiction) {
  Model model = model_of_scalars();
  model.objective.emplace();
  Report report;
  report.model = &model;
  report.outcome.engine = "csdp";
  report.rows = 1;
  report.matrices = 2;
  report.largest_matrix = 3;
  report.outcome.verdict = Verdict::kInfeasible;
  report.outcome.reason = "the conditions contradict each other";
  report.outcome.iterations = 12;
  report.reason_lines = {1, 2, 3, 5, 8, 13, 21, 34, 55};
  EXPECT_EQ(result_text(report),
            "sdpsol 0.1.0\n"
            "2 unknowns, 1 condition: 1 row, 2 matrix blocks up to 3 x 3\n"
            "INFEASIBLE\n"
            "the conditions contradict each other, lines 1, 2, 3, 5, 8, 13, 21, 34, ...\n"
            "engine csdp, 12 iterations\n"
            "\n"
            "*** Objective value\n"
            "NO OBJECTIVE.\n"
            "\n"
            "*** Variables\n"
            "\n");
}

TEST(ResultText, OfWhatCannotBeDetermined) {
  Model model = model_of_scalars();
  Report report;
  report.model = &model;
  report.outcome.engine = "csdp";
  report.rows = 2;
  report.outcome.reason = "decided by coefficients at noise level";
  report.outcome.point = {1, 2};
  report.outcome.iterations = 100;
  report.reason_lines = {7};
  EXPECT_EQ(result_text(report),
            "sdpsol 0.1.0\n"
            "2 unknowns, 1 condition: 2 rows, 0 matrix blocks\n"
            "FEASIBILITY CANNOT BE DETERMINED\n"
            "decided by coefficients at noise level, line 7\n"
            "engine csdp, 100 iterations\n"
            "\n"
            "*** Objective value\n"
            "NO OBJECTIVE.\n"
            "\n"
            "*** Variables\n"
            "\n");
}

TEST(ShortestText, IsShort) {
  EXPECT_EQ(shortest(0.0), "0");
  EXPECT_EQ(shortest(-0.0), "0");
  EXPECT_EQ(shortest(0.1), "0.1");
  EXPECT_EQ(shortest(-15000), "-15000");
  EXPECT_EQ(shortest(1e23), "1e+23");
  EXPECT_EQ(shortest(123456789.0), "123456789");
  EXPECT_EQ(shortest(1.7976931348623157e308), "1.7976931348623157e+308");
}

TEST(ShortestText, ReadsBackAsTheSameBits) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 100'000; ++i) {
    const std::uint64_t bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    const std::string text = shortest(value);
    ASSERT_EQ(std::strtod(text.c_str(), nullptr), value) << text;
  }
}

}  // namespace
}  // namespace sdpsol
