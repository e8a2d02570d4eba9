// The command zelrun check as a plug-in's author runs it: what it says about each
// of the plug-ins that break one expectation, and about those that break none.
//
// A sanitizer would turn crashes into reports and exit codes of its own; it is told
// not to.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/broken_plugins/expectations.h"
#include "tests/support/test_folder.h"

namespace {

namespace fs = std::filesystem;

using broken_plugins::Expectation;
using broken_plugins::expectations;
using broken_plugins::Lines;
using test_support::TestFolder;

const fs::path kBroken = SDPSOL_BROKEN_PLUGINS;
const std::string kBinaries = SDPSOL_BIN_DIR;

struct Ended {
  int exit_code = -1;
  std::string output;

  [[nodiscard]] Lines lines(std::string_view beginning = "") const {
    Lines found;
    std::istringstream all(output);
    for (std::string line; std::getline(all, line);)
      if (line.rfind(beginning, 0) == 0) found.push_back(line);
    return found;
  }
};

// Standard output and error together.
Ended zelrun_check(const std::string& arguments, const std::string& environment = "") {
  const std::string line = environment + " ASAN_OPTIONS=handle_segv=0:abort_on_error=1 " +
                           kBinaries + "/zelrun check " + arguments + " 2>&1";
  std::FILE* const pipe = popen(line.c_str(), "r");
  if (pipe == nullptr) return {};
  Ended ended;
  std::array<char, 4096> buffer = {};
  for (std::size_t size = 0; (size = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
    ended.output.append(buffer.data(), size);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) ended.exit_code = WEXITSTATUS(status);
  return ended;
}

class BrokenPlugin : public testing::TestWithParam<Expectation> {};

TEST_P(BrokenPlugin, IsToldWhatIsWrong) {
  const Expectation& expected = GetParam();
  // As much as a loaded machine may need, except where a check is to run into it.
  const std::string limit = expected.plugin.rfind("hangs", 0) == 0 ? "2" : "30";
  const Ended ended =
      zelrun_check("--time-limit " + limit + " " + (kBroken / expected.plugin).string());
  EXPECT_EQ(ended.exit_code, 1);
  Lines failed;
  for (const std::string& line : expected.failed) failed.push_back("FAILED   " + line);
  EXPECT_EQ(ended.lines("FAILED"), failed) << ended.output;
  Lines skipped;
  for (const std::string& line : expected.skipped) skipped.push_back("skipped  " + line);
  EXPECT_EQ(ended.lines("skipped"), skipped) << ended.output;

  const std::size_t passed = ended.lines("passed").size();
  EXPECT_EQ(ended.lines().back(), std::to_string(passed + failed.size() + skipped.size()) +
                                      " checks, " + std::to_string(passed) + " passed, " +
                                      std::to_string(failed.size()) + " failed, " +
                                      std::to_string(skipped.size()) + " skipped");
}

INSTANTIATE_TEST_SUITE_P(Check, BrokenPlugin, testing::ValuesIn(expectations()),
                         [](const auto& each) { return each.param.plugin; });

TEST(Check, IsTriedOnEveryBrokenPlugin) {
  std::istringstream names(SDPSOL_BROKEN_PLUGIN_NAMES);
  std::set<std::string> built;
  for (std::string name; names >> name;) built.insert(name);
  std::set<std::string> tried = {"whole"};
  for (const Expectation& each : expectations()) tried.insert(each.plugin);
  EXPECT_EQ(tried, built);
}

TEST(Check, PassesAPluginThatBreaksNothing) {
  const Ended ended = zelrun_check((kBroken / "whole.so").string());
  EXPECT_EQ(ended.exit_code, 0);
  EXPECT_EQ(ended.lines().back(), "38 checks, 38 passed, 0 failed, 0 skipped") << ended.output;
  EXPECT_EQ(ended.lines("passed").size(), 38U);
}

TEST(Check, FindsThePluginByItsNameInAFolder) {
  const Ended ended = zelrun_check("second_returns_0 --plugins " + kBroken.string());
  EXPECT_EQ(ended.exit_code, 1);
  EXPECT_EQ(ended.lines("FAILED").size(), 1U) << ended.output;
}

TEST(Check, SaysWhenThereIsNoSuchPlugin) {
  const Ended ended = zelrun_check("/nowhere/plugin.so");
  EXPECT_EQ(ended.exit_code, 3);
  EXPECT_EQ(ended.output, "zelrun: error: /nowhere/plugin.so: no such file\n");
}

TEST(Check, FailsOnAFileThatIsNoLibrary) {
  const TestFolder folder;
  const Ended ended = zelrun_check(folder.file("text.so", std::string(10'000, 'x')));
  EXPECT_EQ(ended.exit_code, 1);
  EXPECT_EQ(ended.lines("FAILED"), Lines{"FAILED   the library loads: invalid ELF header"});
}

// What a plug-in prints is shown where its check failed, and only there.
TEST(Check, ShowsWhatWasPrintedByAMethodThatFailed) {
  const Ended ended = zelrun_check((kBroken / "exits").string());
  const Lines lines = ended.lines();
  std::size_t shown = 0;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (lines[i] != "           Scale has enough") continue;
    ++shown;
    EXPECT_EQ(lines[i - 1].rfind("FAILED   Arrays:Scale with ", 0), 0U) << lines[i - 1];
  }
  EXPECT_EQ(shown, ended.lines("FAILED").size());
  EXPECT_EQ(shown, 8U);
}

TEST(Check, LeavesNothingBehind) {
  const TestFolder folder;
  const Ended ended =
      zelrun_check((kBroken / "crashes_on_nan").string(), "cd " + folder.path() + " && TMPDIR=. ");
  EXPECT_EQ(ended.exit_code, 1) << ended.output;
  EXPECT_EQ(folder.names(), Lines{});
}

// The check that hangs ends with the command, and its folder goes too.
TEST(Check, EndsOnASignalAndLeavesNothingBehind) {
  const TestFolder folder;
  std::array<int, 2> ends = {};
  ASSERT_EQ(pipe(ends.data()), 0);
  const std::string program = kBinaries + "/zelrun";
  const std::string plugin = kBroken / "hangs_on_negative_number.so";
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    setenv("TMPDIR", folder.path().c_str(), 1);
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    execl(program.c_str(), "zelrun", "check", plugin.c_str(), nullptr);
    _exit(127);
  }
  close(ends[1]);
  // Up to the check before the one that hangs.
  std::FILE* const output = fdopen(ends[0], "r");
  std::array<char, 1000> line = {};
  while (std::fgets(line.data(), line.size(), output) != nullptr)
    if (std::string(line.data()) == "passed   Arrays:Scale with huge numbers\n") break;
  usleep(100'000);
  EXPECT_EQ(folder.names().size(), 1U);
  kill(child, SIGTERM);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
  EXPECT_EQ(folder.names(), Lines{});
  // Nobody holds the other end any more, and nothing has been said about the check.
  EXPECT_EQ(std::fgets(line.data(), line.size(), output), nullptr) << line.data();
  std::fclose(output);
}

// The plug-in of this project

TEST(Check, PassesTheSdpsolPluginWithItsCommand) {
  const TestFolder folder;
  const std::string script = folder.file("sdpsol", "#!/bin/sh\necho run >> " + folder.path("log") +
                                                       "\nexec " + kBinaries + "/sdpsol \"$@\"\n");
  fs::permissions(script, fs::perms::owner_all);
  const Ended ended = zelrun_check("sdpsol", "PATH=" + folder.path() + ":$PATH");
  EXPECT_EQ(ended.exit_code, 0);
  EXPECT_EQ(ended.lines("passed").size() + 1, ended.lines().size()) << ended.output;
  EXPECT_EQ(ended.lines().back(), "87 checks, 87 passed, 0 failed, 0 skipped");
  // Or it would have been checked without.
  const std::string runs = test_support::content_of(folder.path("log"));
  EXPECT_GT(std::count(runs.begin(), runs.end(), '\n'), 50);
}

TEST(Check, PassesTheSdpsolPluginWithoutItsCommand) {
  const Ended ended = zelrun_check("sdpsol", "PATH=/nowhere");
  EXPECT_EQ(ended.exit_code, 0);
  EXPECT_EQ(ended.lines().back(), "87 checks, 87 passed, 0 failed, 0 skipped") << ended.output;
}

}  // namespace
