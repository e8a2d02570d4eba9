// Engines propose, the checker decides: no answer of an engine, however wrong,
// may become a wrong verdict.
#include <gtest/gtest.h>

#include <map>

#include "solver/check/test_known_optimum.h"
#include "solver/decide/decide.h"
#include "solver/decide/test_lying_engine.h"
#include "solver/decide/test_random_problems.h"
#include "solver/dense/symmetric_eigen.h"
#include "solver/engine/csdp_engine.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::RandomProblems;
using Contradiction = RandomProblems::Contradiction;

class LyingEngineTest : public ::testing::Test {
 protected:
  Outcome decided(const Problem& problem) {
    Outcome outcome = decide(problem, liar_, {});
    ++verdicts_[outcome.verdict];
    return outcome;
  }

  /// A liar that is never believed would hide what this test is for.
  void expect_some_of_each() {
    EXPECT_GT(verdicts_[Verdict::kUndetermined], 50);
    EXPECT_GT(verdicts_[Verdict::kFeasible] + verdicts_[Verdict::kInfeasible], 50);
  }

  std::unique_ptr<Engine> honest_ = make_csdp_engine();
  testing::LyingEngine liar_{*honest_, 201};
  std::map<Verdict, int> verdicts_;
};

TEST_F(LyingEngineTest, LinearProblemsAreNeverDecidedWrongly) {
  RandomProblems random(202);
  for (int round = 0; round < 2500; ++round) {
    const int unknowns = random.uniform(1, 4);
    const auto rows = random.linear_rows(unknowns);
    const Verdict wrong =
        testing::exactly_feasible(rows) ? Verdict::kInfeasible : Verdict::kFeasible;
    ASSERT_NE(decided(testing::problem_of(rows, unknowns)).verdict, wrong) << "round " << round;
  }
  expect_some_of_each();
}

TEST_F(LyingEngineTest, PlantedPointsAreNeverDenied) {
  RandomProblems random(203);
  for (int round = 0; round < 500; ++round) {
    ASSERT_NE(decided(random.with_planted_point()).verdict, Verdict::kInfeasible)
        << "round " << round;
  }
  expect_some_of_each();
}

TEST_F(LyingEngineTest, PlantedCertificatesAreNeverDenied) {
  RandomProblems random(204);
  for (int round = 0; round < 1000; ++round) {
    const auto kind =
        round % 2 == 0 ? Contradiction::kNegativeConstant : Contradiction::kZeroConstant;
    ASSERT_NE(decided(random.with_planted_certificate(kind)).verdict, Verdict::kFeasible)
        << "round " << round;
  }
  expect_some_of_each();
}

TEST_F(LyingEngineTest, ObjectivesOfLinearProblemsStayWithinTheirBounds) {
  std::mt19937 random(205);
  int loose = 0;
  for (int round = 0; round < 1000; ++round) {
    const testing::KnownOptimum known = testing::random_known_optimum(random);
    const Outcome outcome = decided(known.problem);
    ASSERT_NE(outcome.verdict, Verdict::kInfeasible) << "round " << round;
    if (outcome.verdict != Verdict::kFeasible) continue;
    // The point may be the rounding of one on the border.
    ASSERT_LE(*outcome.objective, known.value + 1e-9) << "round " << round;
    ASSERT_GE(*outcome.bound, known.value) << "round " << round;
    loose += *outcome.bound > known.value + 1e-3 ? 1 : 0;
  }
  // The rows alone lead to a point whatever the liar says; his bounds are his own.
  EXPECT_GT(verdicts_[Verdict::kFeasible], 500);
  EXPECT_GT(loose, 50);
}

TEST_F(LyingEngineTest, ObjectivesOfMatrixProblemsStayWithinTheirBounds) {
  // maximise t with A - t*I > 0: the smallest eigenvalue of A
  RandomProblems random(206);
  for (int round = 0; round < 500; ++round) {
    const int n = random.uniform(2, 5);
    Eigen::MatrixXd a(n, n);
    std::vector<testing::Form> upper;
    for (int i = 0; i < n; ++i) {
      for (int j = i; j < n; ++j) {
        a(i, j) = a(j, i) = random.uniform(-9, 9);
        upper.push_back({a(i, j), {}});
        if (i == j) upper.back().terms.emplace_back(0, -1);
      }
    }
    const double truth = symmetric_eigenvalues(a)[0];
    const Outcome outcome =
        decided(testing::ProblemBuilder(1).matrix(Sense::kStrict, n, upper).maximise({1}).build());
    ASSERT_NE(outcome.verdict, Verdict::kInfeasible) << "round " << round;
    if (outcome.verdict != Verdict::kFeasible) continue;
    // The eigenvalues have a rounding of their own.
    ASSERT_LE(*outcome.objective, truth + 1e-12) << "round " << round;
    ASSERT_GE(*outcome.bound, truth - 1e-12) << "round " << round;
  }
  expect_some_of_each();
}

/// Passes a point inside on its way, and then claims the farthest that it is let.
class BoundlessEngine final : public Engine {
 public:
  std::string_view name() const override { return "boundless"; }
  Candidate solve(const ConeProgram& program, const Limits&, const Observer& observer) override {
    Candidate candidate;
    candidate.last.point.assign(program.objective.size(), 0.0);
    candidate.last.multipliers.assign(multiplier_offsets(program.cones).back(), 0.0);
    observer(candidate.last);
    candidate.last.point.assign(program.objective.size(), ++runs_ == 1 ? 1e30 : 1.0);
    candidate.reason = StopReason::kUnbounded;
    return candidate;
  }

 private:
  int runs_ = 0;
};

TEST(BoundlessEngine, DoesNotMakeTheBoxTheLimitOfAPointFarFromIt) {
  // maximise x where -1 < x < 1
  const Problem problem = testing::ProblemBuilder(1)
                              .row(Sense::kStrict, {1, {{0, -1}}})
                              .row(Sense::kStrict, {1, {{0, 1}}})
                              .maximise({1})
                              .build();
  BoundlessEngine engine;
  const Outcome outcome = decide(problem, engine, {});
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_LT(*outcome.objective, 1);
  EXPECT_GE(*outcome.bound, 1);
  EXPECT_FALSE(outcome.limited_by_box);
}

/// Returns numbers, but not as many as are asked for.
class ShapelessEngine final : public Engine {
 public:
  explicit ShapelessEngine(std::size_t count) : count_(count) {}
  std::string_view name() const override { return "shapeless"; }
  Candidate solve(const ConeProgram&, const Limits&, const Observer& observer) override {
    Candidate candidate;
    candidate.last.point.assign(count_, 1.0);
    candidate.last.multipliers.assign(count_, 1.0);
    candidate.last.value = candidate.last.bound = 1;
    if (observer) observer(candidate.last);
    candidate.last.value = candidate.last.bound = -1;
    if (observer) observer(candidate.last);
    candidate.reason = StopReason::kInfeasible;
    return candidate;
  }

 private:
  std::size_t count_;
};

TEST(ShapelessEngine, LeavesProblemsOpen) {
  RandomProblems random(207);
  for (const std::size_t count : {0U, 1U, 1000U}) {
    ShapelessEngine engine(count);
    for (int round = 0; round < 20; ++round) {
      Problem problem = random.with_planted_point();
      if (round % 2 == 0) {
        problem.objective.emplace();
        problem.objective->cost.assign(static_cast<std::size_t>(problem.unknowns), 1.0);
      }
      EXPECT_NE(decide(problem, engine, {}).verdict, Verdict::kInfeasible);
    }
  }
}

}  // namespace
}  // namespace sdpsol
