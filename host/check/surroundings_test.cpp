#include "host/check/surroundings.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "host/check/child.h"

namespace zelcheck {
namespace {

using Texts = std::vector<std::string>;

// In a process that may be changed.
template <class Work>
Texts changes_by(const Work& work) {
  const ChildEnd end = run_in_child(
      [&work](const Notes& notes) {
        const Surroundings before;
        work();
        for (const std::string& change : before.changes()) notes.fact(change);
      },
      60);
  EXPECT_EQ(end.complaints, Texts{});
  return end.facts;
}

template <class Work>
Texts twice_back(const Work& work) {
  const ChildEnd end = run_in_child(
      [&work](const Notes& notes) {
        ForkWatch watch;
        work();
        notes.fact(watch.is_back_twice() ? "twice" : "once");
      },
      60);
  EXPECT_EQ(end.complaints, Texts{});
  return end.facts;
}

TEST(Surroundings, AreTheSameWhereNothingWasDone) {
  EXPECT_EQ(changes_by([] {}), Texts{});
}

TEST(Surroundings, AreTheSameWhereAllWasUndone) {
  EXPECT_EQ(changes_by([] {
              std::setlocale(LC_ALL, "C.UTF-8");
              std::setlocale(LC_ALL, "C");
              const int kept = dup(1);
              close(1);
              dup2(kept, 1);
            }),
            Texts{});
}

TEST(Surroundings, TellWhatWasChanged) {
  EXPECT_EQ(changes_by([] { std::setlocale(LC_NUMERIC, "C.UTF-8"); }),
            Texts{"it changed the locale"});
  EXPECT_EQ(changes_by([] { std::filesystem::current_path("/"); }),
            Texts{"it changed the working folder"});
  EXPECT_EQ(changes_by([] { close(0); }), Texts{"it closed standard input"});
  EXPECT_EQ(changes_by([] {
              close(1);
              close(2);
            }),
            (Texts{"it closed standard output", "it closed standard error"}));
  EXPECT_EQ(changes_by([] { dup2(0, 1); }), Texts{"it replaced standard output"});
}

TEST(ForkWatch, TellsWhetherACallCameBackInBothProcesses) {
  EXPECT_EQ(twice_back([] {}), Texts{"once"});
  EXPECT_EQ(twice_back([] { (void)fork(); }), Texts{"twice"});
  EXPECT_EQ(twice_back([] {
              if (fork() == 0) usleep(100'000);
            }),
            Texts{"twice"});
  EXPECT_EQ(twice_back([] {
              if (fork() == 0) _exit(0);
            }),
            Texts{"once"});
}

// A program that was started has nothing to do with it, nor has a process that stays.
TEST(ForkWatch, BearsWhatIsLeftRunning) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(twice_back([] {
              if (std::system("sleep 600 &") != 0) std::abort();
            }),
            Texts{"once"});
  EXPECT_EQ(twice_back([] {
              if (fork() == 0)
                for (;;) pause();
            }),
            Texts{"once"});
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

}  // namespace
}  // namespace zelcheck
