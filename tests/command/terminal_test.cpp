// The line on a terminal that says how far a long run has come: it is there when
// somebody can see it and has waited, and out of the way of every message.
#include "tests/support/terminal.h"

#include <gtest/gtest.h>

#include "tests/command/run_command.h"

namespace sdpsol {
namespace {

const char* const kErased = "\r\033[K";

struct Terminal {
  int status = -1;
  std::string text;
};

/// Runs a shell line in the folder on a terminal of its own, where $S is the command.
Terminal on_terminal(const TestFolder& folder, const std::string& line) {
  test_support::OnATerminal terminal("S=" SDPSOL_BIN_DIR "/sdpsol; cd " + folder.path() + "; " +
                                     line);
  Terminal ended;
  ended.text = terminal.until_the_end();
  if (WIFEXITED(terminal.status())) ended.status = WEXITSTATUS(terminal.status());
  return ended;
}

TEST(Terminal, ShowsHowFarALongRunHasCome) {
  const TestFolder folder;
  folder.file("in", "variable x(1200,1);\nx > 0;\ns = sum(x);\ns < 10;\n");
  // The second after which the line comes is mostly spent on waiting for the text.
  const Terminal ended = on_terminal(folder, "{ sleep 1.1; cat in; } | $S -");
  EXPECT_EQ(ended.status, 0);
  // Without what the end of the run erases, this would stand in front of the result.
  EXPECT_EQ(ended.text.find("\riteration "), 0U);
  EXPECT_NE(ended.text.find("  margin "), std::string::npos) << ended.text;
  EXPECT_NE(ended.text.find("  gap "), std::string::npos);
  const std::size_t result = ended.text.find("sdpsol 0.1.0\r\n");
  ASSERT_NE(result, std::string::npos);
  EXPECT_EQ(ended.text.substr(result - 4, 4), kErased);
  EXPECT_EQ(ended.text.find("\riteration", result), std::string::npos);
}

TEST(Terminal, ShowsNothingOfAShortRun) {
  const TestFolder folder;
  folder.file("in", "variable x;\nx > 1;\n");
  const Terminal ended = on_terminal(folder, "$S -o out in");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.text, "");
}

TEST(Terminal, HasAnEmptyLineForTheMessageWhereTheEngineEndsTheProgram) {
  if (!kLimitsMemory) GTEST_SKIP() << "only of the static command";
  const TestFolder folder;
  folder.file("in", "variable x(5000,1);\nx > 0;\ns = sum(x);\ns < 10;\n");
  // After a second of waiting for the text the line is there as soon as the engine is.
  const Terminal ended =
      on_terminal(folder, "ulimit -v 300000; { sleep 1.1; cat in; } | $S -o out -");
  EXPECT_EQ(ended.status, 4);
  const std::string message = "sdpsol: the engine ended the program, probably out of memory\r\n";
  ASSERT_GE(ended.text.size(), message.size());
  const std::string before = ended.text.substr(0, ended.text.size() - message.size());
  EXPECT_EQ(ended.text.substr(before.size()), message);
  EXPECT_TRUE(before.empty() || before.ends_with(kErased)) << before;
}

}  // namespace
}  // namespace sdpsol
