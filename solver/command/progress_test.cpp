// What the line says. That it comes and goes: tests/command/terminal_test.cpp.
#include "solver/command/progress.h"

#include <gtest/gtest.h>

#include <limits>

namespace sdpsol {
namespace {

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

}  // namespace
}  // namespace sdpsol
