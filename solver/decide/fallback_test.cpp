// When a second engine is asked, and whose answer counts.
#include <gtest/gtest.h>

#include <cmath>

#include "solver/check/infeasible.h"
#include "solver/decide/decide.h"
#include "solver/engine/auto_engine.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::kStrict;
using testing::ProblemBuilder;

/// How well an engine does.
enum class Skill {
  kSound,       ///< as the reference
  kUnable,      ///< proposes nothing of use
  kUnsuited,    ///< and says so
  kStopsEarly,  ///< with a point, and multipliers far from the best
};

class TestEngine final : public Engine {
 public:
  TestEngine(std::string_view name, Skill skill, StopReason claim = StopReason::kTrouble)
      : name_(name), skill_(skill), claim_(claim) {}

  std::string_view name() const override { return name_; }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    ++runs;
    limit = limits.max_iterations;
    Candidate candidate;
    switch (skill_) {
      case Skill::kSound:
        return engine_->solve(program, limits, observer);
      case Skill::kStopsEarly:
        candidate = engine_->solve(program, {.max_iterations = 5}, observer);
        candidate.reason = claim_;
        return candidate;
      case Skill::kUnable:
      case Skill::kUnsuited:
        break;
    }
    candidate.reason = skill_ == Skill::kUnsuited ? StopReason::kUnsuited : claim_;
    candidate.last.point.resize(program.objective.size());
    candidate.last.multipliers.resize(multiplier_offsets(program.cones).back());
    candidate.last.iteration = 3;
    return candidate;
  }

  int runs = 0;
  int limit = 0;

 private:
  std::string_view name_;
  Skill skill_;
  StopReason claim_;
  std::unique_ptr<Engine> engine_ = make_csdp_engine();
};

/// [2 - x, 1; 1, 3 - x] > 0
ProblemBuilder some_matrix() {
  return ProblemBuilder(1).matrix(kStrict, 2, {{2, {{0, -1}}}, {1, {}}, {3, {{0, -1}}}});
}

/// maximise x where that holds: (5 - sqrt 5) / 2
Problem smallest_eigenvalue() {
  return some_matrix().maximise({1}).build();
}
const double kSmallest = (5 - std::sqrt(5.0)) / 2;

/// x > 1.5 beside it: more than the matrix allows, and less than its diagonal does
Problem contradiction() {
  return some_matrix().row(kStrict, {-1.5, {{0, 1}}}).build();
}

double gap(const Outcome& outcome) {
  return *outcome.bound - *outcome.objective;
}

int iterations_of(const Problem& problem, Skill skill, StopReason claim = StopReason::kTrouble) {
  TestEngine engine("alone", skill, claim);
  return decide(problem, engine, {}).iterations;
}

TEST(Fallback, IsNotAskedForWhatTheFirstHasDecided) {
  for (const Problem& problem : {some_matrix().build(), smallest_eigenvalue(), contradiction()}) {
    TestEngine first("first", Skill::kSound);
    TestEngine fallback("fallback", Skill::kSound);
    const Outcome outcome = decide_with_fallback(problem, first, fallback, {});
    EXPECT_NE(outcome.verdict, Verdict::kUndetermined);
    EXPECT_EQ(outcome.engine, "first");
    EXPECT_EQ(outcome.fallbacks, 0);
    EXPECT_EQ(outcome.iterations, iterations_of(problem, Skill::kSound));
    EXPECT_EQ(fallback.runs, 0);
  }
}

TEST(Fallback, DecidesWhatTheFirstCouldNot) {
  for (const Skill skill : {Skill::kUnable, Skill::kUnsuited}) {
    for (const Problem& problem : {smallest_eigenvalue(), contradiction()}) {
      TestEngine first("first", skill);
      TestEngine fallback("fallback", Skill::kSound);
      const Outcome outcome =
          decide_with_fallback(problem, first, fallback, {.max_iterations = 50});
      EXPECT_EQ(outcome.verdict, problem.objective ? Verdict::kFeasible : Verdict::kInfeasible);
      EXPECT_EQ(outcome.engine, "fallback");
      EXPECT_EQ(outcome.fallbacks, 1);
      EXPECT_EQ(outcome.iterations,
                iterations_of(problem, skill) + iterations_of(problem, Skill::kSound));
      EXPECT_EQ(first.limit, 50);
      EXPECT_EQ(fallback.limit, 50);
    }
  }
}

