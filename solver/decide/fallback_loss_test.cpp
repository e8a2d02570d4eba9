// What the fallback must not take away.
#include <gtest/gtest.h>

#include "solver/decide/decide.h"
#include "solver/engine/csdp_engine.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::kNonStrict;
using testing::kStrict;
using testing::ProblemBuilder;

/// Finds points of everything, and multipliers of no use.
class WithoutBound final : public Engine {
 public:
  std::string_view name() const override { return "without bound"; }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    Candidate candidate = engine_->solve(program, limits, observer);
    if (program.is_margin) return candidate;
    candidate.reason = StopReason::kTrouble;
    candidate.last.multipliers.assign(candidate.last.multipliers.size(), 0.0);
    return candidate;
  }

 private:
  std::unique_ptr<Engine> engine_ = make_csdp_engine();
};

/// Gives up over objectives and over equations, and knows the multipliers of margins alone.
class WithoutPoints final : public Engine {
 public:
  std::string_view name() const override { return "without points"; }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& /*observer*/) override {
    Candidate candidate;
    if (program.is_margin && program.equations.empty()) {
      candidate = engine_->solve(program, limits, {});
    } else {
      candidate.last.multipliers.resize(multiplier_offsets(program.cones).back());
    }
    candidate.last.point.assign(program.objective.size(), 0.0);
    return candidate;
  }

 private:
  std::unique_ptr<Engine> engine_ = make_csdp_engine();
};

TEST(Fallback, AVerdictIsNotTakenBackBecauseAnotherEngineHasNone) {
  // x >= 0, y >= 0, -x - y >= 0, 1/4 < z < 1: x = y = 0; maximise z
  const Problem problem = ProblemBuilder(3)
                              .row(kNonStrict, {0, {{0, 1}}})
                              .row(kNonStrict, {0, {{1, 1}}})
                              .row(kNonStrict, {0, {{0, -1}, {1, -1}}})
                              .row(kStrict, {-0.25, {{2, 1}}})
                              .row(kStrict, {1, {{2, -1}}})
                              .maximise({0, 0, 1})
                              .build();
  WithoutBound first;
  WithoutPoints fallback;
  const Outcome alone = decide(problem, first, {});
  ASSERT_EQ(alone.verdict, Verdict::kFeasible);
  const Outcome second = decide(problem, fallback, {});
  ASSERT_EQ(second.verdict, Verdict::kUndetermined);
  EXPECT_EQ(second.reason, "borderline: no point has more room than 4.4e-6");
  EXPECT_EQ(decide_with_fallback(problem, first, fallback, {}).verdict, Verdict::kFeasible);
}

}  // namespace
}  // namespace sdpsol
