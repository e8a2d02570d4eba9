// zelrun as a user starts it: what it prints where, and how it ends.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>

#include "tests/host/run_zelrun.h"
#include "tests/support/terminal.h"
#include "tests/support/times.h"

namespace {

using test_support::content_of;
using test_support::OnATerminal;
using zelrun_test::Ended;
using zelrun_test::Json;
using zelrun_test::kResult;
using zelrun_test::kZelrun;
using zelrun_test::Zelrun;

// Times differ from run to run.
std::string without_times(const std::string& text) {
  return test_support::without_times(text, "T ms");
}

TEST_F(Zelrun, PrintsATableOfOutputs) {
  answer(kResult);
  network(R"(["General:Run_Sdpsol", "General:Get_Result", "General:Set_Definition"])");
  const Ended ended = run_line("$Z run network.json");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.error, "");
  EXPECT_EQ(without_times(ended.output),
            "a test\n"
            "\n"
            "a  General:Run_Sdpsol      T ms\n"
            "  Error code               0\n"
            "\n"
            "a  General:Get_Result      T ms\n"
            "  bool feasible            1\n"
            "  variable values          [1] 1.5\n"
            "  objective value          0.5\n"
            "  error code               0\n"
            "\n"
            "a  General:Set_Definition  T ms\n");
}

TEST_F(Zelrun, PrintsATitleThatDoesNothingToATerminal) {
  answer(kResult);
  network(R"(["General:Run_Sdpsol"])");
  Json json = Json::parse(content_of(folder_.path("network.json")));
  json["title"] = "red: \033[31m";
  folder_.file("network.json", json.dump());
  EXPECT_EQ(run_line("$Z run network.json").output.find("red: ?[31m\n"), 0U);
  EXPECT_EQ(Json::parse(run_line("$Z run --json network.json").output)["title"], json["title"]);
}

TEST_F(Zelrun, CutsLongListsInTheTableOnly) {
  std::string result = "*** Objective value\nNO OBJECTIVE.\n\n*** Variables\n";
  for (int i = 0; i < 13; ++i) result += "x" + std::to_string(i) + " = 1\n\n";
  answer(result);
  network(R"(["General:Run_Sdpsol", "General:Get_Result"])");
  EXPECT_NE(run_line("$Z run network.json").output.find("[13] 1 1 1 1 1 1 1 1 1 1 1 1 ...\n"),
            std::string::npos);
  const Json json = Json::parse(run_line("$Z run --json network.json").output);
  EXPECT_EQ(json["firings"][1]["outputs"][1]["value"].size(), 13U);
}

TEST_F(Zelrun, PrintsAllAsJson) {
  answer(kResult);
  network(R"(["General:Run_Sdpsol", "General:Get_Result"])");
  const Ended ended = run_line("$Z run network.json --json");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.error, "");
  Json json = Json::parse(ended.output);
  for (Json& firing : json["firings"]) {
    EXPECT_GE(firing["seconds"], 0.0);
    EXPECT_LT(firing["seconds"], 100.0);
    firing.erase("seconds");
  }
  EXPECT_EQ(json, Json::parse(R"({"title": "a test", "firings": [
      {"instance": "a", "method": "General:Run_Sdpsol", "outputs": [
        {"port": 0, "text": "Error code", "value": 0}]},
      {"instance": "a", "method": "General:Get_Result", "outputs": [
        {"port": 0, "text": "bool feasible", "value": 1},
        {"port": 1, "text": "variable values", "value": [1.5]},
        {"port": 2, "text": "objective value", "value": 0.5},
        {"port": 3, "text": "error code", "value": 0}]}]})"));
}

TEST_F(Zelrun, KeepsJsonApartFromWhatPluginsPrint) {
  solver("echo from the solver; exit 1\n");
  network(R"(["General:Run_Sdpsol"])");
  const Ended ended = run_line("$Z run network.json --json");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(Json::parse(ended.output)["firings"][0]["outputs"][0]["value"], 2);
  EXPECT_NE(ended.error.find("from the solver\n"), std::string::npos);
  EXPECT_NE(ended.error.find("callsdpsol NOT successful"), std::string::npos);
}

TEST_F(Zelrun, PrintsWhatPluginsPrintInItsPlace) {
  solver("echo from the solver; exit 1\n");
  network(R"(["General:Get_Default_Params", "General:Run_Sdpsol"])");
  const std::string output = run_line("$Z run network.json").output;
  const std::size_t before = output.find("Get_Default_Params");
  const std::size_t solver = output.find("from the solver");
  const std::size_t report = output.find("callsdpsol NOT successful");
  const std::size_t after = output.find("General:Run_Sdpsol");
  EXPECT_LT(before, solver);
  EXPECT_LT(solver, report);
  EXPECT_LT(report, after);
  EXPECT_NE(after, std::string::npos);
}

