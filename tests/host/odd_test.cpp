// What plug-ins do that a host has to live with: zelrun with the plug-in odd.
#include <gtest/gtest.h>

#include <string>

#include "tests/host/run_zelrun.h"

namespace {

using zelrun_test::Ended;
using zelrun_test::Json;
using zelrun_test::Zelrun;

class Odd : public Zelrun {
 protected:
  // Writes "odd.json", which fires Copy of an instance "a" once.
  Odd() { network_of_odd(R"("order": [["a", "Copy"]])"); }

  void network_of_odd(const std::string& members) const {
    folder_.file("odd.json", R"({"instances": {"a": {"plugin": ")" SDPSOL_ODD
                             R"(", "icon": "odd"}}, )" +
                                 members + "}");
  }
};

TEST_F(Odd, ThatThrowsInCreateEndsWithThePlace) {
  const std::string lists =
      std::string("zelrun: error: ") + SDPSOL_ODD + ": icon odd: create threw";
  const std::string runs = "zelrun: error: odd.json: /instances/a: icon odd: create threw";
  for (const auto& [does, threw] : {std::pair("throws an error in create", ": no mood\n"),
                                    std::pair("throws a number in create", "\n")}) {
    const std::string asked = std::string("export ODD='") + does + "'\n";
    const Ended list = run_line(asked + "$Z list " SDPSOL_ODD);
    EXPECT_EQ(list.status, 1);
    EXPECT_EQ(list.error, lists + threw);
    const Ended run = run_line(asked + "$Z run odd.json");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.error, runs + threw);
  }
}

TEST_F(Odd, ThatPrintsWhenTheProcessEndsLeavesTheDocumentAlone) {
  const Ended ended = run_line("export ODD='says farewell'\n$Z run --json odd.json");
  EXPECT_EQ(ended.status, 0);
  EXPECT_TRUE(Json::accept(ended.output)) << ended.output;
  EXPECT_EQ(ended.error, "farewell\n");
}

TEST_F(Odd, ThatMisusesTheInterfaceIsToldOnBeforeAnythingElse) {
  const std::string misuses = "export ODD='misuses in create'\n";
  const std::string warning =
      "zelrun: warning: plug-in misuses primitive_unit: TAG_FLOAT with count 0\n";
  EXPECT_EQ(run_line(misuses + "$Z list " SDPSOL_ODD).error, warning);
  EXPECT_EQ(run_line(misuses + "$Z run odd.json").error, warning);
  network_of_odd(R"("order": [["a", "Paste"]])");
  EXPECT_EQ(
      run_line(misuses + "$Z run odd.json").error,
      warning +
          "zelrun: error: odd.json: /order/0: \"a\" has no method \"Paste\"; it has \"Copy\"\n");
}

TEST_F(Odd, ThatDescribesAPortTooManyHasTheOthersByTheirTexts) {
  network_of_odd(R"("inputs": [{"instance": "a", "methods": ["Copy"], "values": {"number": 3}}],
                    "order": [["a", "Copy"]])");
  const Ended ended = run_line("export ODD='describes a port too many'\n$Z run --json odd.json");
  EXPECT_EQ(ended.status, 0) << ended.error;
  EXPECT_EQ(Json::parse(ended.output)["firings"][0]["outputs"][0]["value"], 3.0);
}

TEST_F(Odd, ThatDescribesTwoPortsAlikeIsAskedForTheirNumbers) {
  network_of_odd(R"("wires": [{"from": ["a", "Copy", "number"], "to": ["a", "Copy", 0]}],
                    "order": [["a", "Copy"]])");
  const Ended ended = run_line("export ODD='describes two ports alike'\n$Z run odd.json");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.error,
            "zelrun: error: odd.json: /wires/0/from/2: Copy has several outputs \"number\"; take "
            "its number\n");
}

TEST_F(Odd, WhoseMethodFailsIsNamed) {
  for (const auto& [does, said] : {std::pair("throws a number in Copy", "the method threw\n"),
                                   std::pair("returns 3", "the method returned 3\n")}) {
    const Ended ended = run_line(std::string("export ODD='") + does + "'\n$Z run odd.json");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.error, std::string("zelrun: error: odd.json: /order/0: a, Copy: ") + said);
  }
}

TEST_F(Odd, ThatPublishesATextHasItShownOnOneLine) {
  EXPECT_NE(run_line("$Z run odd.json").output.find("  text    call 1 ?[31mof this process\n"),
            std::string::npos);
  const Ended ended = run_line("$Z run --json odd.json");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(Json::parse(ended.output)["firings"][0]["outputs"][1]["value"],
            "call 1\n\033[31mof this process");
}

TEST_F(Odd, ThatWaitsForChildrenHasNone) {
  const Ended ended = run_line("export ODD='waits for its children'\n$Z run --json odd.json");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(Json::parse(ended.output)["firings"][0]["outputs"][0]["value"], 1.0);
}

TEST_F(Odd, LeavesNoProcessBehind) {
  // A copy, whose processes are told from those of other tests.
  const Ended ended = run_line(
      "cp $Z copy\n./copy run odd.json\n"
      "for i in $(seq 500); do\n"
      "  found=\n"
      "  for process in /proc/[0-9]*/exe; do\n"
      "    [ \"$(readlink $process)\" = \"$PWD/copy\" ] && found=$process\n"
      "  done\n"
      "  [ -z \"$found\" ] && exit 0\n"
      "  sleep 0.01\n"
      "done\n"
      "echo still there: $found; exit 1\n");
  EXPECT_EQ(ended.status, 0) << ended.output;
  EXPECT_EQ(ended.error, "");
}

}  // namespace
