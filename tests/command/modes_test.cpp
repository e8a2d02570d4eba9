// What the command does beside solving a definition into a result file: JSON, checking,
// and the exchange format both ways.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/command/run_command.h"

namespace sdpsol {
namespace {

using Names = std::vector<std::string>;

const char* const kDisc =
    "variable x, y;\n"
    "[1, x, y; x, 1, 0; y, 0, 1] > 0;\n"
    "maximize o = x + y;\n";

/// The same as an exchange file, there a minimisation.
const char* const kDiscSdpa =
    "2\n1\n3\n-1 -1\n"
    "0 1 1 1 -1\n0 1 2 2 -1\n0 1 3 3 -1\n"
    "1 1 1 2 1\n2 1 1 3 1\n";

/// The number behind the objective's name in a result.
double objective_of(const std::string& text) {
  const std::string before = "\nobjective = ";
  const std::size_t at = text.find(before);
  return at == std::string::npos ? 0 : std::stod(text.substr(at + before.size()));
}

TEST(Json, GoesWhereItIsAskedTo) {
  const TestFolder folder;
  folder.file("in", kDisc);
  const Ended beside = run_line(folder, "$S --json json in");
  EXPECT_EQ(beside.status, 0);
  EXPECT_TRUE(beside.output.starts_with("sdpsol 0.1.0\n")) << beside.output;
  EXPECT_TRUE(content_of(folder.path("json")).starts_with("{\n  \"program\": \"sdpsol\",\n"));
  const Ended alone = run_line(folder, "$S --json - in");
  EXPECT_EQ(alone.status, 0);
  EXPECT_TRUE(alone.output.starts_with("{\n")) << alone.output;
  EXPECT_TRUE(alone.output.ends_with("\n}\n")) << alone.output;
  const Ended with_file = run_line(folder, "$S --json - -o out in");
  EXPECT_EQ(with_file.status, 0);
  EXPECT_TRUE(with_file.output.starts_with("{\n")) << with_file.output;
  EXPECT_TRUE(content_of(folder.path("out")).starts_with("sdpsol 0.1.0\n"));
  EXPECT_EQ(folder.names(), Names({"in", "json", "out"}));
}

TEST(Engine, IsTheOneThatIsAskedFor) {
  const TestFolder folder;
  folder.file("in", kDisc);
  for (const auto& [asked, used] :
       {std::pair("auto", "cones"), std::pair("cones", "cones"), std::pair("csdp", "csdp")}) {
    const Ended ended = run_line(folder, std::string("$S --engine ") + asked + " -o - in");
    EXPECT_TRUE(has(ended.output, std::string("\nengine ") + used + ", ")) << ended.output;
    EXPECT_NEAR(objective_of(ended.output), std::sqrt(2), 1e-5) << asked;
  }
}

TEST(Engine, ThatIsNotMadeForAProblemSaysSo) {
  const TestFolder folder;
  folder.file("in", "variable X(5,5) symmetric;\nX > 0;\nX < eye(5);\n");
  EXPECT_TRUE(has(run_line(folder, "$S --engine cones -o - in").output,
                  "\nFEASIBILITY CANNOT BE DETERMINED\n"
                  "the engine is not made for such problems\n"));
  EXPECT_TRUE(has(run_line(folder, "$S -o - in").output, "\nFEASIBLE\n"));
}

TEST(Json, OfAFailedRunIsNotThere) {
  const TestFolder folder;
  folder.file("in", "variable x;\nx > y;\n");
  folder.file("out", "stale");
  folder.file("json", "stale");
  EXPECT_EQ(run_line(folder, "$S -o out --json json in").status, 1);
  EXPECT_EQ(folder.names(), Names({"in"}));
  const Ended printed = run_line(folder, "$S --json - in");
  EXPECT_EQ(printed.status, 1);
  EXPECT_EQ(printed.output, "");
}

TEST(Outputs, OfOneNameAreWrongUsageAndNothingIsTouched) {
  const TestFolder folder;
  folder.file("in", kDisc);
  folder.file("out", "kept");
  const std::string hint = "\nTry 'sdpsol --help'.\n";
  const Ended same = run_line(folder, "$S -o out --json ./out in");
  EXPECT_EQ(same.status, 2);
  EXPECT_EQ(same.error, "sdpsol: 'out' and './out' are the same file" + hint);
  const Ended input = run_line(folder, "$S -o out --export-sdpa in in");
  EXPECT_EQ(input.status, 2);
  EXPECT_EQ(input.error, "sdpsol: 'in' and 'in' are the same file" + hint);
  const Ended twice = run_line(folder, "$S -o - --json - in");
  EXPECT_EQ(twice.status, 2);
  EXPECT_EQ(twice.error, "sdpsol: two outputs go to standard output" + hint);
  const Ended redirected = run_line(folder, "$S --json out in >>out");
  EXPECT_EQ(redirected.status, 2);
  EXPECT_EQ(redirected.error, "sdpsol: standard output and 'out' are the same file" + hint);
  const Ended new_one = run_line(folder, "$S -o new --json ./new in");
  EXPECT_EQ(new_one.status, 2);
  EXPECT_EQ(new_one.error, "sdpsol: 'new' and './new' are the same file" + hint);
  EXPECT_EQ(content_of(folder.path("in")), kDisc);
  EXPECT_EQ(content_of(folder.path("out")), "kept");
  EXPECT_EQ(folder.names(), Names({"in", "out"}));
}

TEST(Check, SaysWhatADefinitionHoldsAndSolvesNothing) {
  const TestFolder folder;
  // Nothing that could be solved in any time.
  folder.file("in",
              "variable P(300,300) symmetric;\nP > 0; trace(P) < 1;\nmaximize o = sum(sum(P));\n");
  const Ended ended = run_line(folder, "$S --check in");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.error, "");
  EXPECT_EQ(ended.output,
            "1 variable, 45150 unknowns\n"
            "  P: 300x300 symmetric\n"
            "2 conditions: 1 row, 1 matrix block up to 300x300\n"
            "  line 2: 300x300 matrix > 0\n"
            "  line 2: scalar > 0\n"
            "maximize o, line 3\n");
  const Ended quiet = run_line(folder, "$S -q --check in");
  EXPECT_EQ(quiet.status, 0);
  EXPECT_EQ(quiet.output + quiet.error, "");
  EXPECT_EQ(folder.names(), Names({"in"}));
}

TEST(Check, ReportsErrors) {
  const TestFolder folder;
  folder.file("in", "variable x;\nx > y;\n");
  folder.file("in.dat-s", "1\n1\n2\n1 2\n");
  for (const char* options : {"--check", "-q --check"}) {
    const Ended ended = run_line(folder, std::string("$S ") + options + " in");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
    EXPECT_TRUE(has(ended.error, "in:2:5: error: 'y' is not defined\n")) << ended.error;
  }
  const Ended sdpa = run_line(folder, "$S --check in.dat-s");
  EXPECT_EQ(sdpa.status, 1);
  EXPECT_TRUE(has(sdpa.error, "in.dat-s:4:")) << sdpa.error;
}

TEST(Check, ReadsBothFormats) {
  const TestFolder folder;
  folder.file("disc.dat-s", kDiscSdpa);
  const Ended ended = run_line(folder, "$S --check disc.dat-s");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.output.substr(0, ended.output.find('\n')), "2 variables, 2 unknowns");
  EXPECT_TRUE(has(ended.output, ": 3x3 matrix >= 0\nminimize ")) << ended.output;
}

