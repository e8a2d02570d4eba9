// The run cycle with real files and real commands.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "unit/sdpsol_wrapper.h"
#include "unit/test_support.h"

namespace {

using unit_test::CapturedOutput;
using unit_test::NotRoot;
using unit_test::TestFolder;
using namespace std::string_literals;

struct RunOutcome {
  int code = 0;
  std::string output;
};

RunOutcome run(sdpsol_wrapper& driver) {
  const CapturedOutput output;
  const int code = driver.run();
  return {code, output.text()};
}

// A record full of an earlier run, to see that a run clears it.
void fill_result(sdpsol_wrapper& driver) {
  driver.lastResult = {0, true, 5.0, {"old"}, {1.0}, 1};
}

void expect_failed(const sdpsol_wrapper& driver, int code) {
  EXPECT_EQ(driver.lastResult.errorCode, code);
  EXPECT_FALSE(driver.lastResult.feasible);
  EXPECT_EQ(driver.lastResult.objectiveValue, 0.0);
  EXPECT_TRUE(driver.lastResult.variableNames.empty());
  EXPECT_TRUE(driver.lastResult.variableValues.empty());
  EXPECT_EQ(driver.lastResult.valueCount, 0);
}

std::string write_report(const sdpsol_wrapper& driver) {
  return "----------------------------------------------\n"
         "____________writeDefinition NOT successful____\n"
         "check permissions of file " +
         driver.definitionFile +
         "\n"
         "----------------------------------------------\n";
}

std::string call_report(const sdpsol_wrapper& driver) {
  return "----------------------------------------------\n"
         "_____________callsdpsol NOT successful________\n"
         "check if commandline \"" +
         driver.commandLine +
         "\" \n"
         "is executable, your permissions on " +
         driver.definitionFile + " and " + driver.resultFile +
         "\n"
         "and look for preceding errors from sdpsol.\n"
         "Maybe there is no or an empty defintion in " +
         driver.definitionFile +
         "\n"
         ".----------------------------------------------\n";
}

std::string read_report(const sdpsol_wrapper& driver) {
  return "----------------------------------------------\n"
         "______________readResult NOT successful_______\n"
         "check permissions of file " +
         driver.resultFile +
         "\n"
         "----------------------------------------------\n";
}

std::string parse_report(const sdpsol_wrapper& driver) {
  return "----------------------------------------------\n"
         "_____________parseResult NOT successful_______\n"
         "check contents of file " +
         driver.definitionFile +
         "\n"
         "this may be a bug... \n"
         "----------------------------------------------\n";
}

TEST(Construction, JoinsTheCommandLineWithSingleBlanks) {
  const sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  EXPECT_EQ(driver.commandLine, "sdpsol -q -o sdpsol.out sdpsol.in");
  EXPECT_EQ(driver.definitionFile, "sdpsol.in");
  EXPECT_EQ(driver.resultFile, "sdpsol.out");
}

TEST(Construction, QuotesAndChangesNothing) {
  const sdpsol_wrapper driver("nice /opt/my solver --fast", "a b.in", "$HOME/c;d.out");
  EXPECT_EQ(driver.commandLine, "nice /opt/my solver --fast -q -o $HOME/c;d.out a b.in");
}

TEST(Construction, StartsEmptyAndNeverRun) {
  const sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  EXPECT_EQ(driver.definition, "");
  EXPECT_EQ(driver.resultText, "");
  expect_failed(driver, -1);
}

TEST(Construction, MakesPlainDataThatCopiesWhole) {
  static_assert(std::is_copy_constructible_v<sdpsol_wrapper>);
  static_assert(std::is_copy_assignable_v<sdpsol_wrapper>);
  static_assert(!std::is_polymorphic_v<sdpsol_wrapper>);
  static_assert(std::is_aggregate_v<sdpsol_wrapper::parameters>);
  sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  fill_result(driver);
  driver.definition = "x>0;";
  sdpsol_wrapper copy = driver;
  driver.definition = "changed";
  driver.lastResult.variableNames[0] = "changed";
  EXPECT_EQ(copy.definition, "x>0;");
  EXPECT_EQ(copy.lastResult.variableNames, std::vector<std::string>{"old"});
  EXPECT_EQ(copy.commandLine, "sdpsol -q -o sdpsol.out sdpsol.in");
}

TEST(PrintCommandValues, PrintsExactlyOneLine) {
  sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  const CapturedOutput output;
  driver.print_command_values();
  EXPECT_EQ(output.text(), "using sdpsol with: sdpsol -q -o sdpsol.out sdpsol.in\n");
}

TEST(WriteDefinition, WritesEveryByteAndNothingElse) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("def"), dir.path("res"));
  driver.definition = "a=1;\r\n\0\xff no line break"s;
  ASSERT_EQ(driver.writeDefinition(), 0);
  EXPECT_EQ(unit_test::content_of(dir.path("def")), driver.definition);
}

