// What breaks on the road from the network to the solver and back, what the
// plug-in says of it afterwards, and that the host survives.
#include <gtest/gtest.h>

#include <string>

#include "tests/host/run_zelrun.h"

namespace {

using test_support::content_of;
using zelrun_test::Ended;
using zelrun_test::Json;
using zelrun_test::kResult;
using zelrun_test::Zelrun;

const std::string kSolver = SDPSOL_BIN_DIR "/sdpsol";

class Faults : public Zelrun {
 protected:
  // Runs the command once and asks for the result, in a network that goes on
  // whatever happens, and returns the error code that the result shows.
  [[nodiscard]] int code_after(const std::string& command) const {
    network(R"(["General:Run_Sdpsol", "General:Get_Result", "General:Get_Default_Params"])",
            command);
    return code_of(run_line("$Z run --json network.json"));
  }

  static int code_of(const Ended& ended) {
    EXPECT_EQ(ended.status, 0) << ended.error;
    const Json json = Json::parse(ended.output);
    EXPECT_EQ(json["firings"].size(), 3U);
    const Json& result = json["firings"][1]["outputs"];
    const int code = result[3]["value"];
    // What the run returned and what the result shows are one.
    EXPECT_EQ(json["firings"][0]["outputs"][0]["value"], code);
    EXPECT_TRUE(code == 0 || result[0]["value"] == 0);
    // A text that could not be parsed leaves what was read of it until then.
    if (code != 0 && code != 4) {
      EXPECT_EQ(result[1]["value"], Json::array());
      EXPECT_EQ(result[2]["value"], 0);
    }
    return code;
  }
};

TEST_F(Faults, SolverMissing) {
  EXPECT_EQ(code_after("./nowhere/sdpsol"), 2);
}

TEST_F(Faults, SolverNotExecutable) {
  folder_.file("text", "no program");
  EXPECT_EQ(code_after("./text"), 2);
}

TEST_F(Faults, SolverKilledByASignal) {
  solver("kill -SEGV $$\n");
  EXPECT_EQ(code_after("sh solver.sh"), 2);
}

TEST_F(Faults, SolverHangsUntilItIsKilled) {
  solver("echo $$ >pid.new; mv pid.new pid; exec sleep 1000\n");
  network(R"(["General:Run_Sdpsol", "General:Get_Result", "General:Get_Default_Params"])");
  EXPECT_EQ(code_of(run_line("$Z run --json network.json & network=$!\n"
                             "until [ -e pid ]; do sleep 0.01; done\n"
                             "kill -KILL $(cat pid)\n"
                             "wait $network\n")),
            2);
}

TEST_F(Faults, SolverRefusesTheDefinition) {
  // Nobody has set one: the file is empty.
  EXPECT_EQ(code_after(kSolver), 2);
  EXPECT_EQ(content_of(folder_.path("sdpsol.in")), "");
}

TEST_F(Faults, ResultFileNotThere) {
  EXPECT_EQ(code_after("true"), 3);
}

TEST_F(Faults, ResultFileNotReadable) {
  // A link to itself: not even root can read it.
  solver("ln -s \"$3\" \"$3\"\n");
  EXPECT_EQ(code_after("sh solver.sh"), 3);
}

// By the rules of the run, which looks at the solver's status and not at the
// file's age.
TEST_F(Faults, StaleResultOfASolverThatWritesNothing) {
  folder_.file("sdpsol.out", kResult);
  EXPECT_EQ(code_after("true"), 0);
}

// Our own solver removes it before it reads the definition.
TEST_F(Faults, StaleResultIsGoneWhenOurSolverFails) {
  folder_.file("sdpsol.out", kResult);
  EXPECT_EQ(code_after(kSolver), 2);
  EXPECT_FALSE(folder_.exists("sdpsol.out"));
}

TEST_F(Faults, WorkingFolderNotWritable) {
  folder_.file("dir", "a file where a folder should be");
  network(R"(["General:Run_Sdpsol", "General:Get_Result", "General:Get_Default_Params"])", kSolver,
          {{"definition file", "dir/sdpsol.in"}});
  EXPECT_EQ(code_of(run_line("$Z run --json network.json")), 1);
}

// Cut anywhere, a result either reads as the rules give it or raises the one
// documented exception; the host survives both.
TEST_F(Faults, TruncatedResults) {
  const std::string whole = kResult;
  network(R"(["General:Run_Sdpsol", "General:Get_Result", "General:Get_Default_Params"])");
  int exceptions = 0;
  for (std::size_t length = 0; length < whole.size(); length += 3) {
    answer(whole.substr(0, length));
    const Ended ended = run_line("$Z run --json network.json");
    if (ended.status == 0) {
      const int code = code_of(ended);
      EXPECT_TRUE(code == 0 || code == 4) << length;
      continue;
    }
    ++exceptions;
    EXPECT_EQ(ended.status, 1) << length;
    EXPECT_EQ(ended.error.find("zelrun: error: network.json: /order/0: a, General:Run_Sdpsol: the "
                               "method threw: basic_string::substr"),
              0U)
        << ended.error;
    EXPECT_EQ(Json::parse(ended.output)["firings"].size(), 0U);
  }
  EXPECT_GT(exceptions, 0);
}

// The write that fails is not noticed; the solver sees the definition's front only.
TEST_F(Faults, DiskFull) {
  // One statement of 4000 characters: wherever it is cut, it has no end.
  std::string definition = "variable x;\nx > 0";
  for (int i = 0; i < 1000; ++i) definition += " + 1";
  definition += ";\n";
  network(R"(["General:Set_Definition", "General:Run_Sdpsol", "General:Get_Result"])", kSolver);
  Json json = Json::parse(content_of(folder_.path("network.json")));
  json["inputs"] = Json::array({{{"instance", "a"},
                                 {"methods", {"General:Set_Definition"}},
                                 {"values", {{"0", definition}}}}});
  folder_.file("network.json", json.dump());
  // A file may have one block, of 512 or 1024 bytes.
  const Ended ended = run_line("(ulimit -f 1; exec $Z run --json network.json) | cat");
  ASSERT_EQ(ended.status, 0);
  const Json firings = Json::parse(ended.output)["firings"];
  EXPECT_EQ(firings[2]["outputs"][3]["value"], 2);
  EXPECT_LE(content_of(folder_.path("sdpsol.in")).size(), 1024U);
  EXPECT_LT(content_of(folder_.path("sdpsol.in")).size(), definition.size());
}

}  // namespace
