// Runs zelrun as a shell would, on a network of one instance.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/support/test_folder.h"

namespace zelrun_test {

using test_support::content_of;
using test_support::TestFolder;
using Json = nlohmann::json;

inline const std::string kZelrun = SDPSOL_BIN_DIR "/zelrun";

/// A result of one variable, and what a host shows of it: 1.5, objective 0.5.
constexpr const char* kResult =
    "*** Objective value\nobjective = 0.5\n\n*** Variables\nx = 1.5\n\n";

struct Ended {
  int status = -1;
  std::string output;
  std::string error;
};

// A network of one instance whose solver is a shell script.
class Zelrun : public testing::Test {
 protected:
  // Runs a shell line in the folder, where $Z is the command.
  [[nodiscard]] Ended run_line(const std::string& line) const {
    const TestFolder caught;
    const std::string script =
        caught.file("script", "Z=" + kZelrun + "\ncd " + folder_.path() + "\n" + line + "\n");
    const int status = std::system(
        ("sh " + script + " </dev/null >" + caught.path("output") + " 2>" + caught.path("error"))
            .c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, content_of(caught.path("output")),
            content_of(caught.path("error"))};
  }

  // Writes "network.json", which fires the given methods of an instance "a".
  void network(const std::string& order, const std::string& command = "sh solver.sh",
               Json dialog = Json::object()) const {
    dialog["sdpsol command"] = command;
    const Json instance = {{"plugin", "sdpsol"}, {"icon", "sdpsol"}, {"dialog", dialog}};
    Json methods = Json::array();
    for (const Json& name : Json::parse(order)) methods.push_back({"a", name});
    folder_.file(
        "network.json",
        Json{{"title", "a test"}, {"instances", {{"a", instance}}}, {"order", methods}}.dump());
  }

  void solver(const std::string& script) const { folder_.file("solver.sh", script); }

  void answer(const std::string& result) const {
    folder_.file("answer", result);
    solver("cp answer \"$3\"\n");
  }

  TestFolder folder_;
};

}  // namespace zelrun_test
