// The example networks as a user runs them: what zelrun prints and how it ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/literal.h"
#include "tests/command/run_command.h"
#include "tests/network_run.h"
#include "tests/support/times.h"

namespace {

namespace fs = std::filesystem;
using zelhost::Json;

std::vector<std::string> examples() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(network_run::kExamples))
    if (entry.is_regular_file()) names.push_back(entry.path().stem());
  std::sort(names.begin(), names.end());
  return names;
}

// Runs the command in a folder of its own, where the shell finds sdpsol.
sdpsol::Ended zelrun(const std::string& arguments) {
  const sdpsol::TestFolder folder;
  return sdpsol::run_line(folder, "PATH=" SDPSOL_BIN_DIR ":$PATH\nzelrun " + arguments);
}

std::string file_of(const std::string& example) {
  return network_run::kExamples / (example + ".json");
}

// Times differ from run to run.
std::string without_times(const std::string& table) {
  return test_support::without_times(table, "TIME");
}

class Example : public testing::TestWithParam<std::string> {
 protected:
  Example() { fs::current_path(folder_.path()); }
  ~Example() override { fs::current_path("/"); }

  const zelhost::NetworkFile network_ = zelhost::read_network(file_of(GetParam()));

 private:
  const sdpsol::TestFolder folder_;
};

TEST_P(Example, PrintsAsJsonWhatTheLibraryPublishes) {
  const sdpsol::Ended ended = zelrun("run --json " + file_of(GetParam()));
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.error, "");

  Json printed = Json::parse(ended.output);
  for (Json& firing : printed.at("firings")) {
    EXPECT_GE(firing.at("seconds").get<double>(), 0);
    firing.erase("seconds");
    for (Json& output : firing.at("outputs")) output.erase("text");
  }

  Json expected = {{"title", network_.title}, {"firings", Json::array()}};
  for (const auto& firing : network_run::run(network_)) {
    Json outputs = Json::array();
    for (std::size_t i = 0; i < firing.outputs.size(); ++i)
      outputs.push_back(
          {{"port", i}, {"value", zelhost::to_json(firing.outputs[i], firing.types[i])}});
    expected.at("firings").push_back(
        {{"instance", firing.instance}, {"method", firing.method}, {"outputs", outputs}});
  }
  EXPECT_EQ(printed.dump(1), expected.dump(1));
}

TEST_P(Example, PrintsATableWithALineForEachOutput) {
  const sdpsol::Ended ended = zelrun("run " + file_of(GetParam()));
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.error, "");

  // Title; then for each firing a blank line, its name, and its outputs.
  std::istringstream lines(without_times(ended.output));
  std::string line;
  std::getline(lines, line);
  EXPECT_EQ(line, network_.title);
  for (const auto& firing : network_run::run(network_)) {
    std::getline(lines, line);
    EXPECT_EQ(line, "");
    std::getline(lines, line);
    EXPECT_EQ(line.rfind(firing.instance + "  " + firing.method + "  ", 0), 0U) << line;
    EXPECT_EQ(line.substr(line.size() - 6), "  TIME");
    for (std::size_t i = 0; i < firing.outputs.size(); ++i) {
      std::getline(lines, line);
      EXPECT_EQ(line.rfind("  ", 0), 0U) << line;
      EXPECT_NE(line[2], ' ') << line;
    }
  }
  EXPECT_FALSE(std::getline(lines, line)) << line;
}

std::string name_of(const testing::TestParamInfo<std::string>& info) {
  return info.param;
}

INSTANTIATE_TEST_SUITE_P(Files, Example, testing::ValuesIn(examples()), name_of);

TEST(Zelrun, PrintsTheOutputsOfAGraspThatSlips) {
  const sdpsol::Ended ended = zelrun("run " + file_of("wedge_slips"));
  const std::string no_result =
      "\n"
      "grasp  General:Get_Result                                                TIME\n"
      "  bool feasible                                                          0\n"
      "  variable values                                                        [0]\n"
      "  objective value                                                        0\n"
      "  error code                                                             0\n";
  const std::string no_epsilons =
      "  epsilons, one for each contact                                         "
      "[12] 0 0 0 0 0 0 0 0 0 0 0 0\n";
  EXPECT_EQ(without_times(ended.output),
            "the same wedge with fingers that are too smooth\n"
            "\n"
            "grasp  IntForce:Exists                                                   TIME\n"
            "  bool, 1 if forces found                                                0\n" +
                no_result +
                "\n"
                "grasp  IntForce:Maximize_Individual                                      TIME\n"
                "  0 if no forces found                                                   0\n"
                "  average epsilon                                                        0\n" +
                no_result +
                "\n"
                "grasp  IntForce:Maximize_FrictConts                                      TIME\n"
                "  0 if no forces found                                                   0\n"
                "  average epsilon, 0 if no forces found                                  0\n" +
                no_epsilons + no_result +
                "\n"
                "grasp  IntForce:Maximize_All                                             TIME\n"
                "  0 if no forces found                                                   0\n"
                "  average friction_epsilon + frictionless_epsilon, 0 if no forces found  0\n" +
                no_epsilons + no_result +
                "\n"
                "grasp  IntForce:Maximize_PointCont                                       TIME\n"
                "  0 if no forces found                                                   0\n"
                "  epsilon                                                                0\n" +
                no_result);
}

TEST(Zelrun, PrintsTheValuesOfAMatrixFoundByHand) {
  const sdpsol::Ended ended = zelrun("run " + file_of("by_hand"));
  EXPECT_NE(ended.output.find("  Parameter values: NU,GAMMA,MAXITER,ABSTOL,RELTOL,BIGM  "
                              "[6] 10 100 100 4.4e-06 4.4e-06 15000\n"),
            std::string::npos)
      << ended.output;
}

// The unit reports a command that is not there, and publishes code 2.
TEST(Zelrun, ShowsTheErrorCodeWhereTheCommandIsNotThere) {
  const sdpsol::TestFolder folder;
  const sdpsol::Ended ended = sdpsol::run_line(
      folder, "PATH=/usr/bin:/bin\n" SDPSOL_BIN_DIR "/zelrun run " + file_of("oscillator_damped"));
  EXPECT_EQ(ended.status, 0);
  EXPECT_NE(ended.output.find("callsdpsol NOT successful"), std::string::npos) << ended.output;
  EXPECT_NE(ended.output.find("  error code           2\n"), std::string::npos) << ended.output;
}

TEST(Zelrun, SaysWhichFileCannotBeRead) {
  const sdpsol::Ended ended = zelrun("run /nowhere/a.json");
  EXPECT_EQ(ended.status, 3);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(ended.error, "zelrun: error: /nowhere/a.json: No such file or directory\n");
}

}  // namespace