TEST(WriteDefinition, WritesAnEmptyFileForAnEmptyDefinition) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("def"), dir.path("res"));
  unit_test::write_file(dir.path("def"), "something longer from before");
  ASSERT_EQ(driver.writeDefinition(), 0);
  EXPECT_EQ(unit_test::content_of(dir.path("def")), "");
}

TEST(WriteDefinition, AnswersOneWhenItsFileCannotBeOpened) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("missing/def"), dir.path("res"));
  EXPECT_EQ(driver.writeDefinition(), 1);
}

TEST(WriteDefinition, DoesNotNoticeAFullDevice) {
  if (!std::filesystem::is_character_file("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  sdpsol_wrapper driver("true", "/dev/full", "unused");
  driver.definition = std::string(100000, 'x');
  EXPECT_EQ(driver.writeDefinition(), 0);
}

TEST(WriteDefinition, WritesAHundredMegabytes) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("def"), dir.path("res"));
  driver.definition.assign(100'000'000, 'x');
  driver.definition.back() = 'y';
  ASSERT_EQ(driver.writeDefinition(), 0);
  EXPECT_EQ(std::filesystem::file_size(dir.path("def")), 100'000'000U);
}

TEST(CallSdpsol, ReturnsTheStatusUndecoded) {
  const TestFolder dir;
  sdpsol_wrapper good = unit_test::scripted_driver(dir, "exit 0\n");
  EXPECT_EQ(good.callsdpsol(), 0);
  sdpsol_wrapper bad = unit_test::scripted_driver(dir, "exit 3\n");
  EXPECT_EQ(bad.callsdpsol(), 3 << 8);
}

TEST(CallSdpsol, PassesTheArgumentsInOrder) {
  const TestFolder dir;
  sdpsol_wrapper driver =
      unit_test::scripted_driver(dir, "echo \"$#|$1|$2|$3|$4\" > " + dir.path("args") + "\n");
  ASSERT_EQ(driver.callsdpsol(), 0);
  EXPECT_EQ(unit_test::content_of(dir.path("args")),
            "4|-q|-o|" + dir.path("sdpsol.out") + "|" + dir.path("sdpsol.in") + "\n");
}

TEST(ReadResult, ReadsEveryByteUnchanged) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("def"), dir.path("res"));
  const std::string text = "\n\n  a = 1\r\n\0\xff\x1a\t \n\n"s;
  unit_test::write_file(dir.path("res"), text);
  ASSERT_EQ(driver.readResult(), 0);
  EXPECT_EQ(driver.resultText, text);
}

TEST(ReadResult, ReadsAnEmptyFileAsAnEmptyText) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("def"), dir.path("res"));
  unit_test::write_file(dir.path("res"), "");
  driver.resultText = "from before";
  EXPECT_EQ(driver.readResult(), 0);
  EXPECT_EQ(driver.resultText, "");
}

TEST(ReadResult, KeepsTheOldTextWhenTheFileIsMissing) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("def"), dir.path("res"));
  driver.resultText = "from before";
  fill_result(driver);
  EXPECT_EQ(driver.readResult(), 1);
  EXPECT_EQ(driver.resultText, "from before");
  EXPECT_EQ(driver.lastResult.errorCode, 0);
  EXPECT_EQ(driver.lastResult.valueCount, 1);
}

TEST(ReadResult, ReadsADirectoryAsEmptyBecauseItOpens) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("def"), dir.path(""));
  driver.resultText = "from before";
  EXPECT_EQ(driver.readResult(), 0);
  EXPECT_EQ(driver.resultText, "");
}

TEST(ReadResult, ReadsAFileWithoutASize) {
  if (!std::filesystem::exists("/proc/self/status")) GTEST_SKIP() << "no /proc here";
  sdpsol_wrapper driver("true", "unused", "/proc/self/status");
  ASSERT_EQ(driver.readResult(), 0);
  EXPECT_EQ(driver.resultText.substr(0, 5), "Name:");
}

TEST(Run, WritesCallsReadsAndParses) {
  const TestFolder dir;
  sdpsol_wrapper driver =
      unit_test::scripted_driver(dir,
                                 "cp \"$4\" \"$4.seen\"\n"
                                 "printf '*** Objective value\\nobjective = 3.25\\n\\n*** "
                                 "Variables\\nx = 2.5\\n\\n' > \"$3\"\n");
  driver.definition = "variable x;\nx>0;\n";
  const RunOutcome outcome = run(driver);
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(unit_test::content_of(dir.path("sdpsol.in.seen")), "variable x;\nx>0;\n");
  EXPECT_EQ(driver.definition, "variable x;\nx>0;\n");
  EXPECT_EQ(driver.lastResult.errorCode, 0);
  EXPECT_TRUE(driver.lastResult.feasible);
  EXPECT_EQ(driver.lastResult.objectiveValue, 3.25);
  EXPECT_EQ(driver.lastResult.variableNames, std::vector<std::string>{"x"});
  EXPECT_EQ(driver.lastResult.variableValues, std::vector<double>{2.5});
  EXPECT_EQ(driver.lastResult.valueCount, 1);
}

