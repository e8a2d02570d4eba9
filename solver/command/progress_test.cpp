// What the line says, and on terminals of our own that it comes and goes.
#include "solver/command/progress.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <limits>
#include <thread>

namespace sdpsol {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kWide = 200;

TEST(ProgressLine, TellsTheMargin) {
  const EngineStep step{.iteration = 12, .is_margin = true, .value = -0.00123456789, .gap = 0.25};
  for (const bool minimized : {false, true}) {
    EXPECT_EQ(progress_line(step, minimized, 1.25, kWide),
              "iteration 12  margin -0.00123457  gap 0.25  1.2 s");
  }
}

TEST(ProgressLine, TellsTheObjectiveAsItWasWritten) {
  const EngineStep step{.iteration = 7, .is_margin = false, .value = 1234.5, .gap = 1.26e-5};
  EXPECT_EQ(progress_line(step, false, 100, kWide),
            "iteration 7  objective 1234.5  gap 1.3e-05  100.0 s");
  EXPECT_EQ(progress_line(step, true, 100, kWide),
            "iteration 7  objective -1234.5  gap 1.3e-05  100.0 s");
}

TEST(ProgressLine, IsThereBeforeTheFirstIteration) {
  EXPECT_EQ(progress_line(std::nullopt, false, 61.99, kWide), "iteration 0  61.9 s");
}

TEST(ProgressLine, TakesWhateverAnEngineSays) {
  const double infinity = std::numeric_limits<double>::infinity();
  const EngineStep step{.iteration = 1, .is_margin = true, .value = -infinity, .gap = infinity};
  EXPECT_EQ(progress_line(step, false, 2, kWide), "iteration 1  margin -inf  gap inf  2.0 s");
}

TEST(ProgressLine, FitsTheTerminal) {
  const EngineStep step{.iteration = 12, .is_margin = true, .value = 1, .gap = 1};
  EXPECT_EQ(progress_line(step, false, 1, 12), "iteration 12");
  EXPECT_EQ(progress_line(step, false, 1, 0), "");
}

/// Everything that an action writes in a process with a terminal of its own.
std::string on_terminal(unsigned short columns, const std::function<void()>& action) {
  struct winsize size {
    24, columns, 0, 0
  };
  int master = -1;
  const pid_t child = ::forkpty(&master, nullptr, nullptr, &size);
  if (child < 0) throw std::runtime_error("no terminal");
  if (child == 0) {
    action();
    ::_exit(0);
  }
  std::string text;
  char block[256];
  // The master side fails with EIO once the child has closed its side.
  for (ssize_t got = 0; (got = ::read(master, block, sizeof block)) > 0;) {
    text.append(block, static_cast<std::size_t>(got));
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  ::close(master);
  EXPECT_EQ(status, 0);
  return text;
}

std::chrono::steady_clock::time_point past(std::chrono::milliseconds since) {
  return std::chrono::steady_clock::now() - since;
}

const EngineStep kStep{.iteration = 3, .is_margin = true, .value = 0.5, .gap = 0.25};

TEST(Progress, StandsOnTheTerminalUntilItsEnd) {
  const std::string text = on_terminal(80, [] {
    Progress progress(past(61s), false, false);
    progress.tell(kStep);
    std::this_thread::sleep_for(150ms);
    progress.end();
    std::fputs("message", stderr);
    progress.end();
  });
  EXPECT_NE(text.find("\riteration 3  margin 0.5  gap 0.25  61."), std::string::npos) << text;
  EXPECT_TRUE(text.ends_with("\r\033[Kmessage")) << text;
}

TEST(Progress, ComesWithTheFirstSecondAndNotBefore) {
  const std::string early = on_terminal(80, [] {
    const Progress progress(past(700ms), false, false);
    std::this_thread::sleep_for(100ms);
  });
  EXPECT_EQ(early, "");
  const std::string later = on_terminal(80, [] {
    const Progress progress(past(900ms), false, false);
    std::this_thread::sleep_for(250ms);
  });
  EXPECT_EQ(later.find("\riteration 0  1.0 s\033[K"), 0U) << later;
  EXPECT_TRUE(later.ends_with("\r\033[K")) << later;
}

TEST(Progress, NeverReachesTheEdgeOfTheTerminal) {
  const std::string text = on_terminal(12, [] {
    Progress progress(past(2s), false, false);
    progress.tell(kStep);
    std::this_thread::sleep_for(150ms);
  });
  EXPECT_NE(text.find("\riteration 3\033[K"), std::string::npos) << text;
}

TEST(Progress, IsNotShownOfAQuietRun) {
  EXPECT_EQ(on_terminal(80,
                        [] {
                          Progress progress(past(2s), false, true);
                          if (progress.is_watched()) std::fputs("watched", stderr);
                          std::this_thread::sleep_for(150ms);
                        }),
            "");
}

TEST(Progress, IsNotShownWhereStandardErrorIsNoTerminal) {
  EXPECT_EQ(on_terminal(80,
                        [] {
                          std::FILE* const elsewhere = std::freopen("/dev/null", "w", stderr);
                          Progress progress(past(2s), false, false);
                          if (elsewhere == nullptr || progress.is_watched()) std::puts("watched");
                          std::this_thread::sleep_for(150ms);
                        }),
            "");
}

}  // namespace
}  // namespace sdpsol
