// Being undecided is not a way out: problems with room and problems with a
// certificate inside its cones must be decided, and none may be decided wrongly.
#include <gtest/gtest.h>

#include <cmath>

#include "solver/check/evaluate.h"
#include "solver/check/infeasible.h"
#include "solver/decide/decide.h"
#include "solver/decide/test_random_problems.h"
#include "solver/engine/auto_engine.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"
#include "solver/problem/noise.h"

namespace sdpsol {
namespace {

using testing::RandomProblems;
using Contradiction = RandomProblems::Contradiction;

class RandomProblemsTest : public ::testing::TestWithParam<std::string> {
 protected:
  Outcome decided(const Problem& problem) { return decide(problem, *engine_, {}); }

  std::unique_ptr<Engine> cones_ = make_cones_engine();
  std::unique_ptr<Engine> csdp_ = make_csdp_engine();
  std::unique_ptr<Engine> engine_ =
      GetParam() == "auto" ? std::make_unique<AutoEngine>(*cones_, *csdp_) : make_csdp_engine();
};

TEST_P(RandomProblemsTest, PlantedPointsAreFound) {
  RandomProblems random(102);
  int decided_ones = 0;
  for (int round = 0; round < 1000; ++round) {
    std::vector<double> point;
    const Problem problem = random.with_planted_point(&point);
    for (const Block& block : problem.blocks) {
      ASSERT_GE(relative_room(evaluate(block, point)), 1e-4);
    }
    const Outcome outcome = decided(problem);
    ASSERT_NE(outcome.verdict, Verdict::kInfeasible) << "round " << round;
    decided_ones += outcome.verdict == Verdict::kFeasible ? 1 : 0;
  }
  EXPECT_GE(decided_ones, 999);
}

TEST_P(RandomProblemsTest, PlantedCertificatesAreFound) {
  for (const auto kind : {Contradiction::kNegativeConstant, Contradiction::kZeroConstant}) {
    RandomProblems random(103);
    int decided_ones = 0;
    for (int round = 0; round < 1000; ++round) {
      const Problem problem = random.with_planted_certificate(kind);
      const Outcome outcome = decided(problem);
      ASSERT_NE(outcome.verdict, Verdict::kFeasible) << "round " << round;
      decided_ones += outcome.verdict == Verdict::kInfeasible ? 1 : 0;
      if (outcome.certificate.empty()) continue;
      ASSERT_EQ(disprove(problem, outcome.certificate), Disproof::kInfeasible) << "round " << round;
      const Weights::Sums sums = Weights(problem, outcome.certificate).sums();
      for (std::size_t k = 1; k < sums.values.size(); ++k) {
        ASSERT_LE(std::fabs(static_cast<double>(sums.values[k])), 1e-9 * sums.sizes[k])
            << "round " << round;
      }
    }
    EXPECT_GE(decided_ones, 999);
  }
}

TEST_P(RandomProblemsTest, OtherUnitsChangeNoVerdict) {
  RandomProblems random(104);
  int same = 0;
  int asked = 0;
  for (int round = 0; round < 600; ++round) {
    Problem problem = round % 3 == 0 ? random.with_planted_point()
                      : round % 3 == 1
                          ? random.with_planted_certificate(Contradiction::kNegativeConstant)
                          : random.with_planted_certificate(Contradiction::kZeroConstant);
    problem.big_m = 1e12;  // no unit brings a point to the box
    const Problem scaled = testing::in_other_units(problem, random);
    if (!noisy_conditions(scaled).empty()) continue;
    const Verdict expected = round % 3 == 0 ? Verdict::kFeasible : Verdict::kInfeasible;
    const Verdict verdict = decided(scaled).verdict;
    ++asked;
    ASSERT_TRUE(verdict == expected || verdict == Verdict::kUndetermined) << "round " << round;
    same += verdict == expected ? 1 : 0;
  }
  EXPECT_GE(asked, 590);
  EXPECT_GE(same, asked - 1);
}

INSTANTIATE_TEST_SUITE_P(Engine, RandomProblemsTest, ::testing::Values("auto", "csdp"),
                         [](const auto& tested) { return tested.param; });

}  // namespace
}  // namespace sdpsol