TEST(Format, IsToldByTheNameOrByTheOption) {
  const TestFolder folder;
  folder.file("disc.dat-s", kDiscSdpa);
  folder.file("disc", kDiscSdpa);
  folder.file("text.dat-s", kDisc);
  const double optimum = -std::sqrt(2.0);
  for (const char* line : {"$S disc.dat-s", "$S --format sdpa disc", "$S --format=sdpa - <disc"}) {
    const Ended ended = run_line(folder, line);
    EXPECT_EQ(ended.status, 0) << ended.error;
    EXPECT_NEAR(objective_of(ended.output), optimum, 1e-5) << line;
  }
  EXPECT_EQ(run_line(folder, "$S disc").status, 1);
  EXPECT_EQ(run_line(folder, "$S text.dat-s").status, 1);
  EXPECT_NEAR(objective_of(run_line(folder, "$S --format sdpsol text.dat-s").output), -optimum,
              1e-5);
}

TEST(Export, GoesBothWaysAndTheRunGoesOn) {
  const TestFolder folder;
  folder.file("in", kDisc);
  const Ended ended = run_line(folder, "$S --export-sdpa out.dat-s in");
  EXPECT_EQ(ended.status, 0);
  EXPECT_NEAR(objective_of(ended.output), std::sqrt(2.0), 1e-5);
  const Ended back = run_line(folder, "$S out.dat-s");
  EXPECT_EQ(back.status, 0) << back.error;
  EXPECT_NEAR(objective_of(back.output), -std::sqrt(2.0), 1e-5);
}

TEST(Export, OfTheMarginIsAProblemOfItsOwn) {
  const TestFolder folder;
  folder.file("in", kDisc);
  EXPECT_EQ(run_line(folder, "$S -o out --export-sdpa-margin margin.dat-s in").status, 0);
  const Ended margin = run_line(folder, "$S margin.dat-s");
  EXPECT_EQ(margin.status, 0) << margin.error;
  // At x = y = 0 all entries have their full margin, which is capped at 1.
  EXPECT_NEAR(objective_of(margin.output), -1, 1e-5);
}

TEST(Export, SolvesNothingBesideCheck) {
  const TestFolder folder;
  folder.file("in", "variable P(200,200) symmetric;\nP > 0;\nmaximize o = -P(1,1);\n");
  const Ended ended = run_line(folder, "$S --check --export-sdpa out.dat-s in");
  EXPECT_EQ(ended.status, 0);
  EXPECT_TRUE(ended.output.starts_with("1 variable, 20100 unknowns\n")) << ended.output;
  EXPECT_TRUE(has(content_of(folder.path("out.dat-s")), "\n20100"));
}

TEST(Export, GoesToStandardOutputAlone) {
  const TestFolder folder;
  folder.file("in", kDisc);
  for (const char* line :
       {"$S --check --export-sdpa - in", "$S -o out --export-sdpa - in", "$S --export-sdpa - in"}) {
    const Ended ended = run_line(folder, line);
    EXPECT_EQ(ended.status, 0);
    EXPECT_TRUE(ended.output.starts_with("*") || ended.output.starts_with("\"")) << ended.output;
    EXPECT_FALSE(has(ended.output, "FEASIBLE")) << ended.output;
    EXPECT_FALSE(has(ended.output, "variables, ")) << ended.output;
  }
}

TEST(Export, OfAFailedRunIsNotThere) {
  const TestFolder folder;
  folder.file("in", "variable x;\nx > y;\n");
  folder.file("a", "stale");
  folder.file("b", "stale");
  EXPECT_EQ(run_line(folder, "$S --export-sdpa a --export-sdpa-margin b in").status, 1);
  EXPECT_EQ(folder.names(), Names({"in"}));
}

}  // namespace
}  // namespace sdpsol