TEST(Fallback, IsNotAskedAboutMuchWhereItIsProvenThatNothingCanBeDecided) {
  // 0.999999 < x < 1: borderline; and x > 20000: not in the box
  for (const int others : {0, 100}) {
    ProblemBuilder borderline(1 + others);
    borderline.row(kStrict, {1, {{0, -1}}}).row(kStrict, {-0.999999, {{0, 1}}});
    ProblemBuilder empty_box(1 + others);
    empty_box.row(kStrict, {-20000, {{0, 1}}});
    for (ProblemBuilder* builder : {&borderline, &empty_box}) {
      for (int k = 1; k <= others; ++k) builder->row(kStrict, {1, {{k, 1}}});
      TestEngine first("first", Skill::kSound);
      TestEngine fallback("fallback", Skill::kUnable);
      const Outcome outcome = decide_with_fallback(builder->build(), first, fallback, {});
      EXPECT_EQ(outcome.verdict, Verdict::kUndetermined);
      EXPECT_FALSE(outcome.certificate.empty());
      EXPECT_EQ(outcome.engine, "first");
      EXPECT_EQ(outcome.fallbacks, others == 0 ? 1 : 0);
    }
  }
}

TEST(Fallback, ProvesThatNothingCanBeDecided) {
  const Problem borderline =
      ProblemBuilder(1).row(kStrict, {1, {{0, -1}}}).row(kStrict, {-0.999999, {{0, 1}}}).build();
  TestEngine first("first", Skill::kUnable);
  TestEngine fallback("fallback", Skill::kSound);
  const Outcome outcome = decide_with_fallback(borderline, first, fallback, {});
  EXPECT_EQ(outcome.verdict, Verdict::kUndetermined);
  EXPECT_EQ(disprove(borderline, outcome.certificate), Disproof::kBorderline);
  EXPECT_EQ(outcome.engine, "fallback");
  EXPECT_EQ(outcome.fallbacks, 1);
}

TEST(Fallback, NarrowsAGapThatTheFirstLeft) {
  const Problem problem = smallest_eigenvalue();
  TestEngine alone("first", Skill::kStopsEarly);
  ASSERT_GT(gap(decide(problem, alone, {})), 1e-5);
  TestEngine first("first", Skill::kStopsEarly);
  TestEngine fallback("fallback", Skill::kSound);
  const Outcome outcome = decide_with_fallback(problem, first, fallback, {});
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_EQ(outcome.engine, "fallback");
  EXPECT_EQ(outcome.fallbacks, 1);
  EXPECT_NEAR(*outcome.objective, kSmallest, 1e-7);
  EXPECT_LT(gap(outcome), 1e-6);
  EXPECT_EQ(outcome.iterations,
            iterations_of(problem, Skill::kStopsEarly) + iterations_of(problem, Skill::kSound));
}

TEST(Fallback, IsAskedWhetherWhatIsNotStrictHoldsWithoutRoom) {
  // 1 - 1e-6 < x <= 1: no room, which only the first of them needs
  const Problem problem = ProblemBuilder(1)
                              .row(Sense::kNonStrict, {1, {{0, -1}}})
                              .row(kStrict, {-0.999999, {{0, 1}}})
                              .build();
  TestEngine first("first", Skill::kSound);
  TestEngine fallback("fallback", Skill::kUnable);
  const Outcome outcome = decide_with_fallback(problem, first, fallback, {});
  ASSERT_EQ(outcome.verdict, Verdict::kUndetermined);
  EXPECT_EQ(outcome.fallbacks, 1);
  // A claim is more than nothing.
  EXPECT_EQ(outcome.engine, "first");
  EXPECT_FALSE(outcome.certificate.empty());
}

