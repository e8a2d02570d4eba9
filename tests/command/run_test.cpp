// The command as its users start it: exit statuses, streams, files.
#include <gtest/gtest.h>

#include "tests/command/run_command.h"

namespace sdpsol {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

const char* const kBetween = "variable x;\nx > 1;\nx < 2;\n";
const char* const kFalse = "variable x;\nx > 1;\n1 > 2;\n";
const char* const kWrong = "variable x;\nx > y;\n";

/// What is written for kFalse: decided without an engine, so every byte is known.
const char* const kFalseResult =
    "sdpsol 0.1.0\n"
    "1 unknown, 2 conditions: 2 rows, 0 matrix blocks\n"
    "INFEASIBLE\n"
    "a relation between constants is false, line 3\n"
    "\n"
    "*** Objective value\n"
    "NO OBJECTIVE.\n"
    "\n"
    "*** Variables\n"
    "\n";

TEST(Status, Is0ForEveryVerdict) {
  const TestFolder folder;
  folder.file("feasible", kBetween);
  folder.file("infeasible", kFalse);
  folder.file("outside", "variable x;\nx > 20000;\n");
  const Ended feasible = run_line(folder, "$S feasible");
  EXPECT_EQ(feasible.status, 0);
  EXPECT_TRUE(has(feasible.output, "\nFEASIBLE\n")) << feasible.output;
  EXPECT_EQ(feasible.error, "");
  const Ended infeasible = run_line(folder, "$S infeasible");
  EXPECT_EQ(infeasible.status, 0);
  EXPECT_EQ(infeasible.output, kFalseResult);
  EXPECT_EQ(infeasible.error, "");
  const Ended outside = run_line(folder, "$S outside");
  EXPECT_EQ(outside.status, 0);
  EXPECT_TRUE(has(outside.output, "\nFEASIBILITY CANNOT BE DETERMINED\n")) << outside.output;
  EXPECT_EQ(outside.error, "");
  EXPECT_EQ(folder.names(), Names({"feasible", "infeasible", "outside"}));
}

TEST(Status, Is1ForAnErrorInTheDefinition) {
  const TestFolder folder;
  folder.file("in", kWrong);
  folder.file("out", "stale");
  for (const char* line : {"$S -q -o out in", "$S in", "$S -o out in"}) {
    const Ended ended = run_line(folder, line);
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.error,
              "in:2:5: error: 'y' is not defined\n"
              "    2 | x > y;\n"
              "      |     ^\n");
    EXPECT_EQ(folder.names(), Names({"in"}));
  }
  EXPECT_EQ(run_line(folder, "$S - < in").error,
            "<standard input>:2:5: error: 'y' is not defined\n"
            "    2 | x > y;\n"
            "      |     ^\n");
}

TEST(Status, Is2ForWrongUsageAndNothingIsTouched) {
  const TestFolder folder;
  folder.file("in", kFalse);
  folder.file("out", "kept");
  fs::create_hard_link(folder.path("in"), folder.path("same"));
  const Ended same = run_line(folder, "$S -q -o same in");
  EXPECT_EQ(same.status, 2);
  EXPECT_EQ(same.error, "sdpsol: 'in' and 'same' are the same file\nTry 'sdpsol --help'.\n");
  const Ended itself = run_line(folder, "$S -o in - < in");
  EXPECT_EQ(itself.status, 2);
  EXPECT_EQ(itself.error,
            "sdpsol: standard input and 'in' are the same file\nTry 'sdpsol --help'.\n");
  const Ended unknown = run_line(folder, "$S -o out --fast in");
  EXPECT_EQ(unknown.status, 2);
  EXPECT_EQ(unknown.error,
            "sdpsol: The following argument was not expected: --fast\nTry 'sdpsol --help'.\n");
  EXPECT_EQ(same.output + itself.output + unknown.output, "");
  EXPECT_EQ(folder.names(), Names({"in", "out", "same"}));
  EXPECT_EQ(content_of(folder.path("in")), kFalse);
  EXPECT_EQ(content_of(folder.path("out")), "kept");
}

