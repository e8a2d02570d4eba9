#include "grasp/batch/batch.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <iostream>
#include <new>
#include <stdexcept>
#include <string>

#include "grasp/batch/test_batch.h"
#include "host/error.h"

namespace grasp {
namespace {

using test_support::content_of;

std::string numbered_lines(int count) {
  std::string text;
  for (int i = 1; i <= count; ++i) text += "text " + std::to_string(i) + "\n";
  return text;
}

std::string numbered_answers(int count) {
  std::string text;
  for (int i = 1; i <= count; ++i)
    text += obedient_answer(static_cast<std::uint64_t>(i), "text " + std::to_string(i)) + "\n";
  return text;
}

TEST(RunBatch, AnswersALineWithALine) {
  TestBatch batch;
  batch.set_input("a\nb");
  const BatchEnd end = batch.run(obedient_lines());
  EXPECT_EQ(end.status, kBatchDone);
  EXPECT_EQ(end.result, obedient_answer(1, "a") + "\n" + obedient_answer(2, "b") + "\n");
  EXPECT_EQ(end.said, "grasp: 2 grasps: 2 FEASIBLE\n");
  EXPECT_TRUE(batch.scratch_is_empty());
}

TEST(RunBatch, HasNoLinesForNone) {
  TestBatch batch;
  batch.set_input("");
  const BatchEnd end = batch.run(obedient_lines());
  EXPECT_EQ(end.status, kBatchDone);
  EXPECT_EQ(end.result, "");
  EXPECT_EQ(end.said, "grasp: 0 grasps\n");
}

TEST(RunBatch, KeepsTheOrderWhateverTakesLonger) {
  TestBatch batch;
  batch.options.workers = 4;
  batch.options.quiet = true;
  batch.set_input("slow\na\nb\nslow\nc\n" + numbered_lines(500));
  const BatchEnd end = batch.run(obedient_lines());
  EXPECT_EQ(end.status, kBatchDone);
  EXPECT_EQ(end.said, "");
  std::uint64_t number = 0;
  for (std::size_t at = 0; at < end.result.size(); at = end.result.find('\n', at) + 1) {
    const std::string begin = "{\"line\":" + std::to_string(++number) + ",";
    EXPECT_EQ(end.result.substr(at, begin.size()), begin);
  }
  EXPECT_EQ(number, 505U);
}

TEST(RunBatch, HasALineForEachErrorAndGoesOn) {
  TestBatch batch;
  batch.options.workers = 2;
  batch.options.first_line = 11;
  batch.set_input("bad\n\n  \t\nthrow\ndie\ndie once\n" + std::string(kLongestInputLine + 1, 'x') +
                  "\r\ninfeasible\na\r\n");
  const BatchEnd end = batch.run(obedient_lines());
  EXPECT_EQ(end.status, kBatchHasErrors);
  EXPECT_EQ(end.result,
            "{\"line\":11,\"error\":\"this is bad\"}\n"
            "{\"line\":12,\"error\":\"the line is empty\"}\n"
            "{\"line\":13,\"error\":\"the line is empty\"}\n"
            "{\"line\":14,\"error\":\"thrown\"}\n"
            "{\"line\":15,\"error\":\"two workers died of this line; the second: killed by "
            "signal 9 (Killed)\"}\n" +
                obedient_answer(16, "die once") +
                "\n{\"line\":17,\"error\":\"the line is longer than 16 MiB\"}\n"
                "{\"line\":18,\"verdict\":\"INFEASIBLE\"}\n" +
                obedient_answer(19, "a") + "\n");
  EXPECT_EQ(end.said, "grasp: 9 grasps: 2 FEASIBLE, 1 INFEASIBLE, 6 lines with errors\n");
}

// What a run throws whose workers cannot begin.
std::string refusal(const TestBatch& batch, const MakeAnswerLine& make) {
  try {
    return "nothing thrown, but: " + batch.run(make).said;
  } catch (const zelhost::HostError& error) {
    return error.what();
  }
}

TEST(RunBatch, EndsWhereNoWorkerCanBegin) {
  TestBatch batch;
  batch.set_input("a\n");
  EXPECT_EQ(
      refusal(batch,
              [](const PrintedText&) -> AnswerLine { throw std::runtime_error("no plug-in"); }),
      "no plug-in");
  batch.remove_result();
  EXPECT_EQ(refusal(batch, [](const PrintedText&) -> AnswerLine { _exit(7); }),
            "no worker can begin; the last one: the process ended with status 7");
  EXPECT_TRUE(batch.scratch_is_empty());
}

TEST(RunBatch, KeepsAFileThatIsThere) {
  TestBatch batch;
  batch.set_input("a\n");
  batch.set_result("precious");
  const BatchEnd end = batch.run(obedient_lines());
  EXPECT_EQ(end.status, kBatchFileFailed);
  EXPECT_EQ(end.said, "grasp: error: result exists; --resume continues it\n");
  EXPECT_EQ(end.result, "precious");
}

TEST(RunBatch, SaysWhatCannotBeReadOrWritten) {
  TestBatch batch;
  BatchEnd end = batch.run(obedient_lines());
  EXPECT_EQ(end.status, kBatchFileFailed);
  EXPECT_EQ(end.said, "grasp: error: input: No such file or directory\n");
  batch.set_input(numbered_lines(100));
  batch.options.output = "/dev/full";
  end = batch.run(obedient_lines());
  EXPECT_EQ(end.status, kBatchFileFailed);
  EXPECT_EQ(end.said, "grasp: error: /dev/full: No space left on device\n");
  batch.options.output = batch.folder().path("nowhere/result");
  end = batch.run(obedient_lines());
  EXPECT_EQ(end.status, kBatchFileFailed);
  EXPECT_EQ(end.said, "grasp: error: nowhere/result: No such file or directory\n");
  EXPECT_TRUE(batch.scratch_is_empty());
}

// What processes share.
struct Board {
  std::atomic<std::uint64_t> highest = 0;
  std::atomic<std::uint64_t> highest_before_first = 0;
};

TEST(RunBatch, DoesNotRunAwayFromASlowLine) {
  TestBatch batch;
  batch.options.workers = 2;
  batch.options.quiet = true;
  batch.set_input(numbered_lines(3000));
  void* const shared =
      mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(shared, MAP_FAILED);
  auto* const board = new (shared) Board;
  const BatchEnd end = batch.run([board](const PrintedText&) -> AnswerLine {
    return [board](std::uint64_t number, const std::string& text) -> LineAnswer {
      if (number > board->highest) board->highest = number;
      if (number == 1) {
        // As far as the others come while this line takes its time.
        for (std::uint64_t seen = 0; seen != board->highest || seen < 2;) {
          seen = board->highest;
          usleep(100'000);
        }
        board->highest_before_first = board->highest.load();
      }
      return {"FEASIBLE", obedient_answer(number, text)};
    };
  });
  EXPECT_EQ(board->highest_before_first, 1024U);
  EXPECT_EQ(end.status, kBatchDone);
  EXPECT_TRUE(end.result == numbered_answers(3000));
  munmap(shared, sizeof(Board));
}

// Of this process, in kilobytes.
long peak_memory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long kilobytes = 0;
    if (word == "VmHWM:" && status >> kilobytes) return kilobytes;
  }
  return 0;
}

TEST(RunBatch, NeedsNoMoreMemoryForMoreLines) {
#ifdef SDPSOL_SANITIZE
  GTEST_SKIP() << "the sanitizer keeps what was freed";
#endif
  const auto peak = [](int lines) {
    TestBatch batch;
    batch.options.quiet = true;
    // Not in memory, which would be that of the process below too.
    std::ofstream input(batch.options.input);
    for (int i = 0; i < lines; ++i) input << std::string(2000, 'x') << '\n';
    input.close();
    const std::string note = batch.folder().path("peak");
    const pid_t child = fork();
    if (child == 0) {
      const bool is_done = run_batch(batch.options, obedient_lines(), std::cerr) == kBatchDone;
      std::ofstream(note) << peak_memory();
      _exit(is_done ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return std::stol(content_of(note));
  };
  const long few = peak(1500);
  const long many = peak(6000);
  EXPECT_GT(few, 0);
  // The lines that were more take 18 megabytes with their answers.
  EXPECT_LT(many - few, 4000);
}

TEST(RunBatch, DiesByTheSignalAndTakesTheWorkersAlong) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    TestBatch batch;
    batch.options.workers = 2;
    batch.set_input("a\nhang\nhang\n");
    const pid_t process = fork();
    if (process == 0) {
      std::signal(signal, SIG_DFL);
      const auto hangs = [](const PrintedText&) -> AnswerLine {
        return [](std::uint64_t number, const std::string& text) -> LineAnswer {
          if (text == "hang") std::exit(std::system("sleep 600"));
          return {"FEASIBLE", obedient_answer(number, text)};
        };
      };
      _exit(run_batch(batch.options, hangs, std::cerr));
    }
    const std::string first = obedient_answer(1, "a") + "\n";
    while (!batch.folder().exists("result") || batch.result() != first) usleep(5000);
    kill(process, signal);
    int status = 0;
    waitpid(process, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << signal;
    EXPECT_EQ(WTERMSIG(status), signal);
    EXPECT_TRUE(batch.scratch_is_empty());
    EXPECT_EQ(batch.result(), first);
  }
}

}  // namespace
}  // namespace grasp
