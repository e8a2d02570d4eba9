// Networks of the plug-in of this build, with commands that stand in for the solver.
#include "host/network.h"

#include <gtest/gtest.h>

#include "tests/support/test_folder.h"

namespace zelhost {
namespace {

using test_support::TestFolder;

using Floats = std::vector<float>;

class NetworkTest : public testing::Test {
 protected:
  // A network file of two instances, "a" and "b", whose command answers with the
  // text of the file "answer", and of the given further members.
  [[nodiscard]] NetworkFile file(const std::string& members) const {
    const auto instance = [this](const std::string& name) {
      const std::string path = folder_.path() + "/";
      return "\"" + name + R"(": {"plugin": "sdpsol", "icon": "sdpsol", "dialog": {)" +
             R"("sdpsol command": "sh )" + path + R"(answer.sh", "definition file": ")" + path +
             name + R"(.in", "result file": ")" + path + name + R"(.out"}})";
    };
    folder_.file("answer.sh", "cp " + folder_.path() + "/answer \"$3\"\n");
    return read_network(folder_.file("network.json", R"({"instances": {)" + instance("a") + ", " +
                                                         instance("b") + "}, " + members + "}"));
  }

  void answer(const std::string& variables) const {
    folder_.file("answer", "*** Objective value\nobjective = 0.5\n\n*** Variables\n" + variables);
  }

  [[nodiscard]] Network network(const std::string& members) {
    return {host_, file(members), {SDPSOL_BIN_DIR "/../lib"}};
  }

  static void fire_all(Network& network) {
    for (const Step& step : network.steps()) network.fire(step);
  }

  static PortValue output(const Step& step, std::size_t port) {
    return step.method.unit->outputs()[port].value();
  }

  std::string error_of(const std::string& members) {
    try {
      const Network unused = network(members);
    } catch (const JsonError& error) {
      return std::string(error.what()).substr(folder_.path().size() + 1);
    }
    return "no error";
  }

  TestFolder folder_;
  Host host_;
};

// A library is installed under a name with its version, and linked to. It stays when
// the test ends, as it stays loaded: a sanitizer names what it holds by its file.
TEST_F(NetworkTest, LoadsAPluginByTheNameOfTheLinkToIt) {
  namespace fs = std::filesystem;
  const fs::path folder = SDPSOL_BIN_DIR "/../tests/installed_plugin";
  fs::remove_all(folder);
  fs::create_directories(folder);
  fs::copy_file(SDPSOL_BIN_DIR "/../lib/sdpsol.so", folder / "sdpsol.so.0.1");
  fs::create_symlink("sdpsol.so.0.1", folder / "sdpsol.so");
  fs::create_symlink("sdpsol.so", folder / "other.so");
  const auto error_with = [&](const std::string& plugin) -> std::string {
    test_support::write_file(folder / "network.json",
                             R"({"instances": {"a": {"plugin": ")" + plugin +
                                 R"(", "icon": "sdpsol"}}, "order": [["a", "Is_Feasible"]]})");
    try {
      const Network unused(host_, read_network(folder / "network.json"), {});
    } catch (const PluginError& error) {
      return error.what();
    }
    return "no error";
  };
  EXPECT_EQ(error_with("./sdpsol"), "no error");
  EXPECT_EQ(error_with("sdpsol"), "no error");
  EXPECT_NE(error_with("other").find("there is no record Kem_V_of_other"), std::string::npos);
}

TEST_F(NetworkTest, FiresInItsOrder) {
  answer("x = 1.5\n\ny = 2\n\n");
  Network net = network(R"("order": [["a", "General:Get_Result"], ["a", "General:Run_Sdpsol"],
                                     ["a", "General:Get_Result"], ["b", "General:Get_Result"]])");
  ASSERT_EQ(net.steps().size(), 4U);
  const auto& steps = net.steps();
  EXPECT_EQ(steps[1].instance, "a");
  EXPECT_EQ(steps[1].method.name, "General:Run_Sdpsol");
  net.fire(steps[0]);
  EXPECT_EQ(output(steps[0], 3), PortValue(Floats{-1}));
  net.fire(steps[1]);
  EXPECT_EQ(output(steps[1], 0), PortValue(Floats{0}));
  net.fire(steps[2]);
  EXPECT_EQ(output(steps[2], 1), PortValue(Floats{1.5, 2}));
  EXPECT_EQ(output(steps[2], 2), PortValue(Floats{0.5}));
  net.fire(steps[3]);
  EXPECT_EQ(output(steps[3], 3), PortValue(Floats{-1}));
}

TEST_F(NetworkTest, SetsInputsByTextAndByNumber) {
  Network net = network(R"("inputs": [
      {"instance": "a", "methods": ["IntForce:Exists"], "values": {"Contact Types": [3, 1]}},
      {"instance": "b", "methods": ["IntForce:Exists", "IntForce:Maximize_All"],
       "values": {"3": [1], "0": [[1, 2], [3, 4]]}}],
    "order": [["a", "IntForce:Exists"], ["b", "IntForce:Maximize_All"]])");
  EXPECT_EQ(net.steps()[0].method.unit->inputs()[3].value(),
            PortValue(std::vector<std::int32_t>{3, 1}));
  EXPECT_EQ(net.steps()[1].method.unit->inputs()[3].value(),
            PortValue(std::vector<std::int32_t>{1}));
  EXPECT_EQ(net.steps()[1].method.unit->inputs()[0].value(), PortValue(Floats{1, 2, 3, 4}));
}