TEST(Run, CallsTheCommandForAnEmptyDefinitionToo) {
  const TestFolder dir;
  sdpsol_wrapper driver = unit_test::scripted_driver(
      dir, "test -f \"$4\" && ! test -s \"$4\" && cp " + dir.path("answer") + " \"$3\"\n");
  unit_test::write_file(dir.path("answer"), unit_test::kFeasible);
  EXPECT_EQ(run(driver).code, 0);
  EXPECT_TRUE(driver.lastResult.feasible);
}

TEST(Run, AnswersOneWhenTheDirectoryOfTheDefinitionIsMissing) {
  const TestFolder dir;
  sdpsol_wrapper driver("touch " + dir.path("called") + " ;", dir.path("missing/def"),
                        dir.path("res"));
  fill_result(driver);
  const RunOutcome outcome = run(driver);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.output, write_report(driver));
  expect_failed(driver, 1);
  EXPECT_FALSE(std::filesystem::exists(dir.path("called")));
}

TEST(Run, AnswersOneWhenTheDirectoryMayNotBeWritten) {
  const NotRoot not_root;
  if (geteuid() == 0) GTEST_SKIP() << "root may write into read-only directories";
  const TestFolder dir;
  const std::string closed = dir.path("closed");
  ASSERT_EQ(mkdir(closed.c_str(), 0555), 0);
  sdpsol_wrapper driver("true", closed + "/def", dir.path("res"));
  const RunOutcome outcome = run(driver);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.output, write_report(driver));
  expect_failed(driver, 1);
}

TEST(Run, AnswersOneWhenTheDefinitionFileIsADirectory) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path(""), dir.path("res"));
  const RunOutcome outcome = run(driver);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.output, write_report(driver));
}

TEST(Run, AnswersTwoWhenTheCommandDoesNotExist) {
  const TestFolder dir;
  sdpsol_wrapper driver("exec 2>/dev/null; " + dir.path("no-such-command"), dir.path("def"),
                        dir.path("res"));
  fill_result(driver);
  const RunOutcome outcome = run(driver);
  EXPECT_EQ(outcome.code, 2);
  EXPECT_EQ(outcome.output, call_report(driver));
  expect_failed(driver, 2);
}

TEST(Run, AnswersTwoWhenTheCommandFailsAfterAGoodResult) {
  const TestFolder dir;
  unit_test::write_file(dir.path("answer"), unit_test::kFeasible);
  sdpsol_wrapper driver =
      unit_test::scripted_driver(dir, "cp " + dir.path("answer") + " \"$3\"\nexit 1\n");
  const RunOutcome outcome = run(driver);
  EXPECT_EQ(outcome.code, 2);
  EXPECT_EQ(outcome.output, call_report(driver));
  EXPECT_EQ(unit_test::content_of(driver.resultFile), unit_test::kFeasible);
  EXPECT_EQ(driver.resultText, "");
  expect_failed(driver, 2);
}

TEST(Run, AnswersTwoWhenTheCommandIsKilled) {
  const TestFolder dir;
  sdpsol_wrapper driver = unit_test::scripted_driver(dir, "kill -9 $$\n");
  EXPECT_EQ(run(driver).code, 2);
  expect_failed(driver, 2);
}

// A host that ignores the end of its children makes every status unknown: -1.
TEST(Run, AnswersTwoWhenTheStatusOfTheCommandIsLost) {
  const TestFolder dir;
  sdpsol_wrapper driver = unit_test::answering_driver(dir, unit_test::kFeasible);
  const auto before = std::signal(SIGCHLD, SIG_IGN);
  const int status = driver.callsdpsol();
  const RunOutcome outcome = run(driver);
  std::signal(SIGCHLD, before);
  EXPECT_EQ(status, -1);
  EXPECT_EQ(outcome.code, 2);
  EXPECT_EQ(outcome.output, call_report(driver));
  expect_failed(driver, 2);
}

TEST(Run, AnswersThreeWhenTheCommandWritesNoResult) {
  const TestFolder dir;
  sdpsol_wrapper driver = unit_test::scripted_driver(dir, "exit 0\n");
  driver.resultText = "from before";
  fill_result(driver);
  const RunOutcome outcome = run(driver);
  EXPECT_EQ(outcome.code, 3);
  EXPECT_EQ(outcome.output, read_report(driver));
  EXPECT_EQ(driver.resultText, "from before");
  expect_failed(driver, 3);
}

