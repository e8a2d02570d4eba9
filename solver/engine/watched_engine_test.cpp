// What is seen and measured of an engine, with one that does as it is told.
#include "solver/engine/watched_engine.h"

#include <gtest/gtest.h>

#include <thread>

namespace sdpsol {
namespace {

using namespace std::chrono_literals;

/// Hands out its iterates until the observer has enough; takes its time for each.
class ScriptedEngine final : public Engine {
 public:
  std::vector<Iterate> iterates;
  std::chrono::milliseconds pace{0};

  std::string_view name() const override { return "scripted"; }
  Candidate solve(const ConeProgram& /*program*/, const Limits& limits,
                  const Observer& observer) override {
    seen_limit = limits.max_iterations;
    Candidate candidate;
    candidate.reason = StopReason::kConverged;
    for (const Iterate& iterate : iterates) {
      std::this_thread::sleep_for(pace);
      candidate.last = iterate;
      if (!observer || !observer(iterate)) continue;
      candidate.reason = StopReason::kAccepted;
      break;
    }
    return candidate;
  }
  int seen_limit = 0;
};

Iterate iterate(double value, double bound) {
  return {.point = {value}, .multipliers = {}, .value = value, .bound = bound, .iteration = 1};
}

TEST(WatchedEngine, TellsEveryStepInTheUnitsOfTheProblem) {
  ScriptedEngine engine;
  engine.iterates = {iterate(1, 3), iterate(2, 2.5), iterate(2.25, 2)};
  std::vector<EngineStep> steps;
  EngineLog log;
  WatchedEngine watched(engine, log, [&](const EngineStep& step) { steps.push_back(step); });
  ConeProgram program;
  program.value_unit = 100;
  program.value_origin = -7;
  watched.solve(program, {}, {});
  program.is_margin = true;
  watched.solve(program, {}, {});
  ASSERT_EQ(steps.size(), 6U);
  for (std::size_t i = 0; i < steps.size(); ++i) {
    EXPECT_EQ(steps[i].iteration, static_cast<int>(i) + 1);
    EXPECT_EQ(steps[i].is_margin, i >= 3);
  }
  EXPECT_EQ(steps[0].value, 93);
  EXPECT_EQ(steps[0].gap, 200);
  EXPECT_EQ(steps[1].value, 193);
  EXPECT_EQ(steps[1].gap, 50);
  EXPECT_EQ(steps[2].gap, 0);
}

TEST(WatchedEngine, PassesEverythingOn) {
  ScriptedEngine engine;
  engine.iterates = {iterate(1, 3), iterate(2, 2.5), iterate(2.25, 2)};
  EngineLog log;
  WatchedEngine watched(engine, log, {});
  EXPECT_EQ(watched.name(), "scripted");
  std::vector<double> seen;
  const Candidate stopped = watched.solve({}, {.max_iterations = 17}, [&](const Iterate& at) {
    seen.push_back(at.value);
    return seen.size() == 2;
  });
  EXPECT_EQ(engine.seen_limit, 17);
  EXPECT_EQ(seen, std::vector<double>({1, 2}));
  EXPECT_EQ(stopped.reason, StopReason::kAccepted);
  EXPECT_EQ(stopped.last.value, 2);
  const Candidate unseen = watched.solve({}, {}, {});
  EXPECT_EQ(unseen.reason, StopReason::kConverged);
  EXPECT_EQ(unseen.last.value, 2.25);
}

TEST(WatchedEngine, CountsTheTimeOfTheEngineAndNotOfItsObserver) {
  ScriptedEngine engine;
  engine.iterates = {iterate(1, 3), iterate(2, 2.5)};
  engine.pace = 10ms;
  EngineLog log;
  WatchedEngine watched(engine, log, {});
  const auto start = std::chrono::steady_clock::now();
  for (int run = 0; run < 2; ++run) {
    watched.solve({}, {}, [](const Iterate&) {
      std::this_thread::sleep_for(50ms);
      return false;
    });
  }
  const auto all = std::chrono::steady_clock::now() - start;
  EXPECT_GE(log.inside, 40ms);
  EXPECT_LE(log.inside, all - 200ms);
}

}  // namespace
}  // namespace sdpsol
