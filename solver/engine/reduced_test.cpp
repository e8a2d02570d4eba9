// What is left of a program before an engine sees it, and how its answer comes back.
#include "solver/engine/reduced.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solver/engine/compact.h"
#include "solver/engine/cones/test_cones.h"

namespace sdpsol {
namespace {

using testing::kOne;

/// Three unknowns of which the cones feel the last alone.
ConeProgram with_idle_unknowns() {
  return {
      3,
      {0, 0, 1},
      {{1, {{0, 0, kOne, 5}, {0, 0, 2, -1}}}, {2, {{0, 0, kOne, 1}, {0, 1, 0, 0}, {1, 1, 2, 1}}}},
      {}};
}

/// What a solver was given, and an answer to it.
struct Recorder {
  std::vector<ConeProgram> seen;
  Candidate answer;
  bool enough = false;

  Candidate solved(const ConeProgram& program, const Observer& observer = {}) {
    return solve_reduced(program, {}, observer,
                         [this](const ConeProgram& p, const Limits&, const Observer& told) {
                           seen.push_back(p);
                           enough = told(answer.last);
                           return answer;
                         });
  }
};

TEST(Compaction, LeavesOutWhatNoConeFeels) {
  const ConeProgram program = with_idle_unknowns();
  const Compaction compaction(program);
  EXPECT_FALSE(compaction.unbounded());
  const ConeProgram& reduced = compaction.reduced();
  EXPECT_EQ(reduced.unknowns, 1);
  EXPECT_EQ(reduced.objective, std::vector<double>{1});
  ASSERT_EQ(reduced.cones.size(), 2U);
  EXPECT_EQ(reduced.cones[1].size, 2);
  ASSERT_EQ(reduced.cones[1].coefficients.size(), 2U);
  EXPECT_EQ(reduced.cones[1].coefficients[0].unknown, kOne);
  EXPECT_EQ(reduced.cones[1].coefficients[1].unknown, 0);
  EXPECT_EQ(reduced.cones[1].coefficients[1].row, 1);
  EXPECT_EQ(compaction.lift({{7}, {}, 0, 0, 0}).point, (std::vector<double>{0, 0, 7}));
}

TEST(Compaction, PassesOnAProgramThatLacksNothing) {
  const ConeProgram program{1, {1}, {{1, {{0, 0, 0, 1}}}}, {}};
  const Compaction compaction(program);
  EXPECT_EQ(&compaction.reduced(), &program);
  EXPECT_EQ(compaction.lift({{7}, {}, 0, 0, 0}).point, std::vector<double>{7});
}

TEST(Compaction, AnIdleUnknownOfTheObjectiveHasNoBound) {
  ConeProgram program = with_idle_unknowns();
  program.objective[1] = -2;
  EXPECT_TRUE(Compaction(program).unbounded());
}

TEST(SolveReduced, AsksForWhatIsLeftAndLiftsEveryAnswer) {
  Recorder recorder;
  recorder.answer.reason = StopReason::kConverged;
  recorder.answer.last = {{4}, {1, 2, 3, 4, 5}, 4, 6, 1};
  Iterate told;
  const Candidate candidate = recorder.solved(with_idle_unknowns(), [&](const Iterate& iterate) {
    told = iterate;
    return true;
  });
  ASSERT_EQ(recorder.seen.size(), 1U);
  EXPECT_EQ(recorder.seen[0].unknowns, 1);
  EXPECT_TRUE(recorder.enough);
  EXPECT_EQ(candidate.reason, StopReason::kConverged);
  for (const Iterate& iterate : {told, candidate.last}) {
    EXPECT_EQ(iterate.point, (std::vector<double>{0, 0, 4}));
    EXPECT_EQ(iterate.multipliers, recorder.answer.last.multipliers);
    EXPECT_EQ(iterate.value, 4);
    EXPECT_EQ(iterate.bound, 6);
  }
}

TEST(SolveReduced, NeedsNoObserver) {
  Recorder recorder;
  recorder.answer.last = {{4}, {1, 2, 3, 4, 5}, 4, 6, 1};
  recorder.solved(with_idle_unknowns());
  EXPECT_EQ(recorder.seen.size(), 1U);
  EXPECT_FALSE(recorder.enough);
}

TEST(SolveReduced, EquationsAreHeldByEveryAnswer) {
  // y_0 + y_1 = 4, objective 3*y_0 + 3*y_1 + y_2: 12 wherever y_2 = 0
  ConeProgram program{3, {3, 3, 1}, {{1, {{0, 0, 0, 1}}}, {1, {{0, 0, 2, 1}}}}, {}};
  program.equations = {{1, {{0, 0, kOne, -4}, {0, 0, 0, 1}, {0, 0, 1, 1}}}};
  Recorder recorder;
  recorder.answer.last = {{1, 2}, {1, 1}, 10, 20, 1};
  Iterate told;
  const Candidate candidate = recorder.solved(program, [&](const Iterate& iterate) {
    told = iterate;
    return false;
  });
  ASSERT_EQ(recorder.seen.size(), 1U);
  EXPECT_EQ(recorder.seen[0].unknowns, 2);
  EXPECT_TRUE(recorder.seen[0].equations.empty());
  for (const Iterate& iterate : {told, candidate.last}) {
    ASSERT_EQ(iterate.point.size(), 3U);
    EXPECT_NEAR(iterate.point[0] + iterate.point[1], 4, 1e-14);
    EXPECT_NEAR(iterate.value, 10 + 12, 1e-13);
    EXPECT_NEAR(iterate.bound, 20 + 12, 1e-13);
  }
}

TEST(SolveReduced, NobodyIsAskedWhereNothingIsLeftToChoose) {
  // y_0 = 2, 3 - y_0 >= 0; and no unknowns at all
  ConeProgram fixed{1, {1}, {{1, {{0, 0, kOne, 3}, {0, 0, 0, -1}}}}, {}};
  fixed.equations = {{1, {{0, 0, kOne, -2}, {0, 0, 0, 1}}}};
  Recorder recorder;
  const Candidate candidate = recorder.solved(fixed);
  EXPECT_EQ(candidate.reason, StopReason::kConverged);
  EXPECT_NEAR(candidate.last.point[0], 2, 1e-15);
  EXPECT_NEAR(candidate.last.value, 2, 1e-15);
  EXPECT_EQ(candidate.last.multipliers, std::vector<double>{0});
  const Candidate empty = recorder.solved({0, {}, {{2, {{0, 0, kOne, 3}}}}, {}});
  EXPECT_EQ(empty.reason, StopReason::kConverged);
  EXPECT_EQ(empty.last.multipliers, std::vector<double>(4));
  EXPECT_TRUE(recorder.seen.empty());
}

TEST(SolveReduced, NobodyIsAskedAboutAbsurdNumbers) {
  for (const double odd : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e30}) {
    Recorder recorder;
    ConeProgram program = with_idle_unknowns();
    program.cones[0].coefficients[0].value = odd;
    EXPECT_EQ(recorder.solved(program).reason, StopReason::kTrouble);
    program = with_idle_unknowns();
    program.cones[1].coefficients[2].value = odd;
    EXPECT_EQ(recorder.solved(program).last.point, std::vector<double>(3));
    program = with_idle_unknowns();
    program.objective[2] = odd;
    const Candidate candidate = recorder.solved(program);
    EXPECT_EQ(candidate.reason, StopReason::kTrouble);
    EXPECT_EQ(candidate.last.multipliers, std::vector<double>(5));
    EXPECT_TRUE(recorder.seen.empty());
  }
}

TEST(SolveReduced, AnUnknownWithoutBoundIsSaidWhateverTheRestComesTo) {
  Recorder recorder;
  recorder.answer.reason = StopReason::kConverged;
  recorder.answer.last = {{4}, {1, 2, 3, 4, 5}, 4, 6, 1};
  ConeProgram program = with_idle_unknowns();
  program.objective[0] = 1;
  const Candidate candidate = recorder.solved(program);
  EXPECT_EQ(candidate.reason, StopReason::kUnbounded);
  EXPECT_EQ(candidate.last.point, (std::vector<double>{0, 0, 4}));
}

TEST(SolveReduced, WhatWasNotTriedIsNotCalledUnbounded) {
  ConeProgram program = with_idle_unknowns();
  program.objective = {1, 0, 1};
  Recorder recorder;
  recorder.answer.last.point = {0};
  recorder.answer.reason = StopReason::kConverged;
  EXPECT_EQ(recorder.solved(program).reason, StopReason::kUnbounded);
  recorder.answer.reason = StopReason::kUnsuited;
  EXPECT_EQ(recorder.solved(program).reason, StopReason::kUnsuited);
}

}  // namespace
}  // namespace sdpsol
