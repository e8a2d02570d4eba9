// How the engine ends: what a candidate holds, and programs that it cannot solve.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cmath>

#include "solver/engine/cones/range_system.h"
#include "solver/engine/cones/test_candidates.h"
#include "solver/engine/cones/test_contacts.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"

namespace sdpsol {
namespace {

using testing::arrow;
using testing::Form;
using testing::kOne;
using testing::matrix;
using testing::Numbers;
using testing::row;
using testing::solved_by_cones;

TEST(ConesEngineEnd, TheMultipliersOfAnInfeasibleCandidateAreACertificate) {
  // 1 >= |(x, 2)|, in the observer's iterate and in the candidate
  const ConeProgram program =
      testing::program({1}, {arrow(2, {{kOne, 1}}, {{{0, 1}}, {{kOne, 2}}})});
  Iterate last_told;
  const Candidate candidate = solved_by_cones(program, [&](const Iterate& iterate) {
    last_told = iterate;
    return false;
  });
  ASSERT_EQ(candidate.reason, StopReason::kInfeasible);
  const auto ratio = [&](const Iterate& iterate) {
    const auto sums = testing::weighed(program, iterate);
    return std::fabs(sums[0] / sums[1]);
  };
  EXPECT_LE(ratio(last_told), 1e-7);
  EXPECT_LE(ratio(candidate.last), 1e-7);
}

TEST(ConesEngineEnd, TheBoundOfACandidateIsThatOfItsMultipliers) {
  const ConeProgram program =
      testing::program({1}, {matrix(2, {{{kOne, 2}, {0, -1}}, {{kOne, 1}}, {{kOne, 3}, {0, -1}}})});
  const Candidate candidate = solved_by_cones(program);
  EXPECT_NEAR(candidate.last.bound, testing::weighed(program, candidate.last)[1], 1e-12);
  const ConeProgram rows = testing::program({1}, {row({{kOne, -1}, {0, 1}}), row({{0, -1}})});
  const Candidate infeasible = solved_by_cones(rows);
  EXPECT_NEAR(infeasible.last.bound, testing::weighed(rows, infeasible.last)[1], 1e-12);
}

TEST(ConesEngineEnd, TheCandidateIsTheIterateThatTheObserverAccepted) {
  const ConeProgram rows = testing::program({1}, {row({{kOne, -1}, {0, 1}}), row({{0, -1}})});
  int last = 0;
  solved_by_cones(rows, [&](const Iterate& iterate) {
    last = iterate.iteration;
    return false;
  });
  for (int at = 1; at <= last; ++at) {
    Iterate told;
    const Candidate candidate = solved_by_cones(rows, [&](const Iterate& iterate) {
      told = iterate;
      return iterate.iteration == at;
    });
    EXPECT_EQ(candidate.reason, StopReason::kAccepted);
    EXPECT_EQ(candidate.last.multipliers, told.multipliers) << "iteration " << at;
  }
}

TEST(ConesEngineEnd, WhatHasNoPointIsTold) {
  // The reference tells all of them.
  Numbers numbers(9);
  int told = 0;
  for (int round = 0; round < 100; ++round) {
    const ConeProgram program = numbers.mixture(3);
    ASSERT_EQ(make_csdp_engine()->solve(program, {}, {}).reason, StopReason::kInfeasible);
    told += solved_by_cones(program).reason == StopReason::kInfeasible;
  }
  EXPECT_GE(told, 95);
}

/// minimise the sum of l with f_i(z) + l_i >= 0 and |z| <= 1: least where every l_i is -f_i,
/// the sum of the f_i largest in the box.
TEST(ConesEngineEnd, AnUnknownOfOneCoordinateIsNoTrouble) {
  Numbers numbers(10);
  constexpr std::int32_t kWide = 15;
  constexpr std::int32_t kRows = 20;
  ConeProgram program = testing::program(std::vector<double>(kWide + kRows, 0.0), {});
  std::vector<double> sums(kWide, 0.0);
  for (std::int32_t i = 0; i < kRows; ++i) {
    Form form;
    for (std::int32_t k = 0; k < kWide; ++k) {
      form.emplace_back(k, numbers.number());
      sums[static_cast<std::size_t>(k)] += form.back().second;
    }
    form.emplace_back(kWide + i, 1);
    program.cones.push_back(row(form));
    program.objective[static_cast<std::size_t>(kWide) + static_cast<std::size_t>(i)] = -1;
  }
  double optimum = 0;
  for (std::int32_t k = 0; k < kWide; ++k) {
    program.cones.push_back(row({{kOne, 1}, {k, 1}}));
    program.cones.push_back(row({{kOne, 1}, {k, -1}}));
    optimum += std::fabs(sums[static_cast<std::size_t>(k)]);
  }
  EXPECT_NEAR(make_csdp_engine()->solve(program, {}, {}).last.value, optimum, 1e-6 * optimum);
  const Candidate candidate = solved_by_cones(program);
  EXPECT_EQ(candidate.reason, StopReason::kConverged);
  EXPECT_NEAR(candidate.last.value, optimum, 1e-6 * optimum);
}

TEST(ConesEngineEnd, ASizeWithoutHopeTakesLittleMemory) {
  // 20,000 rows of ten among 4,000 unknowns: 9 MB of coefficients
  constexpr std::int32_t kUnknowns = 4000;
  ConeProgram program = testing::program(std::vector<double>(kUnknowns, 1.0), {});
  for (std::int32_t i = 0; i < 20000; ++i) {
    Form form = {{kOne, 1}};
    for (std::int32_t k = 0; k < 10; ++k) {
      form.emplace_back((7 * i + k * k * k) % kUnknowns, 1 + 0.001 * ((i + k) % 97));
    }
    program.cones.push_back(row(form));
  }
  const auto peak = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
  };
  const auto before = peak();
  EXPECT_EQ(solved_by_cones(program).reason, StopReason::kUnsuited);
  EXPECT_LE(peak() - before, 100) << "MB";
}

TEST(ConesEngineLayout, TermsThatCancelAreGone) {
  // [t + x, y; y, t - x]: (a - c)/2 is x alone, (a + c)/2 is t alone
  const cones::Layout layout(
      testing::program({0, 0, 0}, {matrix(2, {{{0, 1}, {1, 1}}, {{2, 1}}, {{0, 1}, {1, -1}}})}));
  EXPECT_EQ(layout.linear.terms.size(), 3U);
  // x - x beside the diagonal of an arrow is nothing
  const cones::Layout arrow_in_pieces(testing::program(
      {0, 0, 0},
      {matrix(3, {{{0, 1}}, {{1, 1}, {1, -1}}, {{1, 1}}, {{0, 1}}, {{2, 1}}, {{0, 1}}})}));
  EXPECT_EQ(arrow_in_pieces.parts[0].kind, cones::Part::Kind::kArrow);
}

}  // namespace
}  // namespace sdpsol
