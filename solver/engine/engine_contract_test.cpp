// What holds of every engine behind the interface: what it solves, what it says of
// programs that have no optimum, when it stops, and what it takes apart before it begins.
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

#include "solver/engine/cones/test_candidates.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"

namespace sdpsol {
namespace {

using testing::expect_optimal;
using testing::kOne;
using testing::kSmallestEigenvalue;
using testing::matrix;
using testing::row;
using testing::smallest_eigenvalue;

/// maximise y_0 with y_1 - 1 >= 0, 10 + y_0 >= 0; an equation is to tie them together.
ConeProgram two_rows() {
  return testing::program({1, 0}, {row({{kOne, -1}, {1, 1}}), row({{kOne, 10}, {0, 1}})});
}

struct Contender {
  std::string name;
  std::unique_ptr<Engine> (*make)();
  double accuracy = 0;
};

void PrintTo(const Contender& contender, std::ostream* out) {
  *out << contender.name;
}

class EveryEngine : public ::testing::TestWithParam<Contender> {
 protected:
  static Candidate solved(const ConeProgram& program, const Observer& observer = {},
                          const Limits& limits = {}) {
    return GetParam().make()->solve(program, limits, observer);
  }
  static double accuracy() { return GetParam().accuracy; }
};

TEST_P(EveryEngine, HasItsName) {
  EXPECT_EQ(GetParam().make()->name(), GetParam().name);
}

TEST_P(EveryEngine, FindsTheOptimumAndItsMultipliers) {
  const Candidate candidate = solved(smallest_eigenvalue());
  expect_optimal(smallest_eigenvalue(), candidate, accuracy());
  EXPECT_NEAR(candidate.last.point[0], kSmallestEigenvalue, accuracy());
  EXPECT_NEAR(candidate.last.bound, kSmallestEigenvalue, accuracy());
}

TEST_P(EveryEngine, TellsWhatHasNoBoundAndWhatHasNoPoint) {
  // y_0 >= 0; y_0 >= 1, y_0 <= 0
  EXPECT_EQ(solved(testing::program({1}, {row({{0, 1}})})).reason, StopReason::kUnbounded);
  EXPECT_EQ(solved(testing::program({1}, {row({{kOne, -1}, {0, 1}}), row({{0, -1}})})).reason,
            StopReason::kInfeasible);
}

TEST_P(EveryEngine, StopsAtTheIterationLimit) {
  const Candidate limited = solved(smallest_eigenvalue(), {}, {.max_iterations = 2});
  EXPECT_EQ(limited.reason, StopReason::kIterationLimit);
  EXPECT_EQ(limited.last.iteration, 2);
}

TEST_P(EveryEngine, ShowsEveryIterateAndStopsWhenTheObserverIsSatisfied) {
  int seen = 0;
  const Candidate accepted = solved(smallest_eigenvalue(), [&](const Iterate& iterate) {
    EXPECT_EQ(iterate.iteration, ++seen);
    return seen == 3;
  });
  EXPECT_EQ(accepted.reason, StopReason::kAccepted);
  EXPECT_EQ(accepted.last.iteration, 3);
  EXPECT_EQ(seen, 3);
}

TEST_P(EveryEngine, TakesEquationsOutAndTheAnswerIsThatOfTheWholeProgram) {
  ConeProgram program = two_rows();
  program.equations = {row({{kOne, -4}, {0, 1}, {1, 1}})};  // y_0 + y_1 = 4
  int seen = 0;
  const Candidate candidate = solved(program, [&](const Iterate& iterate) {
    ++seen;
    EXPECT_EQ(iterate.point.size(), 2U);
    EXPECT_NEAR(iterate.point[0] + iterate.point[1], 4, 1e-12);
    EXPECT_NEAR(iterate.value, iterate.point[0], 1e-10);
    return false;
  });
  EXPECT_GT(seen, 0);
  ASSERT_EQ(candidate.last.point.size(), 2U);
  EXPECT_NEAR(candidate.last.point[0], 3, accuracy());
  EXPECT_NEAR(candidate.last.point[1], 1, accuracy());
  EXPECT_NEAR(candidate.last.value, 3, accuracy());
  EXPECT_EQ(candidate.last.multipliers.size(), 2U);
}

TEST_P(EveryEngine, EquationsMayLeaveNothingToChoose) {
  // y_0 = 2, 3 - y_0 >= 0
  ConeProgram program = testing::program({1}, {row({{kOne, 3}, {0, -1}})});
  program.equations = {row({{kOne, -2}, {0, 1}})};
  const Candidate candidate = solved(program);
  EXPECT_NEAR(candidate.last.point[0], 2, 1e-15);
  EXPECT_NEAR(candidate.last.value, 2, 1e-15);
  EXPECT_EQ(candidate.last.multipliers.size(), 1U);
}

TEST_P(EveryEngine, AnUnknownThatNoConeFeelsIsZero) {
  ConeProgram program = smallest_eigenvalue();
  program.unknowns = 3;
  program.objective = {1, 0, 0};
  const Candidate candidate = solved(program);
  EXPECT_EQ(candidate.reason, StopReason::kConverged);
  ASSERT_EQ(candidate.last.point.size(), 3U);
  EXPECT_NEAR(candidate.last.point[0], kSmallestEigenvalue, accuracy());
  EXPECT_EQ(candidate.last.point[1], 0);
  program.objective = {1, 0, 2};
  EXPECT_EQ(solved(program).reason, StopReason::kUnbounded);
}

TEST_P(EveryEngine, NumbersThatAreNotFiniteAreTrouble) {
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

TEST_P(EveryEngine, EquationsThatAreNotNumbersAreTrouble) {
  for (const double odd : {std::nan(""), HUGE_VAL}) {
    ConeProgram program = two_rows();
    program.equations = {row({{kOne, -4}, {0, odd}, {1, 1}})};
    const Candidate candidate = solved(program);
    EXPECT_EQ(candidate.reason, StopReason::kTrouble);
    EXPECT_EQ(candidate.last.point.size(), 2U);
    EXPECT_EQ(candidate.last.multipliers.size(), 2U);
    program.equations = {row({{kOne, odd}, {0, 1}, {1, 1}})};
    EXPECT_EQ(solved(program).reason, StopReason::kTrouble);
  }
}

INSTANTIATE_TEST_SUITE_P(Engines, EveryEngine,
                         ::testing::Values(Contender{"cones", make_cones_engine, 1e-8},
                                           Contender{"csdp", make_csdp_engine, 1e-7}),
                         [](const auto& contender) { return contender.param.name; });

}  // namespace
}  // namespace sdpsol
