#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <random>
#include <string>

#include "grasp/batch/batch.h"
#include "grasp/batch/test_batch.h"

namespace grasp {
namespace {

const std::string kInput = "a\nb\nbad\nc\nbad\n";
const std::string kWhole = obedient_answer(1, "a") + "\n" + obedient_answer(2, "b") +
                           "\n{\"line\":3,\"error\":\"this is bad\"}\n" + obedient_answer(4, "c") +
                           "\n{\"line\":5,\"error\":\"this is bad\"}\n";

TEST(Resume, ContinuesWhatWasCutOffAnywhere) {
  TestBatch batch;
  batch.options.resume = true;
  batch.set_input(kInput);
  for (std::size_t size = 0; size <= kWhole.size(); size += size % 4 == 0 ? 1 : 5) {
    batch.set_result(kWhole.substr(0, size));
    const BatchEnd end = batch.run(obedient_lines());
    EXPECT_EQ(end.status, kBatchHasErrors) << size;
    EXPECT_EQ(end.result, kWhole) << size;
    EXPECT_EQ(end.said, "grasp: 5 grasps: 3 FEASIBLE, 2 lines with errors\n") << size;
  }
}

TEST(Resume, DoesErrorsBehindTheLastAnswerAgain) {
  TestBatch batch;
  batch.options.resume = true;
  batch.set_input(kInput);
  batch.set_result(obedient_answer(1, "a") +
                   "\n{\"line\":2,\"error\":\"no space left\"}\n"
                   "{\"line\":3,\"error\":\"no space left\"}\n{\"line\":4,");
  const BatchEnd end = batch.run(obedient_lines());
  EXPECT_EQ(end.result, kWhole);
  EXPECT_EQ(end.said, "grasp: 5 grasps: 3 FEASIBLE, 2 lines with errors\n");
}

TEST(Resume, BeginsWhereThereIsNothing) {
  TestBatch batch;
  batch.options.resume = true;
  batch.set_input(kInput);
  EXPECT_EQ(batch.run(obedient_lines()).result, kWhole);
}

TEST(Resume, CountsLinesFromTheFirstOne) {
  TestBatch batch;
  batch.options.first_line = 7;
  batch.set_input(kInput);
  const std::string whole = batch.run(obedient_lines()).result;
  EXPECT_EQ(whole.substr(0, 9), "{\"line\":7");
  batch.options.resume = true;
  batch.set_result(whole.substr(0, whole.size() / 2));
  EXPECT_EQ(batch.run(obedient_lines()).result, whole);
}

// Nothing is done to the file.
void expect_refusal(const std::string& input, const std::string& result, const std::string& why,
                    bool times = false) {
  TestBatch batch;
  batch.options.resume = true;
  batch.options.times = times;
  batch.set_input(input);
  batch.set_result(result);
  const BatchEnd end = batch.run(obedient_lines());
  EXPECT_EQ(end.status, kBatchFileFailed);
  EXPECT_EQ(end.said, "grasp: error: " + why + "\n");
  EXPECT_EQ(end.result, result);
}

TEST(Resume, RefusesTheResultOfAnotherInput) {
  // The line before the error is the last one that can tell.
  expect_refusal("a\nB\nbad\nd\n", kWhole.substr(0, kWhole.find("{\"line\":4")) + "{\"li",
                 "result:2: line 2 of input has another answer now: the results belong to "
                 "another input or question");
  expect_refusal("good\n", "{\"line\":1,\"error\":\"this is bad\"}\n",
                 "result:1: line 1 of input has another answer now: the results belong to "
                 "another input or question");
}

TEST(Resume, RefusesResultsOfMoreLines) {
  const std::string why =
      "result has results of more lines than input has: it belongs to another input";
  expect_refusal("a\nb\n", kWhole, why);
  expect_refusal("a\nb\nbad\nc\nbad", kWhole + "{\"line\":6", why);
  expect_refusal("", kWhole, why);
  expect_refusal("a\nb\nbad\nc\n", kWhole, why);
}

TEST(Resume, RefusesWhatIsNoResult) {
  expect_refusal("a\n", "precious\n", "result:1: this is not the result of line 1 of a batch");
  expect_refusal("a\nb\n", obedient_answer(1, "a") + "\n" + obedient_answer(3, "b") + "\n",
                 "result:2: this is not the result of line 2 of a batch");
  expect_refusal("a\nb\n", "\n", "result:1: this is not the result of line 1 of a batch");
  expect_refusal("a\n", "{\"name\":\"a\",\"line\":1}\n",
                 "result:1: this is not the result of line 1 of a batch");
}

TEST(Resume, LeavesOutTimesWhereLinesCarryThem) {
  const auto with_times = [](const std::string& seconds) -> MakeAnswerLine {
    return [seconds](const PrintedText&) -> AnswerLine {
      return [seconds](std::uint64_t number, const std::string& text) -> LineAnswer {
        return {"FEASIBLE", "{\"line\":" + std::to_string(number) + ",\"text\":\"" + text +
                                "\",\"times\":{\"solving\":" + seconds + "}}"};
      };
    };
  };
  TestBatch batch;
  batch.options.resume = true;
  batch.options.times = true;
  batch.set_input("a\nb\n");
  batch.set_result("{\"line\":1,\"text\":\"a\",\"times\":{\"solving\":1.5}}\n");
  const BatchEnd end = batch.run(with_times("2.5"));
  EXPECT_EQ(end.status, kBatchDone);
  EXPECT_EQ(end.result,
            "{\"line\":1,\"text\":\"a\",\"times\":{\"solving\":1.5}}\n"
            "{\"line\":2,\"text\":\"b\",\"times\":{\"solving\":2.5}}\n");
  expect_refusal("a\nb\n", "{\"line\":1,\"text\":\"c\",\"times\":{\"solving\":1.5}}\n",
                 "result:1: line 1 of input has another answer now: the results belong to "
                 "another input or question",
                 true);
}

TEST(Resume, RefusesAFileThatAnotherRunWrites) {
  TestBatch batch;
  batch.options.resume = true;
  batch.set_input("a\nhang\n");
  const pid_t other = fork();
  if (other == 0) {
    const auto hangs = [](const PrintedText&) -> AnswerLine {
      return [](std::uint64_t number, const std::string& text) -> LineAnswer {
        if (text == "hang") usleep(60'000'000);
        return {"FEASIBLE", obedient_answer(number, text)};
      };
    };
    _exit(run_batch(batch.options, hangs, std::cerr));
  }
  while (!batch.folder().exists("result") || batch.result().empty()) usleep(1000);
  EXPECT_EQ(batch.run(obedient_lines()).said,
            "grasp: error: result is being written by another process\n");
  kill(other, SIGTERM);
  waitpid(other, nullptr, 0);
  EXPECT_EQ(batch.run(obedient_lines()).status, kBatchDone);
}

// A line in three takes a while, so that lines are answered out of order.
MakeAnswerLine uneven() {
  return [](const PrintedText&) -> AnswerLine {
    return [](std::uint64_t number, const std::string& text) -> LineAnswer {
      if (number % 3 == 0) usleep(2000);
      return {"FEASIBLE", obedient_answer(number, text)};
    };
  };
}

TEST(Resume, EndsWithTheSameBytesAfterAnyNumberOfKills) {
  TestBatch batch;
  batch.options.workers = 3;
  batch.options.quiet = true;
  batch.options.resume = true;
  std::string input;
  std::string expected;
  for (std::uint64_t i = 1; i <= 600; ++i) {
    // Long enough for buffers to be cut in the middle of a line.
    const std::string text(i * 37 % 900, static_cast<char>('a' + i % 26));
    input += "x" + text + "\n";
    expected += obedient_answer(i, "x" + text) + "\n";
  }
  batch.set_input(input);
  std::mt19937 random(20);
  int kills = 0;
  for (bool is_done = false; !is_done;) {
    const pid_t process = fork();
    if (process == 0) _exit(run_batch(batch.options, uneven(), std::cerr));
    // In the end it is left to finish, on a machine as slow as it may be.
    if (kills < 30) {
      usleep(static_cast<useconds_t>(random() % 20'000));
      kill(process, SIGKILL);
      ++kills;
    }
    int status = 0;
    waitpid(process, &status, 0);
    is_done = WIFEXITED(status);
    EXPECT_TRUE(!is_done || WEXITSTATUS(status) == 0);
    const std::string result = batch.folder().exists("result") ? batch.result() : "";
    EXPECT_TRUE(expected.compare(0, result.size(), result) == 0);
  }
  EXPECT_GT(kills, 5);
  EXPECT_TRUE(batch.result() == expected);
  for (int i = 0; i < 2000 && !batch.scratch_is_empty(); ++i) usleep(10'000);
  EXPECT_TRUE(batch.scratch_is_empty());
}

}  // namespace
}  // namespace grasp
