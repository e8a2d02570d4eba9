// What the tests of the driver share: standard output as a text, an ordinary user, and commands
// that stand in for the solver.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include "tests/support/test_folder.h"
#include "unit/sdpsol_wrapper.h"

namespace unit_test {

using test_support::content_of;
using test_support::TestFolder;
using test_support::write_file;

/// While it lives, what goes to std::cout ends up in text().
class CapturedOutput {
 public:
  CapturedOutput() : before_(std::cout.rdbuf(captured_.rdbuf())) {}
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;
  ~CapturedOutput() { std::cout.rdbuf(before_); }

  std::string text() const { return captured_.str(); }

 private:
  std::ostringstream captured_;
  std::streambuf* before_;
};

/// While it lives, root acts as an ordinary user, whom permissions stop.
class NotRoot {
 public:
  NotRoot() : was_root_(geteuid() == 0) {
    if (was_root_ && seteuid(65534) != 0) was_root_ = false;
  }
  NotRoot(const NotRoot&) = delete;
  NotRoot& operator=(const NotRoot&) = delete;
  ~NotRoot() {
    if (was_root_ && seteuid(0) != 0) std::abort();
  }

 private:
  bool was_root_;
};

/// While it lives, relative names are in another directory.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::filesystem::path& path)
      : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;
  ~WorkingDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
  }

 private:
  std::filesystem::path before_;
};

/// A shell script that stands in for the solver: $3 is the result file, $4 the
/// definition file.
inline std::string script(const TestFolder& dir, std::string_view body) {
  const std::string path = dir.path("command.sh");
  write_file(path, body);
  return "sh " + path;
}

/// A driver in `dir` whose command is the given script.
inline sdpsol_wrapper scripted_driver(const TestFolder& dir, std::string_view body) {
  return {script(dir, body), dir.path("sdpsol.in"), dir.path("sdpsol.out")};
}

/// A driver in `dir` whose command answers with `result`, whatever the problem.
inline sdpsol_wrapper answering_driver(const TestFolder& dir, std::string_view result) {
  write_file(dir.path("answer"), result);
  return scripted_driver(dir, "cp " + dir.path("answer") + " \"$3\"\n");
}

/// A feasible result without objective and variables that ends the scan cleanly.
constexpr std::string_view kFeasible =
    "*** Objective value\nNO OBJECTIVE.\n\n*** Variables\nz0 = 1\n\n";

constexpr std::string_view kInfeasible =
    "verdict: INFEASIBLE\n*** Objective value\nNO OBJECTIVE.\n\n*** Variables\n\n";

}  // namespace unit_test