TEST_F(NetworkTest, CarriesArraysFromOneInstanceToAnother) {
  answer("x = 7\n\ny = 9\n\n");
  Network net = network(R"(
    "wires": [{"from": ["a", "General:Get_Result", "variable values"],
               "to": ["b", "Is_Feasible", "values"]}],
    "order": [["a", "General:Run_Sdpsol"], ["a", "General:Get_Result"], ["b", "Is_Feasible"]])");
  const auto& values = net.steps()[2].method.unit->inputs()[1];
  net.fire(net.steps()[0]);
  net.fire(net.steps()[1]);
  EXPECT_EQ(values.value(), PortValue(Floats{}));
  net.fire(net.steps()[2]);
  EXPECT_EQ(values.value(), PortValue(Floats{7, 9}));
}

TEST_F(NetworkTest, CarriesWhatAnOutputHoldsAtTheTimeOfFiring) {
  answer("x = 7\n\n");
  Network net = network(R"(
    "wires": [{"from": ["a", "Is_Feasible", 3], "to": ["a", "Is_Feasible", 0]}],
    "order": [["a", "Is_Feasible"], ["a", "Is_Feasible"]])");
  fire_all(net);
  EXPECT_EQ(net.steps()[0].method.unit->inputs()[0].value(), PortValue(Floats{100}));
}

TEST_F(NetworkTest, NamesTheMethodThatThrew) {
  folder_.file("answer", "");
  Network net = network(R"("order": [["a", "General:Run_Sdpsol"]])");
  try {
    net.fire(net.steps()[0]);
    ADD_FAILURE() << "no error";
  } catch (const MethodError& error) {
    EXPECT_EQ(std::string(error.what())
                  .find("a, General:Run_Sdpsol: the method threw: basic_string::substr"),
              0U)
        << error.what();
  }
}

TEST_F(NetworkTest, NamesWhatThePluginDoesNotHave) {
  const std::string order = R"("order": [["a", "Is_Feasible"]])";
  EXPECT_EQ(error_of(R"("order": [["a", "Is_Feasible"], ["c", "Is_Feasible"]])"),
            "network.json: /order/1: there is no instance \"c\"; there are \"a\", \"b\"");
  EXPECT_EQ(error_of(R"("order": [["a", "General"]])").substr(0, 63),
            "network.json: /order/0: \"a\" has no method \"General\"; it has \"Ge");
  EXPECT_EQ(error_of(R"("inputs": [{"instance": "a", "methods": ["Is_Feasible"],
                          "values": {"number": 1}}], )" +
                     order),
            "network.json: /inputs/0/values/number: Is_Feasible has no input \"number\"; it has "
            "3: 0 \"number of matrices\", 1 \"values\", 2 \"=0 for no strictly feasibility\"");
  EXPECT_EQ(error_of(R"("inputs": [{"instance": "a", "methods": ["Is_Feasible"],
                          "values": {"3": 1}}], )" +
                     order)
                .substr(0, 65),
            "network.json: /inputs/0/values/3: Is_Feasible has no input \"3\"; i");
}

// Not all the pairs of methods and values, of which there would be a million here.
TEST_F(NetworkTest, RefusesTheFirstOfManyMethodsBeforeItLooksAtValues) {
  std::string methods = "\"m\"";
  std::string values = "\"v\": 0";
  for (int i = 0; i < 1'000; ++i) {
    methods += ", \"m" + std::to_string(i) + "\"";
    values += ", \"v" + std::to_string(i) + "\": 0";
  }
  const NetworkFile many =
      file(R"("inputs": [{"instance": "a", "methods": [)" + methods + R"(], "values": {)" + values +
           R"(}}], "order": [["a", "Is_Feasible"]])");
  EXPECT_EQ(many.inputs.front().methods.size(), 1'001U);
  EXPECT_EQ(many.inputs.front().values.size(), 1'001U);
  try {
    const Network unused(host_, many, {SDPSOL_BIN_DIR "/../lib"});
    ADD_FAILURE() << "no error";
  } catch (const JsonError& error) {
    EXPECT_NE(std::string(error.what()).find("/inputs/0/methods/0: \"a\" has no method \"m\""),
              std::string::npos);
  }
}

TEST_F(NetworkTest, RefusesToFillAnInputTwice) {
  const std::string values = R"({"instance": "a", "methods": ["Is_Feasible"], "values": )";
  const std::string order = R"("order": [["a", "Is_Feasible"]])";
  EXPECT_EQ(error_of("\"inputs\": [" + values + R"({"0": 1}}, )" + values +
                     R"({"number of matrices": 2}}], )" + order),
            "network.json: /inputs/1/values/number of matrices: this input is filled already, at "
            "/inputs/0/values/0");
  EXPECT_EQ(error_of("\"inputs\": [" + values + R"({"0": 1}}], "wires": [
                     {"from": ["b", "Is_Feasible", 0], "to": ["a", "Is_Feasible", 0]}], )" +
                     order),
            "network.json: /wires/0/to/2: this input is filled already, at /inputs/0/values/0");
}

TEST_F(NetworkTest, WiresOnlyPortsOfOneType) {
  EXPECT_EQ(error_of(R"("wires": [{"from": ["a", "General:Get_Result", 0],
                                   "to": ["b", "Is_Feasible", 1]}],
                        "order": [["a", "Is_Feasible"]])"),
            "network.json: /wires/0/to/2: this input takes float array, the output gives 1 float");
}

TEST_F(NetworkTest, TakesTheTextsOfTheDialog) {
  Network net = network(R"("order": [["b", "General:Run_Sdpsol"]])");
  answer("x = 1\n\n");
  fire_all(net);
  EXPECT_TRUE(std::filesystem::exists(folder_.path("b.in")));
  EXPECT_TRUE(std::filesystem::exists(folder_.path("b.out")));
  EXPECT_FALSE(std::filesystem::exists(folder_.path("a.in")));
}

}  // namespace
}  // namespace zelhost
