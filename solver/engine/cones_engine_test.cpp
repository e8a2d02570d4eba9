// What this engine is made for, and what it leaves to others; what it shares with every
// other is in engine_contract_test.cpp.
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
using testing::solved_by_cones;

void expect_unsuited(const ConeProgram& program) {
  int seen = 0;
  const Candidate candidate = solved_by_cones(program, [&](const Iterate&) { return ++seen > 0; });
  EXPECT_EQ(candidate.reason, StopReason::kUnsuited);
  EXPECT_EQ(seen, 0);
  EXPECT_EQ(candidate.last.iteration, 0);
  EXPECT_EQ(candidate.last.point, std::vector<double>(program.objective.size()));
  EXPECT_EQ(candidate.last.multipliers,
            std::vector<double>(multiplier_offsets(program.cones).back()));
}

TEST(ConesEngine, SolvesContactsOfAnyNumber) {
  Numbers numbers(1);
  for (const int count : {3, 4, 12, 20}) {
    const ConeProgram program = contacts_program(numbers, {count, true, false, 0});
    expect_optimal(program, solved_by_cones(program), 1e-6);
  }
}

TEST(ConesEngine, RowsOfConstantsAreInNobodysWay) {
  const auto bound = row({{kOne, 1}, {0, -1}});
  const ConeProgram constant = testing::program({1}, {bound, row({{kOne, 2}})});
  expect_optimal(constant, solved_by_cones(constant));
  const ConeProgram nothing = testing::program({1}, {row({}), bound});
  expect_optimal(nothing, solved_by_cones(nothing));
}

TEST(ConesEngine, WithoutAnObjectiveItFindsAPointInside) {
  const ConeProgram program = testing::program({0}, {row({{kOne, 1}, {0, -1}}), row({{0, 1}})});
  const Candidate candidate = solved_by_cones(program);
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
  EXPECT_NE(solved_by_cones(block(kLargestDenseBlock)).reason, StopReason::kUnsuited);
  expect_unsuited(block(kLargestDenseBlock + 1));
  expect_unsuited(block(200));
}

TEST(ConesEngine, TakesLargeSecondOrderCones) {
  // maximise the sum of y in a ball
  const std::vector<double> sum(30, 1.0);
  std::vector<Form> beside;
  for (std::int32_t k = 0; k < 30; ++k) beside.push_back({{k, 1}});
  const ConeProgram program = testing::program(sum, {arrow(3, {{kOne, 1}}, beside)});
  const Candidate candidate = solved_by_cones(program);
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
  ASSERT_GT(1100.0 * kUnknowns * kUnknowns, kMaxWork);
  expect_unsuited(program);
}

}  // namespace
}  // namespace sdpsol
