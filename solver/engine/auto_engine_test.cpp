// Which engine gets a program, and whose name is told.
#include "solver/engine/auto_engine.h"

#include <gtest/gtest.h>

#include "solver/engine/cones/test_cones.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"

namespace sdpsol {
namespace {

using testing::kOne;

class ScriptedEngine final : public Engine {
 public:
  ScriptedEngine(std::string_view name, StopReason reason) : reason_(reason), name_(name) {}
  std::string_view name() const override { return name_; }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    ++runs;
    seen_unknowns = program.unknowns;
    seen_limit = limits.max_iterations;
    Candidate candidate;
    candidate.reason = reason_;
    candidate.last.value = 7;
    if (observer) observer(candidate.last);
    return candidate;
  }
  int runs = 0;
  int seen_unknowns = 0;
  int seen_limit = 0;

 private:
  StopReason reason_;
  std::string_view name_;
};

TEST(AutoEngine, AsksTheFastEngineAloneUnlessThatIsUnsuited) {
  for (const StopReason reason :
       {StopReason::kConverged, StopReason::kAccepted, StopReason::kUnbounded,
        StopReason::kInfeasible, StopReason::kIterationLimit, StopReason::kTrouble}) {
    ScriptedEngine fast("fast", reason);
    ScriptedEngine general("general", StopReason::kConverged);
    AutoEngine engine(fast, general);
    EXPECT_EQ(engine.solve({}, {}, {}).reason, reason);
    EXPECT_EQ(fast.runs, 1);
    EXPECT_EQ(general.runs, 0);
    EXPECT_EQ(engine.name(), "fast");
  }
}

TEST(AutoEngine, PassesOnEverythingWhereTheFastOneIsUnsuited) {
  ScriptedEngine fast("fast", StopReason::kUnsuited);
  ScriptedEngine general("general", StopReason::kAccepted);
  AutoEngine engine(fast, general);
  EXPECT_EQ(engine.name(), "fast");
  ConeProgram program;
  program.unknowns = 5;
  double seen = 0;
  const Candidate candidate =
      engine.solve(program, {.max_iterations = 17}, [&](const Iterate& iterate) {
        seen = iterate.value;
        return true;
      });
  EXPECT_EQ(candidate.reason, StopReason::kAccepted);
  EXPECT_EQ(general.runs, 1);
  EXPECT_EQ(general.seen_unknowns, 5);
  EXPECT_EQ(general.seen_limit, 17);
  EXPECT_EQ(seen, 7);
  EXPECT_EQ(engine.name(), "general");
}

TEST(AutoEngine, TellsTheNameOfTheOneThatWasAskedLast) {
  // y_0 <= 1, alone and beside a large matrix
  const auto cones = make_cones_engine();
  const auto csdp = make_csdp_engine();
  AutoEngine engine(*cones, *csdp);
  const ConeProgram small{1, {1}, {{1, {{0, 0, kOne, 1}, {0, 0, 0, -1}}}}, {}};
  ConeProgram large = small;
  large.cones.push_back({5, {}});
  for (std::int32_t i = 0; i < 5; ++i) {
    large.cones[1].coefficients.push_back({i, i, kOne, 3.0 + i});
    large.cones[1].coefficients.push_back({i, i, 0, -1});
    if (i > 0) large.cones[1].coefficients.push_back({i - 1, i, kOne, 0.5});
  }
  EXPECT_NEAR(engine.solve(small, {}, {}).last.value, 1, 1e-8);
  EXPECT_EQ(engine.name(), "cones");
  EXPECT_NEAR(engine.solve(large, {}, {}).last.value, 1, 1e-7);
  EXPECT_EQ(engine.name(), "csdp");
  engine.solve(small, {}, {});
  EXPECT_EQ(engine.name(), "cones");
}

}  // namespace
}  // namespace sdpsol