TEST_F(Zelrun, EndsAtTheMethodThatThrows) {
  answer("");
  network(R"(["General:Get_Default_Params", "General:Run_Sdpsol", "General:Get_Result"])");
  const Ended ended = run_line("$Z run network.json");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.error.find("zelrun: error: network.json: /order/1: a, General:Run_Sdpsol: the "
                             "method threw: basic_string::substr"),
            0U)
      << ended.error;
  EXPECT_NE(ended.output.find("Get_Default_Params"), std::string::npos);
  EXPECT_EQ(ended.output.find("Get_Result"), std::string::npos);

  const Json json = Json::parse(run_line("$Z run --json network.json").output);
  EXPECT_EQ(json["firings"].size(), 1U);
  EXPECT_EQ(json["error"].get<std::string>().find("network.json: /order/1: a, General:Run_Sdpsol"),
            0U);
}

TEST_F(Zelrun, PrintsAllAsJsonWhereOtherDescriptorsAreClosed) {
  solver("echo from the solver; echo and its errors >&2; exit 1\n");
  network(R"(["General:Run_Sdpsol"])");
  for (const char* const closed : {"2>&-", "<&-", "<&- 2>&-"}) {
    const Ended ended = run_line(std::string("$Z run --json network.json ") + closed);
    EXPECT_EQ(ended.status, 0) << closed;
    EXPECT_TRUE(Json::accept(ended.output)) << closed << ": " << ended.output;
  }
}

TEST_F(Zelrun, SaysThatStandardOutputIsClosed) {
  answer(kResult);
  network(R"(["General:Run_Sdpsol"])");
  for (const char* const line : {"$Z run network.json >&-", "$Z run --json network.json >&-",
                                 "$Z list sdpsol >&-", "$Z --version >&-"}) {
    const Ended ended = run_line(line);
    EXPECT_EQ(ended.status, 3) << line;
    EXPECT_EQ(ended.error, "zelrun: error: standard output: Bad file descriptor\n") << line;
  }
}

TEST_F(Zelrun, SaysWhatIsWrongWithANetwork) {
  network(R"(["General:Nothing"])");
  const Ended ended = run_line("$Z run network.json");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(
      ended.error.find("zelrun: error: network.json: /order/0: \"a\" has no method \"General:N"),
      0U)
      << ended.error;
}

TEST_F(Zelrun, TakesTenThousandKeysAndNoMore) {
  std::string keys = "\"k0\": 0";
  for (int i = 1; i < 20'000; ++i) keys += ", \"k" + std::to_string(i) + "\": 0";
  folder_.file("keys.json", R"({"instances": {"a": {)" + keys + "}}}");
  const Ended ended = run_line("$Z run keys.json");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.error,
            "zelrun: error: keys.json: /instances/a/k10000: an object can have 10000 keys\n");
}

TEST_F(Zelrun, SaysWhichFileCannotBeRead) {
  const Ended nothing = run_line("$Z run nothing.json");
  EXPECT_EQ(nothing.status, 3);
  EXPECT_EQ(nothing.error, "zelrun: error: nothing.json: No such file or directory\n");
  const Ended folder = run_line("$Z run .");
  EXPECT_EQ(folder.status, 3);
  EXPECT_EQ(folder.error, "zelrun: error: .: Is a directory\n");
}

TEST_F(Zelrun, SaysThatItsOutputCannotBeWritten) {
  answer(kResult);
  network(R"(["General:Run_Sdpsol"])");
  for (const char* const line :
       {"$Z run network.json >/dev/full", "$Z run --json network.json >/dev/full",
        "$Z list sdpsol >/dev/full", "$Z --help >/dev/full", "$Z run --help >/dev/full",
        "$Z --version >/dev/full"}) {
    const Ended ended = run_line(line);
    EXPECT_EQ(ended.status, 3) << line;
    EXPECT_EQ(ended.error, "zelrun: error: standard output: No space left on device\n") << line;
  }
}

TEST_F(Zelrun, FindsPluginsBesideTheNetworkAndWhereItIsTold) {
  folder_.file("empty.so", "");
  EXPECT_EQ(run_line("$Z list empty").error,
            "zelrun: error: " + folder_.path() + "/empty.so: file too short\n");
  EXPECT_EQ(run_line("mkdir p; mv empty.so p; $Z list -p p empty").error,
            "zelrun: error: " + folder_.path() + "/p/empty.so: file too short\n");
}

