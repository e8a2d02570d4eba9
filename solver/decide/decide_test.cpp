// Outcomes of problems whose truth is known on paper: points, reasons, conditions
// and bounds. The verdicts that border cases must be given are among the tests of
// definitions.
#include "solver/decide/decide.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solver/check/infeasible.h"
#include "solver/engine/csdp_engine.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::Form;
using testing::kEqual;
using testing::kNonStrict;
using testing::kStrict;
using testing::kX;
using testing::ProblemBuilder;

Outcome decided(const ProblemBuilder& builder) {
  const auto engine = make_csdp_engine();
  return decide(builder.build(), *engine, {});
}

const Form kMinusX{0, {{0, -1}}};

TEST(Decide, BothSignsNotStrictLeaveZero) {
  const Outcome outcome = decided(ProblemBuilder(1).row(kNonStrict, kX).row(kNonStrict, kMinusX));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_EQ(outcome.point[0], 0);
}

TEST(Decide, ImpliedEquationLeavesRoomForTheRest) {
  // x - y >= 0, y - x >= 0, x >= 1
  const Outcome outcome = decided(ProblemBuilder(2)
                                      .row(kNonStrict, {0, {{0, 1}, {1, -1}}})
                                      .row(kNonStrict, {0, {{0, -1}, {1, 1}}})
                                      .row(kNonStrict, {-1, {{0, 1}}}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_EQ(outcome.point[0], outcome.point[1]);
}

TEST(Decide, TheCertificateOfASingularMatrixSpeaksOfTheWholeMatrix) {
  // [1, 1, x; 1, 1, x; x, x, x - 2] >= 0 is [1, x; x, x - 2] >= 0: x^2 <= x - 2
  const Problem problem =
      ProblemBuilder(1)
          .matrix(kNonStrict, 3, {{1, {}}, {1, {}}, kX, {1, {}}, kX, {-2, {{0, 1}}}})
          .build();
  const auto engine = make_csdp_engine();
  const Outcome outcome = decide(problem, *engine, {});
  ASSERT_EQ(outcome.verdict, Verdict::kInfeasible);
  ASSERT_EQ(outcome.certificate.size(), 1U);
  EXPECT_EQ(outcome.certificate[0].factor.rows(), 3);
  EXPECT_EQ(disprove(problem, outcome.certificate), Disproof::kInfeasible);
}

TEST(Decide, ABorderlineIsProvenByItsCertificate) {
  // 0.999999 < x < 1, and y > 3 beside it
  const Problem problem = ProblemBuilder(2)
                              .row(kStrict, {0, {{0, 1}}})
                              .row(kStrict, {1, {{0, -1}}})
                              .row(kStrict, {-0.999999, {{0, 1}}})
                              .row(kStrict, {-3, {{1, 1}}})
                              .build();
  const auto engine = make_csdp_engine();
  const Outcome outcome = decide(problem, *engine, {});
  ASSERT_EQ(outcome.verdict, Verdict::kUndetermined);
  EXPECT_EQ(disprove(problem, outcome.certificate), Disproof::kBorderline);
}

TEST(Decide, EquationImpliedByThreeRowsIsFound) {
  // x >= 0, y >= 0, -x - y >= 0, z > 0: only x = y = 0
  const Outcome outcome = decided(ProblemBuilder(3)
                                      .row(kNonStrict, {0, {{0, 1}}})
                                      .row(kNonStrict, {0, {{1, 1}}})
                                      .row(kNonStrict, {0, {{0, -1}, {1, -1}}})
                                      .row(kStrict, {0, {{2, 1}}}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_NEAR(outcome.point[0], 0, 1e-12);
  EXPECT_GT(outcome.point[2], 0);
}

TEST(Decide, NamesTheConditionsThatLeaveNoRoom) {
  // y > 0, x > 1, x < 1.000001, y < 5
  const Outcome outcome = decided(ProblemBuilder(2)
                                      .row(kStrict, {0, {{1, 1}}})
                                      .row(kStrict, {-1, {{0, 1}}})
                                      .row(kStrict, {1.000001, {{0, -1}}})
                                      .row(kStrict, {5, {{1, -1}}}));
  EXPECT_EQ(outcome.reason, "borderline: no point has more room than 4.4e-6");
  EXPECT_EQ(outcome.conditions, (std::vector<std::int32_t>{1, 2}));
}

TEST(Decide, NamesTheConditionsThatLeaveNothingInTheBox) {
  // y > 0, x > 20000, y < 5
  const Outcome outcome = decided(ProblemBuilder(2)
                                      .row(kStrict, {0, {{1, 1}}})
                                      .row(kStrict, {-20000, {{0, 1}}})
                                      .row(kStrict, {5, {{1, -1}}}));
  EXPECT_EQ(outcome.reason, "no point with |v| <= BIGM");
  EXPECT_EQ(outcome.conditions, std::vector<std::int32_t>{1});
}

TEST(Decide, NoiseCoefficientDecidesNothing) {
  // 1e-13*x > 0, x < 1
  const Outcome outcome =
      decided(ProblemBuilder(1).row(kStrict, {0, {{0, 1e-13}}}).row(kStrict, {1, {{0, -1}}}));
  EXPECT_EQ(outcome.verdict, Verdict::kUndetermined);
  EXPECT_EQ(outcome.reason, "decided by coefficients at noise level");
  EXPECT_EQ(outcome.conditions, std::vector<std::int32_t>{0});
}

TEST(Decide, CancelledCoefficientDecidesNothing) {
  // 0.1*x + 0.2*x - 0.3*x > 0
  Problem problem = ProblemBuilder(1).row(kStrict, {0, {{0, 0.1 + 0.2 - 0.3}}}).build();
  problem.blocks[0].terms[0].magnitude = 0.6;
  const auto engine = make_csdp_engine();
  EXPECT_EQ(decide(problem, *engine, {}).verdict, Verdict::kUndetermined);
}

TEST(Decide, CancelledConstantDecidesNothing) {
  // x > 1e12 + 0.1 - 1e12, x < 0.1
  Problem problem = ProblemBuilder(1)
                        .row(kStrict, {-(1e12 + 0.1 - 1e12), {{0, 1}}})
                        .row(kStrict, {0.1, {{0, -1}}})
                        .build();
  problem.blocks[0].terms[0].magnitude = 2e12;
  const auto engine = make_csdp_engine();
  EXPECT_EQ(decide(problem, *engine, {}).verdict, Verdict::kUndetermined);
}

TEST(Decide, ConstantsThatAlmostCancelDecideNothing) {
  // 0.1 + 0.2 - 0.3 == 0, with and without an unknown beside it
  for (const int unknowns : {0, 1}) {
    Problem problem = ProblemBuilder(unknowns).row(kEqual, {0.1 + 0.2 - 0.3, {}}).build();
    problem.blocks[0].terms[0].magnitude = 0.6;
    const auto engine = make_csdp_engine();
    EXPECT_EQ(decide(problem, *engine, {}).verdict, Verdict::kUndetermined);
  }
}

TEST(Decide, AbsurdNumbersEndInNoVerdict) {
  // [x, 1.7e267; 1.7e267, 2*y] > 0
  EXPECT_EQ(decided(ProblemBuilder(2).matrix(
                        kStrict, 2, {{-0.655, {{1, 2.41}}}, {-1.71e267, {}}, {0, {{1, 2.2}}}}))
                .verdict,
            Verdict::kUndetermined);
}

TEST(Decide, EquationsAreHeldExactly) {
  // x + y == 2, x - y == 0, x < 3
  const Outcome outcome = decided(ProblemBuilder(2)
                                      .row(kEqual, {-2, {{0, 1}, {1, 1}}})
                                      .row(kEqual, {0, {{0, 1}, {1, -1}}})
                                      .row(kStrict, {3, {{0, -1}}}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_NEAR(outcome.point[0], 1, 1e-12);
  EXPECT_NEAR(outcome.point[1], 1, 1e-12);
}

TEST(Decide, LargestSmallestEigenvalueHasItsKnownValue) {
  // maximise t: [2,1;1,3] - t*I > 0: t -> (5 - sqrt 5) / 2
  const Outcome outcome = decided(ProblemBuilder(1)
                                      .matrix(kStrict, 2, {{2, {{0, -1}}}, {1, {}}, {3, {{0, -1}}}})
                                      .maximise({1}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  const double exact = (5 - std::sqrt(5.0)) / 2;
  EXPECT_NEAR(*outcome.objective, exact, 1e-7 * exact);
  EXPECT_GE(*outcome.bound, exact);
  EXPECT_LT(*outcome.objective, exact);
}

TEST(Decide, ObjectiveWithoutBoundStopsAtTheBox) {
  const Outcome outcome = decided(ProblemBuilder(1).row(kStrict, kX).maximise({1}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_TRUE(outcome.limited_by_box);
  EXPECT_NEAR(*outcome.objective, 15000, 15000 * 1e-6);
}

TEST(Decide, IterationLimitIsSaid) {
  const auto engine = make_csdp_engine();
  // [x-3,y;y,8-x] > 0, y > 1
  const Problem problem = ProblemBuilder(2)
                              .matrix(kStrict, 2, {{-3, {{0, 1}}}, {0, {{1, 1}}}, {8, {{0, -1}}}})
                              .row(kStrict, {-1, {{1, 1}}})
                              .build();
  const Outcome outcome = decide(problem, *engine, {.max_iterations = 1});
  EXPECT_EQ(outcome.verdict, Verdict::kUndetermined);
  EXPECT_EQ(outcome.reason, "the engine reached MAXITER iterations");
}

Outcome decided_without_box(const ProblemBuilder& builder) {
  Problem problem = builder.build();
  problem.boxed = false;
  const auto engine = make_csdp_engine();
  return decide(problem, *engine, {});
}

TEST(DecideWithoutBox, TheOptimumMayLieAnywhere) {
  // minimise x with x >= 1e6
  const Outcome outcome =
      decided_without_box(ProblemBuilder(1).row(kNonStrict, {-1e6, {{0, 1}}}).maximise({-1}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_NEAR(*outcome.objective, -1e6, 0.1);
  EXPECT_NEAR(*outcome.bound, -1e6, 0.1);
  EXPECT_GE(*outcome.bound, *outcome.objective);
  EXPECT_FALSE(outcome.limited_by_box);
  EXPECT_EQ(outcome.bound_reach, HUGE_VAL);
}

TEST(DecideWithoutBox, AnObjectiveWithoutBoundHasItsValueInTheBox) {
  // maximise x with [x, 1; 1, 1] >= 0
  const Outcome outcome = decided_without_box(
      ProblemBuilder(1).matrix(kNonStrict, 2, {kX, {1, {}}, {1, {}}}).maximise({1}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_TRUE(outcome.limited_by_box);
  EXPECT_NEAR(*outcome.objective, 15000, 0.1);
}

TEST(DecideWithoutBox, AnUnknownOfTheObjectiveAloneHasItsValueInTheBox) {
  // maximise y with x >= 1
  const Outcome outcome =
      decided_without_box(ProblemBuilder(2).row(kNonStrict, {-1, {{0, 1}}}).maximise({0, 1}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_TRUE(outcome.limited_by_box);
  EXPECT_NEAR(*outcome.objective, 15000, 0.1);
}

TEST(DecideWithoutBox, NoPointIsLostForBeingFarAway) {
  EXPECT_EQ(decided_without_box(ProblemBuilder(1).row(kStrict, {-1e7, {{0, 1}}})).verdict,
            Verdict::kFeasible);
}

TEST(DecideWithoutBox, MultipliersWithoutInteriorProveABoundInTheBox) {
  // minimise x + y with [x + u, 1 + u; 1 + u, y + u] >= 0: only multipliers with
  // [1, 1]*Y*[1; 1] = 0 balance u, and none of them is regular
  const Outcome outcome = decided_without_box(
      ProblemBuilder(3)
          .matrix(kNonStrict, 2, {{0, {{0, 1}, {2, 1}}}, {1, {{2, 1}}}, {0, {{1, 1}, {2, 1}}}})
          .maximise({-1, -1, 0}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_NEAR(*outcome.objective, -2, 1e-5);
  EXPECT_GE(*outcome.bound, *outcome.objective);
  EXPECT_NEAR(*outcome.bound, -2, 1e-4);
  EXPECT_GE(outcome.bound_reach, 15000);
}

/// Counts the runs of the engine behind it.
class CountingEngine : public Engine {
 public:
  std::string_view name() const override { return "counting"; }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    ++runs;
    return engine_->solve(program, limits, observer);
  }
  int runs = 0;

 private:
  std::unique_ptr<Engine> engine_ = make_csdp_engine();
};

TEST(Decide, AnInfeasibleMaximisationTakesOneRun) {
  // maximise x with [x, 2; 2, 1 - x] > 0
  CountingEngine engine;
  const Problem problem =
      ProblemBuilder(1).matrix(kStrict, 2, {kX, {2, {}}, {1, {{0, -1}}}}).maximise({1}).build();
  const Outcome outcome = decide(problem, engine, {});
  EXPECT_EQ(outcome.verdict, Verdict::kInfeasible);
  EXPECT_EQ(engine.runs, 1);
  EXPECT_EQ(disprove(problem, outcome.certificate), Disproof::kInfeasible);
}

TEST(Decide, ALargeSparseMatrixKeepsItsBound) {
  // minimise the sum of x over [diag(x), ...] - W >= 0 with W a cycle of 30: the bound
  // is proven from a few of the eigenvectors of the multiplier
  constexpr std::int32_t kSize = 30;
  std::vector<Form> upper;
  for (std::int32_t i = 0; i < kSize; ++i) {
    for (std::int32_t j = i; j < kSize; ++j) {
      Form entry;
      if (i == j) entry.terms = {{i, 1}};
      if (j == i + 1 || (i == 0 && j == kSize - 1)) entry.constant = 1;
      upper.push_back(entry);
    }
  }
  const Outcome outcome = decided(ProblemBuilder(kSize)
                                      .matrix(kNonStrict, kSize, upper)
                                      .maximise(std::vector<double>(kSize, -1.0)));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  // x = -(smallest eigenvalue of the cycle) = 2 for an even one
  EXPECT_NEAR(*outcome.objective, -2.0 * kSize, 1e-5);
  EXPECT_NEAR(*outcome.bound, -2.0 * kSize, 1e-5);
}

TEST(Decide, WhatOnlyTheBoxHoldsIsSaidEvenIfItHardlyMatters) {
  // minimise x - 100*z with [x, 100; 100, y] >= 0 and z <= 100: x falls as y grows
  const Outcome outcome = decided(ProblemBuilder(3)
                                      .matrix(kNonStrict, 2, {kX, {100, {}}, {0, {{1, 1}}}})
                                      .row(kNonStrict, {100, {{2, -1}}})
                                      .maximise({-1, 0, 100}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_TRUE(outcome.limited_by_box);
}

TEST(DecideWithoutBox, AnObjectiveOfNothingHasItsBoundEverywhere) {
  const Outcome outcome = decided_without_box(
      ProblemBuilder(1).matrix(kNonStrict, 2, {{6, {}}, {}, {6, {}}}).maximise({0}));
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_EQ(*outcome.bound, 0);
  EXPECT_EQ(outcome.bound_reach, HUGE_VAL);
}

}  // namespace
}  // namespace sdpsol