TEST(Run, ReadsAStaleResultWhenTheCommandWritesNone) {
  const TestFolder dir;
  sdpsol_wrapper driver = unit_test::scripted_driver(dir, "exit 0\n");
  unit_test::write_file(driver.resultFile, unit_test::kFeasible);
  const RunOutcome outcome = run(driver);
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.output, "");
  EXPECT_TRUE(driver.lastResult.feasible);
  EXPECT_EQ(driver.lastResult.valueCount, 1);
}

TEST(Run, LetsTheErrorOfAnEmptyResultPassAndStaysAtHundred) {
  const TestFolder dir;
  sdpsol_wrapper driver = unit_test::answering_driver(dir, "");
  fill_result(driver);
  const CapturedOutput output;
  try {
    driver.run();
    FAIL() << "nothing was thrown";
  } catch (const std::out_of_range& error) {
    EXPECT_EQ(std::string(error.what()).substr(0, 20), "basic_string::substr");
  }
  EXPECT_EQ(output.text(), "");
  EXPECT_EQ(driver.lastResult.errorCode, 100);
  EXPECT_TRUE(driver.lastResult.feasible);
  EXPECT_TRUE(driver.lastResult.variableValues.empty());
}

TEST(Run, LetsTheErrorOfADirectoryAsResultPass) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("def"), dir.path(""));
  EXPECT_THROW(driver.run(), std::out_of_range);
  EXPECT_EQ(driver.lastResult.errorCode, 100);
}

TEST(Run, RecoversAfterAnAbandonedRun) {
  const TestFolder dir;
  sdpsol_wrapper driver = unit_test::answering_driver(dir, "");
  EXPECT_THROW(driver.run(), std::out_of_range);
  unit_test::write_file(dir.path("answer"), unit_test::kInfeasible);
  EXPECT_EQ(driver.run(), 0);
  EXPECT_EQ(driver.lastResult.errorCode, 0);
  EXPECT_FALSE(driver.lastResult.feasible);
}

TEST(Run, AnswersFourWhenTheResultSendsTheScanRoundInACircle) {
  const TestFolder dir;
  sdpsol_wrapper driver = unit_test::answering_driver(dir, "garbage\nwithout any marker\n");
  const RunOutcome outcome = run(driver);
  EXPECT_EQ(outcome.code, 4);
  EXPECT_EQ(outcome.output, parse_report(driver));
  EXPECT_EQ(driver.lastResult.errorCode, 4);
  EXPECT_FALSE(driver.lastResult.feasible);
}

TEST(Run, SpeaksBeforeTheCommandDoes) {
  const TestFolder dir;
  // The real standard output, as a file: what was said first must stand first.
  const std::string said = dir.path("said");
  std::fflush(stdout);
  std::cout.flush();
  const int saved = dup(STDOUT_FILENO);
  ASSERT_NE(std::freopen(said.c_str(), "w", stdout), nullptr);
  sdpsol_wrapper driver("exec 2>/dev/null; echo the command ;", dir.path("def"), dir.path("res"));
  driver.print_command_values();
  // A command of the host's own comes after what the driver has said.
  const int others_code = std::system("echo another command");
  std::cout << "an unflushed word of the host\n";
  const int code = driver.run();
  std::fflush(stdout);
  ASSERT_GE(dup2(saved, STDOUT_FILENO), 0);
  close(saved);
  EXPECT_EQ(others_code, 0);
  EXPECT_EQ(code, 2);
  const std::string text = unit_test::content_of(said);
  const std::string expected = "using sdpsol with: " + driver.commandLine +
                               "\nanother command\nan unflushed word of the host\nthe command\n" +
                               call_report(driver);
  EXPECT_EQ(text, expected);
}

TEST(Run, HandlesAResultOfAHundredMegabytes) {
  const TestFolder dir;
  sdpsol_wrapper driver = unit_test::scripted_driver(dir, "exit 0\n");
  std::string text = "*** Objective value\nobjective = 1\n\n*** Variables\nX =\n[\n";
  const std::string element = "  0.12345678901234567,\n";
  const std::size_t count = 100'000'000 / element.size();
  text.reserve(100'001'000);
  for (std::size_t i = 0; i < count; ++i) text += element;
  text += "]\n\ny = 2\n\n";
  unit_test::write_file(driver.resultFile, text);
  EXPECT_EQ(run(driver).code, 0);
  EXPECT_EQ(driver.resultText.size(), text.size());
  ASSERT_EQ(driver.lastResult.variableValues.size(), count + 1);
  EXPECT_EQ(driver.lastResult.variableNames[count - 1], "X_" + std::to_string(count - 1));
  EXPECT_EQ(driver.lastResult.variableValues[count - 1], 0.12345678901234567);
  EXPECT_EQ(driver.lastResult.variableNames[count], "y");
}

}  // namespace