TEST_F(Zelrun, CallsAMissingPluginAFileThatCannotBeReadUnlessItIsTheNetworkThatNamesIt) {
  EXPECT_EQ(run_line("$Z list ./nowhere.so").status, 3);
  network(R"(["General:Run_Sdpsol"])");
  Json json = Json::parse(content_of(folder_.path("network.json")));
  json["instances"]["a"]["plugin"] = "./nowhere.so";
  folder_.file("network.json", json.dump());
  EXPECT_EQ(run_line("$Z run network.json").status, 1);
}

TEST_F(Zelrun, ListsThePlugin) {
  const Ended ended = run_line("$Z list sdpsol");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.error, "");
  EXPECT_EQ(ended.output.find("folder sdpsol, for interface 7.9 17/07/02 QZ\n"
                              "\n"
                              "icon sdpsol, dialog\n"
                              "  sdpsol command   \"sdpsol\"\n"
                              "  definition file  \"sdpsol.in\"\n"
                              "  result file      \"sdpsol.out\"\n"
                              "\n"
                              "icon sdpsol, methods\n"
                              "  General\n"
                              "    Set_Definition\n"
                              "      set definition string in sdpsol format\n"
                              "      in  0  text           Definiton String\n"
                              "    Set_Params\n"),
            0U)
      << ended.output;
  EXPECT_NE(ended.output.find("\n"
                              "  Is_Feasible\n"
                              "    proof of feasibility for Standard LMI given as Matrices\n"
                              "    in  0  1 float        number of matrices\n"
                              "    in  1  float array    values\n"
                              "    in  2  1 float        =0 for no strictly feasibility\n"
                              "    out 0  1 float        bool feasible\n"),
            std::string::npos);
}

TEST_F(Zelrun, CountsTheSecondsOfALongRunOnATerminal) {
  answer(kResult);
  solver("sleep 1.5; cp answer \"$3\"\n");
  network(R"(["General:Get_Default_Params", "General:Run_Sdpsol"])");
  const std::string text =
      OnATerminal("cd " + folder_.path() + " && " + kZelrun + " run network.json").until_the_end();
  EXPECT_NE(text.find("\r[2/2] a  General:Run_Sdpsol  1.1 s "), std::string::npos) << text;
  EXPECT_NE(text.find("\r\033[K"), std::string::npos);
  EXPECT_EQ(text.find("[1/2]"), std::string::npos);
}

// A line that wraps leaves a part of itself behind each time it is drawn.
TEST_F(Zelrun, CutsWhatRunsAndNotTheTimeWhereTheTerminalIsNarrow) {
  answer(kResult);
  solver("sleep 1.5; cp answer \"$3\"\n");
  network(R"(["General:Run_Sdpsol"])");
  const std::string text =
      OnATerminal("cd " + folder_.path() + " && " + kZelrun + " run network.json", 25)
          .until_the_end();
  EXPECT_NE(text.find("\r[1/1] a  Gene...  1.1 s \033[K"), std::string::npos) << text;
}

class Interrupt : public Zelrun {
 protected:
  // Runs the network with the options given, and interrupts it with a key as soon as
  // its solver runs, which it does twice.
  std::string interrupt(const std::string& options, char key, int signal) {
    std::filesystem::remove(folder_.path("started"));
    solver("echo started >>started; exec sleep 100\n");
    network(R"(["General:Get_Default_Params", "General:Run_Sdpsol", "General:Run_Sdpsol"])");
    OnATerminal terminal("ulimit -c 0; cd " + folder_.path() + " && exec " + kZelrun +
                         " run network.json " + options);
    while (!folder_.exists("started") || content_of(folder_.path("started")).empty())
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    terminal.type(key);
    std::string text = terminal.until_the_end();
    EXPECT_TRUE(WIFSIGNALED(terminal.status())) << terminal.status() << ": " << text;
    EXPECT_EQ(WTERMSIG(terminal.status()), signal);
    EXPECT_EQ(content_of(folder_.path("started")), "started\n");
    return text;
  }
};

const std::string kInterrupted = "network.json: /order/1: a  General:Run_Sdpsol: interrupted";

TEST_F(Interrupt, EndsTheNetworkAndNotOnlyTheSolver) {
  const std::string text = interrupt("", '\003', SIGINT);
  EXPECT_NE(text.find("zelrun: error: " + kInterrupted), std::string::npos) << text;
  EXPECT_NE(text.find("General:Get_Default_Params"), std::string::npos) << text;
  interrupt("", '\034', SIGQUIT);
}

TEST_F(Interrupt, LeavesADocumentOfWhatWasDone) {
  interrupt("--json >document", '\003', SIGINT);
  const Json json = Json::parse(content_of(folder_.path("document")));
  EXPECT_EQ(json["firings"].size(), 1U);
  EXPECT_EQ(json["error"], kInterrupted);
}

}  // namespace
