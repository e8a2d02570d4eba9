// The result as JSON, read back. That it keeps to its schema, for real runs:
// tests/command/json_schema_test.py.
#include "solver/command/json_report.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "solver/language/reader.h"
#include "solver/problem/structure.h"

namespace sdpsol {
namespace {

using Json = nlohmann::json;

/// A definition with an outcome of our own choice.
class Solved {
 public:
  explicit Solved(std::string text, std::string name = "t.def")
      : source_(std::move(name), std::move(text)) {
    Diagnostics diagnostics;
    model_ = read_definition(source_, diagnostics).value();
    outcome.engine = "csdp";
    problem_ = build_problem(model_);
  }

  Outcome outcome;
  Times times;

  std::string text() {
    Report report = make_report(source_, model_, problem_, outcome);
    report.times = times;
    return json_text(report);
  }
  Json json() { return Json::parse(text()); }

 private:
  Source source_;
  Model model_;
  Problem problem_;
};

std::string keys(const Json& json) {
  std::string all;
  for (const auto& [key, value] : json.items()) all += (all.empty() ? "" : " ") + key;
  return all;
}

Solved feasible() {
  Solved solved(
      "variable x, P(2,2) symmetric, D(2,2) diagonal;\n"
      "variable g(1,2);\n"
      "P > 0;\n"
      "x + 1 >= 0; x + g(1,1) == 1;\n"
      "minimize o = x;\n"
      "BIGM = 20;\n");
  solved.outcome.verdict = Verdict::kFeasible;
  solved.outcome.point = {-1, 2, 0.5, 0.1 + 0.2, -0.0, 1e-300, 2, 3};
  solved.outcome.interior = {-0.5, 2, 0, 1, 4, 5, 1.25, 3};
  solved.outcome.objective = 1;
  solved.outcome.bound = 1.0000152587890625;
  solved.outcome.distance = {0.5, 9, 9, 9, 9, 9, 0.25, 9};
  solved.outcome.fallbacks = 1;
  solved.outcome.iterations = 17;
  return solved;
}

TEST(JsonReport, OfAFeasibleRunHoldsEverything) {
  Solved solved = feasible();
  solved.times = {.reading = 1, .structure = 2, .engine = 3, .checking = 4.5, .total = 11};
  const Json json = solved.json();
  EXPECT_EQ(json["program"], "sdpsol");
  EXPECT_EQ(json["version"], "0.1.0");
  EXPECT_EQ(json["definition"], "t.def");
  EXPECT_EQ(json["verdict"], "FEASIBLE");
  EXPECT_FALSE(json.contains("reason"));
  EXPECT_FALSE(json.contains("lines"));
  EXPECT_FALSE(json.contains("certificate"));
  EXPECT_EQ(json["warnings"], Json({"the objective may be better than reported, see its bound"}));
  EXPECT_EQ(json["sizes"],
            Json({{"unknowns", 8}, {"rows", 2}, {"matrix_blocks", 1}, {"largest_block", 2}}));
  EXPECT_EQ(json["parameters"], Json({{"NU", 10},
                                      {"GAMMA", 100},
                                      {"MAXITER", 100},
                                      {"ABSTOL", 4.4e-6},
                                      {"RELTOL", 4.4e-6},
                                      {"BIGM", 20}}));
  EXPECT_EQ(json["engine"], "csdp");
  EXPECT_EQ(json["fallbacks"], 1);
  EXPECT_EQ(json["iterations"], 17);
  EXPECT_EQ(json["times"], Json({{"reading", 1.0},
                                 {"structure", 2.0},
                                 {"engine", 3.0},
                                 {"checking", 4.5},
                                 {"total", 11.0}}));
}

TEST(JsonReport, HasTheObjectiveAsItWasWritten) {
  EXPECT_EQ(feasible().json()["objective"], Json({{"name", "o"},
                                                  {"sense", "minimize"},
                                                  {"line", 5},
                                                  {"value", -1.0},
                                                  {"bound", -1.0000152587890625},
                                                  {"gap", 0.0000152587890625},
                                                  {"limited_by_bigm", false}}));
}

TEST(JsonReport, LeavesOutABoundThatIsNotProven) {
  Solved solved = feasible();
  solved.outcome.bound = std::numeric_limits<double>::infinity();
  solved.outcome.limited_by_box = true;
  EXPECT_EQ(solved.json()["objective"], Json({{"name", "o"},
                                              {"sense", "minimize"},
                                              {"line", 5},
                                              {"value", -1.0},
                                              {"limited_by_bigm", true}}));
}

TEST(JsonReport, HasVariablesRowAfterRowAndBitByBit) {
  Solved solved = feasible();
  const Json variables = solved.json()["variables"];
  ASSERT_EQ(variables.size(), 4U);
  EXPECT_EQ(keys(variables[0]), "columns line name proof rows shape value");
  EXPECT_EQ(variables[0]["name"], "x");
  EXPECT_EQ(variables[0]["line"], 1);
  EXPECT_EQ(variables[0]["value"], -1.0);
  EXPECT_EQ(variables[0]["proof"], -0.5);
  EXPECT_EQ(variables[1]["shape"], "symmetric");
  EXPECT_EQ(variables[1]["value"], Json({{2, 0.5}, {0.5, 0.1 + 0.2}}));
  EXPECT_EQ(variables[2]["shape"], "diagonal");
  EXPECT_EQ(variables[2]["value"], Json({{0, 0}, {0, 1e-300}}));
  EXPECT_EQ(variables[3]["line"], 2);
  EXPECT_EQ(variables[3]["shape"], "general");
  EXPECT_EQ(variables[3]["rows"], 1);
  EXPECT_EQ(variables[3]["columns"], 2);
  EXPECT_EQ(variables[3]["value"], Json(std::vector<std::vector<double>>{{2, 3}}));
  EXPECT_EQ(solved.text().find("-0.0"), std::string::npos);
}

TEST(JsonReport, HasMarginsAndResidualsAtThePointOfTheProof) {
  const Json conditions = feasible().json()["conditions"];
  ASSERT_EQ(conditions.size(), 3U);
  EXPECT_EQ(keys(conditions[0]), "columns line of relation room rows smallest_eigenvalue");
  EXPECT_EQ(conditions[0]["line"], 3);
  EXPECT_EQ(conditions[0]["relation"], "> 0");
  EXPECT_EQ(conditions[0]["of"], "matrix");
  EXPECT_EQ(conditions[0]["rows"], 2);
  EXPECT_EQ(conditions[0]["columns"], 2);
  EXPECT_NEAR(conditions[0]["smallest_eigenvalue"], 1, 1e-15);
  EXPECT_NEAR(conditions[0]["room"], 1, 1e-15);
  EXPECT_EQ(conditions[1]["relation"], ">= 0");
  EXPECT_EQ(conditions[1]["of"], "entries");
  EXPECT_EQ(conditions[1]["smallest_eigenvalue"], 0.5);
  EXPECT_EQ(conditions[1]["room"], 0.5 / 1.5);
  EXPECT_EQ(conditions[2], Json({{"line", 4},
                                 {"relation", "== 0"},
                                 {"of", "entries"},
                                 {"rows", 1},
                                 {"columns", 1},
                                 {"residual", 0.25},
                                 {"distance", 0.5}}));
}

TEST(JsonReport, HasOnePointWhereThereIsNoObjective) {
  Solved solved("variable x;\nx > 0;\n");
  solved.outcome.verdict = Verdict::kFeasible;
  solved.outcome.point = solved.outcome.interior = {1};
  const Json json = solved.json();
  EXPECT_FALSE(json.contains("objective"));
  EXPECT_EQ(keys(json["variables"][0]), "columns line name rows shape value");
}

TEST(JsonReport, OfAContradictionHasItsWeights) {
  Solved solved(
      "variable x, y;\n"
      "[x, 0, 1; 0, y, 0; 1, 0, -x] > 0;\n"
      "[x; y] <= [1; 2]; x + y == 5;\n");
  solved.outcome.verdict = Verdict::kInfeasible;
  solved.outcome.reason = "the conditions contradict each other";
  solved.outcome.conditions = {0, 1, 2};
  Eigen::MatrixXd factor(2, 1);
  factor << 1, -3;
  solved.outcome.certificate = {{0, factor},
                                {1, Eigen::MatrixXd::Constant(1, 1, 2)},
                                {3, Eigen::MatrixXd::Constant(1, 1, 0.5)},
                                {4, Eigen::MatrixXd::Constant(1, 1, -7)}};
  const Json json = solved.json();
  EXPECT_EQ(json["verdict"], "INFEASIBLE");
  EXPECT_EQ(json["reason"], "the conditions contradict each other");
  EXPECT_EQ(json["lines"], Json({2, 3}));
  EXPECT_EQ(keys(json["variables"][0]), "columns line name rows shape");
  EXPECT_EQ(keys(json["conditions"][0]), "columns line of relation rows");
  const Json& certificate = json["certificate"];
  ASSERT_EQ(certificate.size(), 4U);
  EXPECT_EQ(certificate[0], Json({{"line", 2},
                                  {"condition", 1},
                                  {"block", 1},
                                  {"rows", {1, 3}},
                                  {"weight", {{1, -3}, {-3, 9}}}}));
  EXPECT_EQ(certificate[1], Json({{"line", 2},
                                  {"condition", 1},
                                  {"block", 2},
                                  {"rows", Json::array({2})},
                                  {"weight", 4}}));
  EXPECT_EQ(
      certificate[2],
      Json({{"line", 3}, {"condition", 2}, {"block", 2}, {"entry", {2, 1}}, {"weight", 0.25}}));
  EXPECT_EQ(certificate[3],
            Json({{"line", 3}, {"condition", 3}, {"block", 1}, {"entry", {1, 1}}, {"weight", -7}}));
}

TEST(JsonReport, NamesTheEntriesOfAnEquationThatSayNothingElsewhere) {
  // 0 == 0 is no block, and the ones behind it keep their places.
  Solved solved("variable x, y;\n[0, x + y; x, 0; y, 2*x] == [0, 1; 2, 0; 3, 4];\n");
  solved.outcome.verdict = Verdict::kInfeasible;
  for (std::size_t block = 0; block < 4; ++block) {
    solved.outcome.certificate.push_back({block, Eigen::MatrixXd::Constant(1, 1, 1)});
  }
  const Json json = solved.json();
  std::vector<Json> entries;
  for (const Json& one : json["certificate"]) entries.push_back(one["entry"]);
  EXPECT_EQ(entries, (std::vector<Json>{{1, 2}, {2, 1}, {3, 1}, {3, 2}}));
}

TEST(JsonReport, OfAnUndecidedRunHasTheLastIterateIfItIsOne) {
  Solved solved("variable x, y(2,1);\nx > 0;\nmaximize o = x;\n");
  solved.outcome.reason = "numerical trouble: the engine gave up";
  solved.outcome.point = {1, 2, 3};
  Json json = solved.json();
  EXPECT_EQ(json["verdict"], "FEASIBILITY CANNOT BE DETERMINED");
  EXPECT_EQ(json["reason"], "numerical trouble: the engine gave up");
  EXPECT_EQ(json["lines"], Json::array());
  EXPECT_EQ(json["objective"], Json({{"name", "o"}, {"sense", "maximize"}, {"line", 3}}));
  EXPECT_EQ(json["variables"][0]["last_iterate"], 1);
  EXPECT_EQ(json["variables"][1]["last_iterate"], Json(std::vector<std::vector<double>>{{2}, {3}}));
  for (const double value : {std::nan(""), -std::numeric_limits<double>::infinity()}) {
    solved.outcome.point = {1, 2, value};
    json = solved.json();
    for (const Json& variable : json["variables"]) {
      EXPECT_EQ(keys(variable), "columns line name rows shape");
    }
  }
  solved.outcome.point.clear();
  json = solved.json();
  EXPECT_EQ(keys(json["variables"][0]), "columns line name rows shape");
}

TEST(JsonReport, TakesAnyNameOfAFile) {
  Solved solved("1 > 0;\n", "a \"b\" \xff\n.def");
  EXPECT_EQ(solved.json()["definition"], "a \"b\" \xef\xbf\xbd\n.def");
}

TEST(JsonReport, HasALineForEachThing) {
  Solved solved("variable x, y;\nx > 0;\n");
  solved.outcome.reason = "reason";
  EXPECT_EQ(solved.text(),
            R"({
  "program": "sdpsol",
  "version": "0.1.0",
  "definition": "t.def",
  "verdict": "FEASIBILITY CANNOT BE DETERMINED",
  "reason": "reason",
  "lines": [],
  "warnings": [],
  "sizes": {"unknowns":2,"rows":1,"matrix_blocks":0,"largest_block":1},
  "parameters": {"NU":10.0,"GAMMA":100.0,"MAXITER":100,"ABSTOL":4.4e-06,"RELTOL":4.4e-06,"BIGM":15000.0},
  "variables": [
    {"name":"x","line":1,"rows":1,"columns":1,"shape":"general"},
    {"name":"y","line":1,"rows":1,"columns":1,"shape":"general"}
  ],
  "conditions": [
    {"line":2,"relation":"> 0","of":"entries","rows":1,"columns":1}
  ],
  "engine": "csdp",
  "fallbacks": 0,
  "iterations": 0,
  "times": {"reading":0.0,"structure":0.0,"engine":0.0,"checking":0.0,"total":0.0}
}
)");
}

}  // namespace
}  // namespace sdpsol
