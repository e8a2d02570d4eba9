#include "grasp/process/worker.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/test_folder.h"

namespace grasp {
namespace {

namespace fs = std::filesystem;
using Kind = WorkerReport::Kind;
using test_support::TestFolder;

// Scratch folders are made below a folder of the test's own, whose name has a blank.
class OfWorkers : public testing::Test {
 protected:
  OfWorkers() {
    fs::create_directory(scratch_);
    setenv("TMPDIR", scratch_.c_str(), 1);
  }
  ~OfWorkers() override { unsetenv("TMPDIR"); }

  [[nodiscard]] bool scratch_is_empty() const { return fs::is_empty(scratch_); }

  // For what other processes do, as long as a loaded machine may need.
  static bool eventually(const std::function<bool()>& holds) {
    for (int i = 0; i < 2000; ++i) {
      if (holds()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }

  static WorkerReport next_report(Worker& worker) {
    for (int i = 0; i < 2000; ++i) {
      if (auto report = worker.advance()) return *report;
      pollfd event = {worker.descriptor(), worker.awaited_events(), 0};
      poll(&event, 1, 10);
    }
    throw std::runtime_error("the worker says nothing");
  }

  static std::string reply(Worker& worker, const std::string& request) {
    worker.ask(request);
    const WorkerReport report = next_report(worker);
    return (report.kind == Kind::kAnswer ? "" : "not an answer: ") + report.text;
  }

  TestFolder folder_;
  fs::path scratch_ = folder_.path("a scratch");
  zelhost::HeldSignals signals_;
};

// Does what it is asked to.
MakeAnswerer obedient() {
  return [](const PrintedText&) -> Answerer {
    return [count = 0](const std::string& request) mutable -> std::string {
      ++count;
      if (request == "count") return std::to_string(count);
      if (request == "folder") return fs::current_path().string();
      if (request == "process group") return std::to_string(getpgrp());
      if (request == "crash") {
        std::signal(SIGSEGV, SIG_DFL);
        std::cerr << "it hurts" << std::endl;
        std::raise(SIGSEGV);
      }
      if (request == "exit") _exit(3);
      if (request == "throw") throw std::runtime_error("no");
      if (request == "print and throw") {
        std::printf("one\n");
        std::cerr << "two\n";
        if (std::system("echo three; echo four >&2") != 0) return "no shell";
        throw std::runtime_error("no");
      }
      if (request == "print") {
        std::cout << std::string(100'000, 'x') << std::endl;
        return std::to_string(fs::file_size("printed"));
      }
      if (request == "printed") return std::to_string(fs::file_size("printed"));
      if (request == "sleep") return std::to_string(std::system("sleep 600"));
      if (request == "doze") return std::to_string(std::system("sleep 0.3"));
      if (request == "leave") return std::to_string(std::system("sleep 600 & echo $! >../left"));
      if (request == "descriptors") {
        std::string open;
        for (int each = 0; each < 1000; ++each)
          if (fcntl(each, F_GETFD) >= 0) open += " " + std::to_string(each);
        return open;
      }
      if (request == "input") return std::to_string(std::getchar());
      return request + request;
    };
  };
}

TEST_F(OfWorkers, AnswerTextsWithTexts) {
  Worker worker(obedient(), signals_);
  EXPECT_EQ(next_report(worker), (WorkerReport{Kind::kReady, ""}));
  EXPECT_EQ(reply(worker, "ab"), "abab");
  EXPECT_EQ(reply(worker, ""), "");
  EXPECT_EQ(reply(worker, std::string("\0\n", 2)), std::string("\0\n\0\n", 4));
  EXPECT_EQ(reply(worker, "count"), "4");
}

TEST_F(OfWorkers, TakeAndGiveMoreThanASocketHolds) {
  Worker worker(obedient(), signals_);
  EXPECT_EQ(next_report(worker).kind, Kind::kReady);
  const std::string large(5'000'000, 'a');
  EXPECT_TRUE(reply(worker, large) == large + large);
  EXPECT_EQ(reply(worker, "b"), "bb");
}

TEST_F(OfWorkers, HaveTheirOwnProcessGroupAndFolder) {
  Worker one(obedient(), signals_);
  Worker two(obedient(), signals_);
  EXPECT_EQ(next_report(one).kind, Kind::kReady);
  EXPECT_EQ(next_report(two).kind, Kind::kReady);
  EXPECT_EQ(reply(one, "process group"), std::to_string(one.process()));
  const fs::path first = reply(one, "folder");
  const fs::path second = reply(two, "folder");
  EXPECT_NE(first, second);
  EXPECT_EQ(first.parent_path(), scratch_);
  EXPECT_EQ(first.filename().string().substr(0, 6), "grasp-");
}

TEST_F(OfWorkers, InheritNothingButTheirSocket) {
  const Worker other(obedient(), signals_);
  Worker worker(obedient(), signals_);
  EXPECT_EQ(next_report(worker).kind, Kind::kReady);
  const std::string open = reply(worker, "descriptors");
  EXPECT_EQ(open.substr(0, 6), " 0 1 2");
  EXPECT_EQ(open.find(' ', 7), std::string::npos) << open;
  EXPECT_EQ(reply(worker, "input"), "-1");
}

TEST_F(OfWorkers, LeaveNothingBehind) {
  {
    Worker worker(obedient(), signals_);
    EXPECT_EQ(next_report(worker).kind, Kind::kReady);
    EXPECT_FALSE(scratch_is_empty());
  }
  EXPECT_TRUE(scratch_is_empty());
}

TEST_F(OfWorkers, TellErrorsWithWhatWasPrinted) {
  Worker worker(obedient(), signals_);
  EXPECT_EQ(next_report(worker).kind, Kind::kReady);
  worker.ask("throw");
  EXPECT_EQ(next_report(worker), (WorkerReport{Kind::kError, "no"}));
  worker.ask("print and throw");
  EXPECT_EQ(next_report(worker).text, "no (printed: one two three four)");
  worker.ask("throw");
  EXPECT_EQ(next_report(worker), (WorkerReport{Kind::kError, "no"}));
}

TEST_F(OfWorkers, EmptyWhatTheyPrintedAfterEachAnswer) {
  Worker worker(obedient(), signals_);
  EXPECT_EQ(next_report(worker).kind, Kind::kReady);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(reply(worker, "print"), "100001");
  EXPECT_EQ(reply(worker, "printed"), "0");
}

TEST_F(OfWorkers, SayWhyTheyCannotBegin) {
  Worker worker(
      [](const PrintedText&) -> Answerer {
        std::cerr << "looked everywhere\n";
        throw std::runtime_error("there is no plug-in");
      },
      signals_);
  EXPECT_EQ(next_report(worker),
            (WorkerReport{Kind::kNotReady, "there is no plug-in (printed: looked everywhere)"}));
}

TEST_F(OfWorkers, AreMissedWhenTheyDie) {
  Worker crashed(obedient(), signals_);
  EXPECT_EQ(next_report(crashed).kind, Kind::kReady);
  crashed.ask("crash");
  EXPECT_EQ(
      next_report(crashed),
      (WorkerReport{Kind::kDied, "killed by signal 11 (Segmentation fault) (printed: it hurts)"}));
  EXPECT_FALSE(crashed.advance());
  EXPECT_TRUE(scratch_is_empty());

  Worker ended(obedient(), signals_);
  EXPECT_EQ(next_report(ended).kind, Kind::kReady);
  ended.ask("exit");
  EXPECT_EQ(next_report(ended), (WorkerReport{Kind::kDied, "the process ended with status 3"}));
  EXPECT_TRUE(scratch_is_empty());
}

TEST_F(OfWorkers, EndWithTheProgramThatTheyWaitFor) {
  const auto start = std::chrono::steady_clock::now();
  {
    Worker worker(obedient(), signals_);
    EXPECT_EQ(next_report(worker).kind, Kind::kReady);
    worker.ask("sleep");
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
  EXPECT_TRUE(scratch_is_empty());
}

TEST_F(OfWorkers, EndWithWhatTheyHaveLeftRunning) {
  pid_t left = 0;
  {
    Worker worker(obedient(), signals_);
    EXPECT_EQ(next_report(worker).kind, Kind::kReady);
    EXPECT_EQ(reply(worker, "leave"), "0");
    left = std::stoi(test_support::content_of((scratch_ / "left").string()));
    EXPECT_EQ(kill(left, 0), 0);
  }
  // Gone, or dead and not yet reaped by whoever has inherited it.
  EXPECT_TRUE(eventually([left] {
    if (kill(left, 0) != 0) return true;
    const std::string state = test_support::content_of("/proc/" + std::to_string(left) + "/stat");
    return state.find(") Z ") != std::string::npos;
  }));
}

TEST_F(OfWorkers, SeeThatTheirParentIsKilled) {
  std::array<int, 2> ends = {};
  ASSERT_EQ(pipe(ends.data()), 0);
  const pid_t parent = fork();
  if (parent == 0) {
    Worker idle(obedient(), signals_);
    Worker busy(obedient(), signals_);
    next_report(busy);
    busy.ask("doze");
    [[maybe_unused]] const auto said = write(ends[1], "x", 1);
    for (;;) pause();
  }
  char byte = 0;
  ASSERT_EQ(::read(ends[0], &byte, 1), 1);
  EXPECT_FALSE(scratch_is_empty());
  kill(parent, SIGKILL);
  waitpid(parent, nullptr, 0);
  close(ends[0]);
  close(ends[1]);
  EXPECT_TRUE(eventually([this] { return scratch_is_empty(); }));
}

}  // namespace
}  // namespace grasp