TEST(Fallback, HasTheWordWhereItsPointIsTheBetterOne) {
  // The optimum is -1152. Both have gaps; the point of the first is 0.002 below it.
  ProblemBuilder builder(5);
  builder
      .row(testing::kNonStrict,
           {0.00390625, {{0, 12}, {1, 0.001953125}, {2, 0.5}, {3, -0.0625}, {4, 0.125}}})
      .row(kStrict, {-12, {{0, -12288}, {1, 4}, {2, 256}, {3, -64}, {4, 128}}})
      .maximise({-393216, -256, -40960, 6144, -12288});
  Problem problem = builder.build();
  problem.objective->constant = -1024;
  problem.objective->constant_magnitude = 1024;
  problem.big_m = 122880000;
  const auto first = make_cones_engine();
  const auto fallback = make_csdp_engine();
  const Outcome outcome = decide_with_fallback(problem, *first, *fallback, {});
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_NEAR(*outcome.objective, -1152, 1e-6 * 1152);
}

TEST(Fallback, IsNotHeardWhereItSaysLess) {
  // A point with a gap is more than no verdict, or than the same once more.
  const Problem problem = smallest_eigenvalue();
  for (const Skill skill : {Skill::kUnable, Skill::kUnsuited, Skill::kStopsEarly}) {
    TestEngine first("first", Skill::kStopsEarly);
    TestEngine fallback("fallback", skill);
    const Outcome outcome = decide_with_fallback(problem, first, fallback, {});
    EXPECT_EQ(outcome.verdict, Verdict::kFeasible);
    EXPECT_EQ(outcome.engine, "first");
    EXPECT_EQ(outcome.fallbacks, 1);
    EXPECT_GT(fallback.runs, 0);
    EXPECT_EQ(outcome.iterations,
              iterations_of(problem, Skill::kStopsEarly) + iterations_of(problem, skill));
  }
}

TEST(Fallback, WhereNeitherDecidesTheSecondHasTheWord) {
  TestEngine first("first", Skill::kUnsuited);
  TestEngine fallback("fallback", Skill::kUnable);
  const Outcome outcome = decide_with_fallback(contradiction(), first, fallback, {});
  EXPECT_EQ(outcome.verdict, Verdict::kUndetermined);
  EXPECT_EQ(outcome.reason, "numerical trouble: the engine gave up");
  EXPECT_EQ(outcome.engine, "fallback");
  EXPECT_EQ(outcome.fallbacks, 1);
}

TEST(Fallback, IsNotAskedForWhatItHasSaidAlready) {
  TestEngine fast("fast", Skill::kUnsuited);
  TestEngine general("general", Skill::kUnable);
  AutoEngine engine(fast, general);
  const Outcome alone = decide(contradiction(), engine, {});
  const int runs = general.runs;
  general.runs = 0;
  const Outcome outcome = decide_with_fallback(contradiction(), engine, general, {});
  EXPECT_EQ(outcome.verdict, Verdict::kUndetermined);
  EXPECT_EQ(outcome.engine, "general");
  EXPECT_EQ(outcome.fallbacks, 0);
  EXPECT_EQ(outcome.iterations, alone.iterations);
  EXPECT_EQ(general.runs, runs);
}

TEST(Fallback, NoEngineIsAskedForWhatIsObvious) {
  // 1 < 0
  TestEngine first("first", Skill::kUnable);
  TestEngine fallback("fallback", Skill::kSound);
  const Outcome outcome =
      decide_with_fallback(ProblemBuilder(0).row(kStrict, {-1, {}}).build(), first, fallback, {});
  EXPECT_EQ(outcome.verdict, Verdict::kInfeasible);
  EXPECT_EQ(outcome.fallbacks, 0);
  EXPECT_EQ(outcome.iterations, 0);
  EXPECT_EQ(first.runs + fallback.runs, 0);
}

}  // namespace
}  // namespace sdpsol
