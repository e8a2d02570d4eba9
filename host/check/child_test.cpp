#include "host/check/child.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace zelcheck {
namespace {

namespace fs = std::filesystem;

using Texts = std::vector<std::string>;

// As much as a loaded machine may need.
constexpr double kLong = 60;

TEST(RunInChild, HandsOverComplaintsWithWhatTheWorkWasAt) {
  const ChildEnd end = run_in_child(
      [](const Notes& notes) {
        notes.complain("too cold");
        notes.at("in summer");
        notes.complain("too warm");
        notes.fact("it is dry");
        notes.at("");
        notes.complain("too far");
      },
      kLong);
  EXPECT_EQ(end.complaints, (Texts{"too cold", "in summer: too warm", "too far"}));
  EXPECT_EQ(end.facts, Texts{"it is dry"});
  EXPECT_FALSE(end.hung);
}

TEST(RunInChild, HasNothingToSayAboutWorkThatReturns) {
  const ChildEnd end = run_in_child([](const Notes&) {}, kLong);
  EXPECT_EQ(end.complaints, Texts{});
  EXPECT_EQ(end.facts, Texts{});
  EXPECT_EQ(end.output, "");
  EXPECT_FALSE(end.hung);
}

TEST(RunInChild, LeavesThisProcessAsItWas) {
  int number = 1;
  sigset_t before;
  sigprocmask(SIG_SETMASK, nullptr, &before);
  const fs::path folder = fs::current_path();
  run_in_child([&number](const Notes&) { number = 2; }, kLong);
  sigset_t after;
  sigprocmask(SIG_SETMASK, nullptr, &after);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(fs::current_path(), folder);
  for (const int each : {SIGINT, SIGTERM, SIGHUP, SIGCHLD})
    EXPECT_EQ(sigismember(&before, each), sigismember(&after, each)) << each;
}

TEST(RunInChild, TellsWhichSignalKilledTheWork) {
  const ChildEnd crash = run_in_child(
      [](const Notes& notes) {
        notes.complain("it is slippery");
        notes.at("on the bridge");
        // A sanitizer would have a word to say.
        std::signal(SIGSEGV, SIG_DFL);
        std::raise(SIGSEGV);
      },
      kLong);
  EXPECT_EQ(crash.complaints,
            (Texts{"it is slippery", "on the bridge: killed by signal 11 (Segmentation fault)"}));
  const ChildEnd kill = run_in_child([](const Notes&) { std::raise(SIGKILL); }, kLong);
  EXPECT_EQ(kill.complaints, Texts{"killed by signal 9 (Killed)"});
}

TEST(RunInChild, TellsWithWhichStatusTheWorkEndedTheProcess) {
  const ChildEnd three = run_in_child([](const Notes&) { _exit(3); }, kLong);
  EXPECT_EQ(three.complaints, Texts{"the process ended with status 3"});
  const ChildEnd zero = run_in_child([](const Notes&) { _exit(0); }, kLong);
  EXPECT_EQ(zero.complaints, Texts{"the process ended with status 0"});
}

TEST(RunInChild, LetsWorkThatIsDoneEndTheProcess) {
  const ChildEnd end = run_in_child(
      [](const Notes& notes) {
        notes.fact("all said");
        notes.done();
        _exit(0);
      },
      kLong);
  EXPECT_EQ(end.complaints, Texts{});
  EXPECT_EQ(end.facts, Texts{"all said"});
}

TEST(RunInChild, TellsHowTheProcessEndedAlsoWhereTheWorkWasDone) {
  const ChildEnd crash = run_in_child(
      [](const Notes& notes) {
        notes.at("on the way home");
        notes.done();
        std::raise(SIGKILL);
      },
      kLong);
  EXPECT_EQ(crash.complaints, Texts{"on the way home: killed by signal 9 (Killed)"});
  const ChildEnd three = run_in_child(
      [](const Notes& notes) {
        notes.done();
        _exit(3);
      },
      kLong);
  EXPECT_EQ(three.complaints, Texts{"the process ended with status 3"});
}

TEST(RunInChild, TellsWhatTheWorkThrew) {
  const ChildEnd error = run_in_child(
      [](const Notes& notes) {
        notes.at("while reading");
        throw std::runtime_error("no such page");
      },
      kLong);
  EXPECT_EQ(error.complaints, Texts{"while reading: threw: no such page"});
  const ChildEnd number = run_in_child([](const Notes&) { throw 7; }, kLong);
  EXPECT_EQ(number.complaints, Texts{"threw what is no std::exception"});
}

TEST(RunInChild, EndsWorkThatTakesTooLong) {
  const auto start = std::chrono::steady_clock::now();
  const ChildEnd end = run_in_child(
      [](const Notes& notes) {
        notes.at("in bed");
        for (;;) pause();
      },
      0.25);
  EXPECT_EQ(end.complaints, Texts{"in bed: did not end within 0.25 s"});
  EXPECT_TRUE(end.hung);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

TEST(RunInChild, EndsWorkThatPrintsForEver) {
  const ChildEnd end = run_in_child(
      [](const Notes&) {
        for (;;) std::puts("and on");
      },
      0.25);
  EXPECT_TRUE(end.hung);
  EXPECT_EQ(end.output.substr(0, 14), "and on\nand on\n");
  EXPECT_LT(end.output.size(), 3000U);
}

// A process that the work has started holds the writing end of a pipe: nobody does
// once it is gone.
class Started {
 public:
  Started() {
    std::array<int, 2> ends = {};
    if (pipe(ends.data()) != 0) throw std::runtime_error("pipe");
    read_ = ends[0];
    write_ = ends[1];
  }
  ~Started() {
    close(read_);
    close(write_);
  }
  Started(const Started&) = delete;
  Started& operator=(const Started&) = delete;
  Started(Started&&) = delete;
  Started& operator=(Started&&) = delete;

  [[nodiscard]] bool is_gone() {
    close(write_);
    write_ = -1;
    pollfd end = {read_, POLLIN, 0};
    return poll(&end, 1, 10'000) == 1 && (end.revents & POLLHUP) != 0;
  }

 private:
  int read_;
  int write_;
};

TEST(RunInChild, EndsWhatTheWorkHasLeftRunning) {
  Started started;
  const ChildEnd end = run_in_child(
      [](const Notes& notes) {
        if (std::system("sleep 600 &") != 0) notes.complain("no shell");
      },
      kLong);
  EXPECT_EQ(end.complaints, Texts{});
  EXPECT_TRUE(started.is_gone());
}

TEST(RunInChild, EndsTheCommandThatTheWorkWaitsFor) {
  Started started;
  const ChildEnd end = run_in_child(
      [](const Notes& notes) { notes.fact(std::to_string(std::system("sleep 600; echo over"))); },
      0.25);
  EXPECT_TRUE(end.hung);
  EXPECT_EQ(end.facts, Texts{});
  EXPECT_TRUE(started.is_gone());
}

TEST(RunInChild, CapturesWhatIsPrintedByWhomeverAndHowever) {
  const ChildEnd end = run_in_child(
      [](const Notes&) {
        std::printf("one\n");
        std::fflush(stdout);
        std::cout << "two\n" << std::flush;
        std::cerr << "three\n";
        if (std::system("echo four; echo five >&2") != 0) std::abort();
        // Still in a buffer when the work returns.
        std::printf("six\n");
      },
      kLong);
  EXPECT_EQ(end.complaints, Texts{});
  EXPECT_EQ(end.output, "one\ntwo\nthree\nfour\nfive\nsix\n");
}

TEST(RunInChild, KeepsWhatWasPrintedBeforeACrash) {
  const ChildEnd end = run_in_child(
      [](const Notes&) {
        std::cerr << "this does not look well\n";
        std::raise(SIGKILL);
      },
      kLong);
  EXPECT_EQ(end.output, "this does not look well\n");
}

TEST(RunInChild, BearsWorkThatClosesItsOutput) {
  const ChildEnd end = run_in_child(
      [](const Notes& notes) {
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        usleep(50'000);
        notes.fact("still here");
      },
      kLong);
  EXPECT_EQ(end.complaints, Texts{});
  EXPECT_EQ(end.facts, Texts{"still here"});
}

TEST(RunInChild, TakesMoreNotesThanAPipeHolds) {
  const ChildEnd end = run_in_child(
      [](const Notes& notes) {
        for (int i = 0; i < 100; ++i) notes.complain(std::string(10'000, 'x'));
        notes.fact(std::string(3'000'000, 'y'));
      },
      kLong);
  EXPECT_EQ(end.complaints, Texts(100, std::string(10'000, 'x')));
  EXPECT_EQ(end.facts, Texts{std::string(3'000'000, 'y')});
}

TEST(RunInChild, GivesTheWorkAnEmptyFolderThatVanishes) {
  const auto note_folder = [](const Notes& notes) {
    if (!fs::is_empty(".")) notes.complain("it is not empty");
    fs::create_directory("inside");
    std::ofstream("inside/file") << "text";
    notes.fact(fs::current_path().string());
  };
  const ChildEnd first = run_in_child(note_folder, kLong);
  const ChildEnd second = run_in_child(note_folder, kLong);
  EXPECT_EQ(first.complaints, Texts{});
  EXPECT_EQ(second.complaints, Texts{});
  ASSERT_EQ(first.facts.size(), 1U);
  ASSERT_EQ(second.facts.size(), 1U);
  EXPECT_NE(first.facts, second.facts);
  EXPECT_FALSE(fs::exists(first.facts[0])) << first.facts[0];
  EXPECT_FALSE(fs::exists(second.facts[0])) << second.facts[0];
}

TEST(RunInChild, GivesTheWorkAnEmptyStandardInput) {
  const ChildEnd end = run_in_child(
      [](const Notes& notes) { notes.fact(std::getchar() == EOF ? "nothing" : "something"); },
      kLong);
  EXPECT_EQ(end.facts, Texts{"nothing"});
}

}  // namespace
}  // namespace zelcheck
