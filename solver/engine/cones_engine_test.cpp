// The engine as it is asked: what it solves, what it says of programs that have no
// optimum, and what it leaves to others.
#include "solver/engine/cones_engine.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solver/engine/cones/test_candidates.h"
#include "solver/engine/cones/test_contacts.h"

namespace sdpsol {
namespace {

using testing::arrow;
using testing::expect_optimal;
using testing::Form;
using testing::kOne;
using testing::matrix;
using testing::Numbers;
using testing::row;

Candidate solved(const ConeProgram& program, const Observer& observer = {},
                 const Limits& limits = {}) {
  return make_cones_engine()->solve(program, limits, observer);
}

/// maximise y_0 with [2 - y_0, 1; 1, 3 - y_0] psd: (5 - sqrt 5) / 2
ConeProgram smallest_eigenvalue() {
  return testing::program({1},
                          {matrix(2, {{{kOne, 2}, {0, -1}}, {{kOne, 1}}, {{kOne, 3}, {0, -1}}})});
}
const double kSmallest = (5 - std::sqrt(5.0)) / 2;

void expect_unsuited(const ConeProgram& program) {
  int seen = 0;
  const Candidate candidate = solved(program, [&](const Iterate&) { return ++seen > 0; });
  EXPECT_EQ(candidate.reason, StopReason::kUnsuited);
  EXPECT_EQ(seen, 0);
  EXPECT_EQ(candidate.last.iteration, 0);
  EXPECT_EQ(candidate.last.point, std::vector<double>(program.objective.size()));
  EXPECT_EQ(candidate.last.multipliers,
            std::vector<double>(multiplier_offsets(program.cones).back()));
}

TEST(ConesEngine, HasItsName) {
  EXPECT_EQ(make_cones_engine()->name(), "cones");
}

TEST(ConesEngine, FindsTheOptimumAndItsMultipliers) {
  const Candidate candidate = solved(smallest_eigenvalue());
  expect_optimal(smallest_eigenvalue(), candidate);
  EXPECT_NEAR(candidate.last.point[0], kSmallest, 1e-8);
}

TEST(ConesEngine, SolvesContactsOfAnyNumber) {
  Numbers numbers(1);
  for (const int count : {3, 4, 12, 20}) {
    const ConeProgram program = contacts_program(numbers, {count, true, false, 0});
    expect_optimal(program, solved(program), 1e-6);
  }
}

TEST(ConesEngine, TellsWhatHasNoBoundAndWhatHasNoPoint) {
  EXPECT_EQ(solved(testing::program({1}, {row({{0, 1}})})).reason, StopReason::kUnbounded);
  EXPECT_EQ(solved(testing::program({1}, {row({{kOne, -1}, {0, 1}}), row({{0, -1}})})).reason,
            StopReason::kInfeasible);
}

TEST(ConesEngine, StopsAtTheIterationLimitAndWhenTheObserverIsSatisfied) {
  const Candidate limited = solved(smallest_eigenvalue(), {}, {.max_iterations = 2});
  EXPECT_EQ(limited.reason, StopReason::kIterationLimit);
  EXPECT_EQ(limited.last.iteration, 2);
  const Candidate accepted =
      solved(smallest_eigenvalue(), [](const Iterate& at) { return at.iteration == 3; });
  EXPECT_EQ(accepted.reason, StopReason::kAccepted);
  EXPECT_EQ(accepted.last.iteration, 3);
}

TEST(ConesEngine, EquationsAreTakenOutAndTheAnswerIsThatOfTheWholeProgram) {
  // maximise y_0 with y_0 + y_1 = 4, y_1 - 1 >= 0
  ConeProgram program =
      testing::program({1, 0}, {row({{kOne, -1}, {1, 1}}), row({{kOne, 10}, {0, 1}})});
  program.equations = {row({{kOne, -4}, {0, 1}, {1, 1}})};
  int seen = 0;
  const Candidate candidate = solved(program, [&](const Iterate& iterate) {
    ++seen;
    EXPECT_EQ(iterate.point.size(), 2U);
    EXPECT_NEAR(iterate.point[0] + iterate.point[1], 4, 1e-12);
    EXPECT_NEAR(iterate.value, iterate.point[0], 1e-12);
    return false;
  });
  EXPECT_GT(seen, 0);
  ASSERT_EQ(candidate.last.point.size(), 2U);
  EXPECT_NEAR(candidate.last.point[0], 3, 1e-8);
  EXPECT_NEAR(candidate.last.point[1], 1, 1e-8);
  EXPECT_NEAR(candidate.last.value, 3, 1e-8);
  EXPECT_EQ(candidate.last.multipliers.size(), 2U);
}

TEST(ConesEngine, AnUnknownThatNoConeFeelsIsZero) {
  ConeProgram program = smallest_eigenvalue();
  program.unknowns = 3;
  program.objective = {1, 0, 0};
  const Candidate candidate = solved(program);
  EXPECT_EQ(candidate.reason, StopReason::kConverged);
  ASSERT_EQ(candidate.last.point.size(), 3U);
  EXPECT_NEAR(candidate.last.point[0], kSmallest, 1e-8);
  EXPECT_EQ(candidate.last.point[1], 0);
  program.objective = {1, 0, 2};
  EXPECT_EQ(solved(program).reason, StopReason::kUnbounded);
}

TEST(ConesEngine, NumbersThatAreNotFiniteAreTrouble) {
  for (const double odd : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300}) {
    for (std::size_t i = 0; i < 5; ++i) {
      ConeProgram program = smallest_eigenvalue();
      program.cones[0].coefficients[i].value = odd;
      const Candidate candidate = solved(program);
      EXPECT_EQ(candidate.reason, StopReason::kTrouble);
      EXPECT_EQ(candidate.last.point.size(), 1U);
      EXPECT_EQ(candidate.last.multipliers.size(), 4U);
    }
    ConeProgram program = smallest_eigenvalue();
    program.objective[0] = odd;
    EXPECT_EQ(solved(program).reason, StopReason::kTrouble);
  }
}

TEST(ConesEngine, EquationsThatAreNotNumbersAreTrouble) {
  for (const double odd : {std::nan(""), HUGE_VAL}) {
    ConeProgram program =
        testing::program({1, 0}, {row({{kOne, -1}, {1, 1}}), row({{kOne, 10}, {0, 1}})});
    program.equations = {row({{kOne, -4}, {0, odd}, {1, 1}})};
    const Candidate candidate = solved(program);
    EXPECT_EQ(candidate.reason, StopReason::kTrouble);
    EXPECT_EQ(candidate.last.point.size(), 2U);
    EXPECT_EQ(candidate.last.multipliers.size(), 2U);
    program.equations = {row({{kOne, odd}, {0, 1}, {1, 1}})};
    EXPECT_EQ(solved(program).reason, StopReason::kTrouble);
  }
}

TEST(ConesEngine, RowsOfConstantsAreInNobodysWay) {
  const auto bound = row({{kOne, 1}, {0, -1}});
  const ConeProgram constant = testing::program({1}, {bound, row({{kOne, 2}})});
  expect_optimal(constant, solved(constant));
  const ConeProgram nothing = testing::program({1}, {row({}), bound});
  expect_optimal(nothing, solved(nothing));
}

TEST(ConesEngine, WithoutAnObjectiveItFindsAPointInside) {
  const ConeProgram program = testing::program({0}, {row({{kOne, 1}, {0, -1}}), row({{0, 1}})});
  const Candidate candidate = solved(program);
  EXPECT_EQ(candidate.reason, StopReason::kConverged);
  EXPECT_GT(testing::room_at(program, candidate.last.point), 0.1);
}

TEST(ConesEngine, LeavesLargeDenseBlocksToOthers) {
  Numbers numbers(2);
  const auto block = [&](std::int32_t order) {
    const auto count = static_cast<std::size_t>(order) * static_cast<std::size_t>(order + 1) / 2;
    return testing::program({1},
                            {row({{kOne, 1}, {0, 1}}), matrix(order, numbers.forms(1, count))});
  };
  EXPECT_NE(solved(block(kLargestDenseBlock)).reason, StopReason::kUnsuited);
  expect_unsuited(block(kLargestDenseBlock + 1));
  expect_unsuited(block(200));
}

TEST(ConesEngine, TakesLargeSecondOrderCones) {
  // maximise the sum of y in a ball
  const std::vector<double> sum(30, 1.0);
  std::vector<Form> beside;
  for (std::int32_t k = 0; k < 30; ++k) beside.push_back({{k, 1}});
  const ConeProgram program = testing::program(sum, {arrow(3, {{kOne, 1}}, beside)});
  const Candidate candidate = solved(program);
  expect_optimal(program, candidate);
  EXPECT_NEAR(candidate.last.value, std::sqrt(30.0), 1e-7);
}

TEST(ConesEngine, LeavesManyUnknownsWithoutStructureToOthers) {
  // Unknowns in nine of many rows each: nothing that they move is the same.
  Numbers numbers(3);
  constexpr std::int32_t kUnknowns = 1000;
  ConeProgram program = testing::program(std::vector<double>(kUnknowns, 1.0), {});
  for (std::int32_t i = 0; i < 1100; ++i) {
    Form form = {{kOne, 1}};
    for (std::int32_t k = 0; k < 9; ++k) {
      form.emplace_back((7 * i + k * k * k) % kUnknowns, numbers.number());
    }
    program.cones.push_back(row(form));
  }
  ASSERT_GT(1100.0 * kUnknowns * kUnknowns, kMostWork);
  expect_unsuited(program);
}

}  // namespace
}  // namespace sdpsol