TEST(Status, Is3ForFilesThatCannotBeReadOrWritten) {
  const TestFolder folder;
  folder.file("in", kFalse);
  folder.file("out", "stale");
  const Ended missing = run_line(folder, "$S -q -o out nowhere");
  EXPECT_EQ(missing.status, 3);
  EXPECT_EQ(missing.error, "sdpsol: cannot read 'nowhere': No such file or directory\n");
  EXPECT_EQ(folder.names(), Names({"in"}));
  const Ended nowhere = run_line(folder, "$S -o no/out in");
  EXPECT_EQ(nowhere.status, 3);
  EXPECT_EQ(nowhere.error, "sdpsol: cannot write 'no/out': No such file or directory\n");
  const Ended full = run_line(folder, "$S in >/dev/full");
  EXPECT_EQ(full.status, 3);
  EXPECT_EQ(full.error, "sdpsol: cannot write standard output: No space left on device\n");
  const Ended closed = run_line(folder, "$S in >&-");
  EXPECT_EQ(closed.status, 3);
  EXPECT_EQ(closed.error, "sdpsol: cannot write standard output: Bad file descriptor\n");
  for (const char* const asked : {"--help", "--version"}) {
    const Ended unheard = run_line(folder, std::string("$S ") + asked + " >/dev/full");
    EXPECT_EQ(unheard.status, 3) << asked;
    EXPECT_EQ(unheard.error, full.error) << asked;
    EXPECT_EQ(run_line(folder, std::string("$S ") + asked + " >&-").error, closed.error) << asked;
  }
  const Ended limited = run_line(folder, "{ (ulimit -f 0; $S -o out in; echo $?) 2>&1; } | cat");
  EXPECT_EQ(limited.output, "sdpsol: cannot write 'out': File too large\n3\n");
  EXPECT_EQ(folder.names(), Names({"in"}));
}

TEST(Streams, CarryDefinitionAndResult) {
  const TestFolder folder;
  folder.file("in", kFalse);
  EXPECT_EQ(run_line(folder, "$S - < in").output, kFalseResult);
  EXPECT_EQ(run_line(folder, "cat in | $S -o - -").output, kFalseResult);
  EXPECT_EQ(run_line(folder, "$S -o /dev/stdout in | cat").output, kFalseResult);
  EXPECT_EQ(run_line(folder, "$S -o out /dev/stdin < in").status, 0);
  EXPECT_EQ(content_of(folder.path("out")), kFalseResult);
  EXPECT_EQ(run_line(folder, "$S -o /dev/null in").output, "");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(Streams, AreSilentWhereTheResultGoesToAFile) {
  const TestFolder folder;
  folder.file("in", kFalse);
  folder.file("out", "stale");
  for (const char* line : {"$S -q -o out in", "$S -o out in"}) {
    const Ended ended = run_line(folder, line);
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output + ended.error, "");
    EXPECT_EQ(content_of(folder.path("out")), kFalseResult);
    EXPECT_EQ(folder.names(), Names({"in", "out"}));
  }
}

TEST(Streams, CarryNotesUnlessQuiet) {
  const TestFolder folder;
  folder.file("in", std::string("variable x;\n") + kFalse);
  const Ended talking = run_line(folder, "$S -o out in");
  EXPECT_EQ(talking.status, 0);
  EXPECT_EQ(talking.error,
            "in:2:10: note: 'x' is declared again with the same shape\n"
            "    2 | variable x;\n"
            "      |          ^\n"
            "in:1:10: note: the first declaration\n");
  const Ended quiet = run_line(folder, "$S -q -o out in");
  EXPECT_EQ(quiet.status, 0);
  EXPECT_EQ(quiet.error, "");
}

TEST(Streams, CarryWarningsAlways) {
  const TestFolder folder;
  folder.file("in", "variable x;\nx > 1;\nmaximize o = x;\nBIGM = 100;\n");
  for (const char* line : {"$S -q -o out in", "$S -o out in"}) {
    const Ended ended = run_line(folder, line);
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.error, "sdpsol: warning: the objective is limited only by BIGM\n");
    EXPECT_TRUE(
        has(content_of(folder.path("out")), "\nwarning: the objective is limited only by BIGM\n"));
  }
}

TEST(Streams, ShowNoProgressToAFile) {
  const TestFolder folder;
  folder.file("in", "variable x(1200,1);\nx > 0;\ns = sum(x);\ns < 10;\n");
  // Longer than a second: tests/command/terminal_test.cpp shows what a terminal gets.
  const Ended ended = run_line(folder, "{ sleep 1.1; cat in; } | $S -o out -");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.output + ended.error, "");
}

TEST(Definition, MayHaveLineEndsOfAnySystem) {
  const TestFolder folder;
  folder.file("in", "variable x;\r\nx > 1;\r\n1 > 2;\r\n");
  EXPECT_EQ(run_line(folder, "$S in").output, kFalseResult);
}

TEST(Definition, HasEachLineOfAReasonNamedOnce) {
  const TestFolder folder;
  folder.file("in", "variable x;\nx > 0; x < 0;\n");
  const Ended ended = run_line(folder, "$S in");
  EXPECT_TRUE(has(ended.output, "\nINFEASIBLE\ntwo bounds exclude each other, line 2\n"))
      << ended.output;
}

TEST(Definition, MayHaveAnyName) {
  const TestFolder folder;
  folder.file("in put.def", kFalse);
  folder.file("-q", kFalse);
  EXPECT_EQ(run_line(folder, "$S -o 'out put' 'in put.def'").status, 0);
  EXPECT_EQ(content_of(folder.path("out put")), kFalseResult);
  EXPECT_EQ(run_line(folder, "$S -- -q").output, kFalseResult);
}

}  // namespace
}  // namespace sdpsol
