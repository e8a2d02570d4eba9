#include "grasp/batch/grasp_line.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "grasp/batch/random_grasps.h"
#include "grasp/batch/test_batch.h"

namespace grasp {
namespace {

using Json = nlohmann::json;

const Road kRoad = {SDPSOL_BIN_DIR "/../lib/sdpsol.so", "'" SDPSOL_BIN_DIR "/sdpsol'"};

// Two fingers that press against each other.
const std::string kPinch = R"({"name": "pinch", "friction": 0.5, "max_force": 10, "contacts": [)"
                           R"({"name": "thumb", "point": [0, 0, 0], "normal": [1, 0, 0]},)"
                           R"({"point": [0.04, 0, 0], "normal": [-1, 0, 0]}]})";

std::vector<Json> parsed(const std::string& result) {
  std::vector<Json> lines;
  std::istringstream in(result);
  for (std::string line; std::getline(in, line);) lines.push_back(Json::parse(line));
  return lines;
}

TEST(GraspLines, AreAnsweredByTheSolver) {
  TestBatch batch;
  batch.set_input(kPinch + "\n");
  const BatchEnd end = batch.run(answer_grasps(kRoad, {}));
  EXPECT_EQ(end.status, kBatchDone);
  EXPECT_EQ(end.said, "grasp: 1 grasp: 1 FEASIBLE\n");
  const Json answer = parsed(end.result).at(0);
  EXPECT_EQ(answer["line"], 1);
  EXPECT_EQ(answer["name"], "pinch");
  EXPECT_EQ(answer["verdict"], "FEASIBLE");
  EXPECT_EQ(answer["contacts"].size(), 2U);
  EXPECT_FALSE(answer.contains("times"));
}

TEST(GraspLines, CarryTimesIfAskedTo) {
  TestBatch batch;
  batch.set_input(kPinch + "\n");
  const BatchEnd end = batch.run(answer_grasps(kRoad, {Question::kExists, {}, true}));
  EXPECT_GT(parsed(end.result).at(0)["times"]["solving"].get<double>(), 0);
}

TEST(GraspLines, ResolveContactsForEachGrasp) {
  TestBatch batch;
  batch.set_input(kPinch + "\n" + R"({"friction": 0.5, "max_force": 10, "contacts": [)" +
                  R"({"point": [0, 0, 0], "normal": [1, 0, 0]},)" +
                  R"({"name": "thumb", "point": [0.04, 0, 0], "normal": [-1, 0, 0]}]})" + "\n" +
                  R"({"friction": 0.5, "max_force": 10, "contacts": [)" +
                  R"({"point": [0, 0, 0], "normal": [1, 0, 0]}]})" + "\n");
  const BatchEnd end = batch.run(answer_grasps(kRoad, {Question::kPoint, {"thumb"}}));
  EXPECT_EQ(end.status, kBatchHasErrors);
  const std::vector<Json> lines = parsed(end.result);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0]["about"], Json::array({0}));
  EXPECT_EQ(lines[1]["about"], Json::array({1}));
  EXPECT_EQ(lines[2]["error"], "there is no contact \"thumb\"; there are 0");
}

TEST(GraspLines, SayWhatIsWrongWithALine) {
  TestBatch batch;
  batch.options.workers = 2;
  batch.options.first_line = 5;
  batch.set_input("{\"contacts\": [}\n{\"name\": \"none\", \"contacts\": []}\n[1]\n" + kPinch +
                  "\n\xff\n");
  const BatchEnd end = batch.run(answer_grasps(kRoad, {}));
  EXPECT_EQ(end.status, kBatchHasErrors);
  const std::vector<Json> lines = parsed(end.result);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0]["error"].get<std::string>().substr(0, 10), "line:5:15:");
  EXPECT_EQ(lines[1], Json({{"line", 6},
                            {"name", "none"},
                            {"error", "line 6: /contacts: a grasp has at least one contact"}}));
  EXPECT_EQ(lines[2]["error"].get<std::string>().substr(0, 9), "line 7: /");
  EXPECT_EQ(lines[3]["verdict"], "FEASIBLE");
  EXPECT_TRUE(lines[4].contains("error"));
}

TEST(GraspLines, SayWhatAFailingSolverPrinted) {
  TestBatch batch;
  batch.set_input(kPinch + "\n" + kPinch);
  const BatchEnd end = batch.run(answer_grasps({kRoad.plugin, "echo out of order >&2; false"}, {}));
  EXPECT_EQ(end.status, kBatchHasErrors);
  for (const Json& line : parsed(end.result)) {
    EXPECT_EQ(line["name"], "pinch");
    const auto error = line["error"].get<std::string>();
    EXPECT_NE(error.find("the solver gave no answer"), std::string::npos) << error;
    EXPECT_NE(error.find("(printed: "), std::string::npos) << error;
    EXPECT_NE(error.find("out of order"), std::string::npos) << error;
  }
}

TEST(GraspLines, EndTheBatchWhereThereIsNoPlugIn) {
  TestBatch batch;
  batch.set_input(kPinch);
  EXPECT_THROW(
      static_cast<void>(batch.run(answer_grasps({batch.folder().path("none.so"), "true"}, {}))),
      zelhost::HostError);
}

TEST(GraspLines, AreTheSameFromOneWorkerAndFromMany) {
  std::string input;
  RandomGrasps grasps(5);
  for (int i = 0; i < 60; ++i) input += grasps.next() + (i % 7 == 0 ? "}\n" : "\n");
  TestBatch batch;
  batch.set_input(input);
  const std::string alone = batch.run(answer_grasps(kRoad, {})).result;
  EXPECT_EQ(parsed(alone).size(), 60U);
  batch.remove_result();
  batch.options.workers = 3;
  EXPECT_TRUE(batch.run(answer_grasps(kRoad, {})).result == alone);
  batch.set_result(alone.substr(0, alone.size() / 2));
  batch.options.resume = true;
  EXPECT_TRUE(batch.run(answer_grasps(kRoad, {})).result == alone);
  EXPECT_TRUE(batch.scratch_is_empty());
}

}  // namespace
}  // namespace grasp
