// Outcomes made by hand: what is called wrong, and which bounds that breaks.
#include "tests/engines/judge.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "solver/decide/feasibility.h"
#include "solver/problem/test_problem.h"
#include "tests/engines/tally.h"

namespace sdpsol::testing {
namespace {

EngineProblem drawn(Truth truth, Sense sense = Sense::kStrict) {
  EngineProblem drawn{
      .problem = ProblemBuilder(1).row(sense, {1e8, {{0, 1.0}}}).maximise({1.0}).build(),
      .truth = truth,
      .has_room = truth != Truth::kUnknown};
  drawn.problem.big_m = 1e7;
  return drawn;
}

Outcome feasible(double objective = 0, double gap = 0) {
  Outcome outcome;
  outcome.verdict = Verdict::kFeasible;
  outcome.point = outcome.interior = {objective};
  outcome.objective = objective;
  outcome.bound = objective + gap;
  return outcome;
}

Outcome infeasible() {
  Outcome outcome;
  outcome.verdict = Verdict::kInfeasible;
  return outcome;
}

Outcome open(std::string reason = "numerical trouble", bool is_claim = false) {
  Outcome outcome;
  outcome.reason = std::move(reason);
  if (is_claim) outcome.certificate.resize(1);
  return outcome;
}

Outcome borderline() {
  return open(kNoRoomLeft, true);
}

Outcome empty_box() {
  return open("no point with |v| <= BIGM", true);
}

Judgement judged(Truth truth, const Outcome& first, const Outcome& reference) {
  return judge(drawn(truth), first, Fallback::kNotAsked, reference);
}

TEST(Claims, AreVerdictsAndReasonsThatAreProven) {
  EXPECT_EQ(claim_of(feasible()), Claim::kFeasible);
  EXPECT_EQ(claim_of(infeasible()), Claim::kInfeasible);
  EXPECT_EQ(claim_of(borderline()), Claim::kBorderline);
  EXPECT_EQ(claim_of(empty_box()), Claim::kEmptyBox);
  EXPECT_EQ(claim_of(open()), Claim::kNone);
}

TEST(Judge, FindsVerdictsAgainstThePlantedTruth) {
  EXPECT_TRUE(judged(Truth::kFeasible, infeasible(), feasible()).first_against_truth);
  EXPECT_TRUE(judged(Truth::kFeasible, empty_box(), feasible()).first_against_truth);
  EXPECT_TRUE(judged(Truth::kFeasible, borderline(), feasible()).first_against_truth);
  EXPECT_TRUE(judged(Truth::kInfeasible, feasible(), infeasible()).first_against_truth);
  EXPECT_TRUE(judged(Truth::kInfeasible, infeasible(), feasible()).reference_against_truth);
  EXPECT_FALSE(judged(Truth::kFeasible, feasible(), open()).wrong());
  EXPECT_FALSE(judged(Truth::kInfeasible, infeasible(), borderline()).wrong());
  EXPECT_FALSE(judged(Truth::kInfeasible, empty_box(), infeasible()).wrong());
}

TEST(Judge, FindsVerdictsAgainstEachOther) {
  EXPECT_TRUE(judged(Truth::kUnknown, feasible(), infeasible()).against_each_other);
  EXPECT_TRUE(judged(Truth::kUnknown, empty_box(), feasible()).against_each_other);
  EXPECT_TRUE(judged(Truth::kUnknown, borderline(), feasible()).against_each_other);
  EXPECT_FALSE(judged(Truth::kUnknown, open(), feasible()).against_each_other);
  EXPECT_FALSE(judged(Truth::kUnknown, infeasible(), borderline()).against_each_other);
}

TEST(Judge, LetsANonStrictInequalityHoldWithoutRoom) {
  const EngineProblem loose = drawn(Truth::kUnknown, Sense::kNonStrict);
  EXPECT_FALSE(judge(loose, feasible(), Fallback::kNotAsked, borderline()).against_each_other);
}

TEST(Judge, HoldsBoundsAgainstPointsOfTheOtherAndOfThePlanter) {
  EXPECT_TRUE(judged(Truth::kUnknown, feasible(1.0), feasible(1.1, 0.5)).against_each_other);
  EXPECT_FALSE(judged(Truth::kUnknown, feasible(1.0, 0.2), feasible(1.1)).against_each_other);
  EngineProblem planted = drawn(Truth::kFeasible);
  planted.reached = 2.0;
  EXPECT_TRUE(
      judge(planted, feasible(1.0), Fallback::kNotAsked, feasible(1.0)).first_against_truth);
  planted.reached = {};
  planted.limit = 0.5;
  EXPECT_TRUE(
      judge(planted, feasible(1.0), Fallback::kNotAsked, feasible(1.0)).reference_against_truth);
}

TEST(Judge, KnowsThatAPointMissesEquationsByItsRounding) {
  // maximise 2^26*(x - y) where x == y
  EngineProblem planted{
      .problem = ProblemBuilder(2).row(Sense::kEqual, {0, {{0, 1.0}, {1, -1.0}}}).build(),
      .truth = Truth::kFeasible};
  planted.problem.objective.emplace();
  planted.problem.objective->cost = {0x1p26, -0x1p26};
  planted.problem.big_m = 1e9;
  planted.limit = 0;
  const auto refuted = [&](double x, double y) {
    Outcome outcome = feasible((x - y) * 0x1p26, 1.0);
    outcome.point = {x, y};
    outcome.interior = {x, x};
    return judge(planted, outcome, Fallback::kNotAsked, open()).first_refutation;
  };
  const double large = 1e8;
  EXPECT_EQ(refuted(std::nextafter(large, 1e9), large), nullptr);
  EXPECT_STREQ(refuted(1e-15, 0), "the objective is too good");
}

TEST(Judge, TakesNoBoundThatIsBetterThanThePlantedOptimum) {
  EngineProblem planted = drawn(Truth::kFeasible);
  planted.optimum = 1.0;
  const auto refuted = [&](double objective, double bound) {
    return judge(planted, feasible(objective, bound - objective), Fallback::kNotAsked, open())
        .first_refutation;
  };
  EXPECT_EQ(refuted(0.5, 1.0), nullptr);
  EXPECT_STREQ(refuted(0.5, std::nextafter(1.0, 0.0)), "the bound is better than the optimum");
}

TEST(Judge, LooksAtThePointsThemselves) {
  const auto refuted = [](const Outcome& outcome) {
    return judge(drawn(Truth::kUnknown), outcome, Fallback::kNotAsked, open()).first_refutation;
  };
  Outcome outcome = feasible(1.0);
  EXPECT_EQ(refuted(outcome), nullptr);
  outcome.interior = {2e7};
  EXPECT_STREQ(refuted(outcome), "it rests on a point that is none");
  outcome = feasible(1.0);
  outcome.point = {std::nextafter(1e7, HUGE_VAL)};
  EXPECT_STREQ(refuted(outcome), "the reported point is outside the box");
  outcome.point = {2.0};
  EXPECT_STREQ(refuted(outcome), "the objective is not that of the point");
  outcome.point.clear();
  EXPECT_STREQ(refuted(outcome), "feasible without a point");
}

TEST(Judge, ComparesObjectivesToOneMillionthOfTheirSize) {
  EXPECT_FALSE(judged(Truth::kUnknown, feasible(1e6, 2), feasible(1e6 + 0.5, 2)).disagree());
  EXPECT_TRUE(
      judged(Truth::kUnknown, feasible(1e6, 2), feasible(1e6 + 1.5, 2)).disagree_silently());
  EXPECT_FALSE(judged(Truth::kUnknown, feasible(0.0, 1e-6), feasible(9e-7, 1e-6)).disagree());
  EXPECT_TRUE(judged(Truth::kUnknown, feasible(0.0, 2e-6), feasible(2e-6)).disagree_silently());
  // The reference is the one that is behind.
  EXPECT_FALSE(judged(Truth::kUnknown, feasible(2e-6), feasible(0.0, 2e-6)).disagree_silently());
  EXPECT_TRUE(judged(Truth::kUnknown, feasible(0.0, HUGE_VAL), feasible(0.0)).first_has_gap);
}

TEST(Judge, TellsApartWhatAGapAnnounces) {
  const Judgement judgement = judged(Truth::kUnknown, feasible(1.0, 0.1), feasible(1.05));
  EXPECT_TRUE(judgement.disagree_with_gap());
  EXPECT_FALSE(judgement.wrong());
}

TEST(Judge, CountsWhatIsLeftOpenThoughItHasRoom) {
  const Judgement judgement = judge(drawn(Truth::kFeasible), open(), Fallback::kAsked, feasible());
  EXPECT_TRUE(judgement.first_left_room);
  EXPECT_FALSE(judgement.reference_left_room);
  EXPECT_TRUE(judgement.fell_back());
  EXPECT_FALSE(judgement.fallback_helped());
  const Judgement in_vain =
      judge(drawn(Truth::kFeasible), feasible(), Fallback::kAsked, feasible());
  EXPECT_FALSE(in_vain.fallback_helped());
  EXPECT_TRUE(judge(drawn(Truth::kFeasible), feasible(), Fallback::kAnswered, feasible())
                  .fallback_helped());
}

/// A thousand good ones, and `count` of another kind.
std::vector<std::string> bounds_broken_by(const Judgement& judgement, int count) {
  Tally tally;
  for (std::uint64_t i = 0; i < 1000; ++i) {
    tally.add(i, judged(Truth::kFeasible, feasible(), feasible()));
  }
  for (int i = 0; i < count; ++i) tally.add(static_cast<std::uint64_t>(i), judgement);
  return tally.broken_bounds();
}

using Broken = std::vector<std::string>;

TEST(Tally, KeepsEveryBoundOverGoodOnes) {
  EXPECT_EQ(bounds_broken_by({}, 0), Broken{});
}

TEST(Tally, TakesNoVerdictThatIsWrong) {
  EXPECT_EQ(bounds_broken_by(judged(Truth::kInfeasible, feasible(), feasible()), 1),
            Broken{"1 of 1001 verdicts against what was planted"});
  EXPECT_EQ(bounds_broken_by(judged(Truth::kUnknown, infeasible(), feasible()), 2),
            Broken{"2 of 1002 pairs of verdicts or bounds against each other"});
  EXPECT_EQ(bounds_broken_by(judged(Truth::kUnknown, feasible(0.0, 2e-6), feasible(2e-6)), 1),
            Broken{"1 of 1001 pairs of objectives apart, without a gap to say so"});
}

TEST(Tally, TakesLessThanOneFallbackThatHelpedInAHundred) {
  const Judgement helped =
      judge(drawn(Truth::kUnknown), feasible(), Fallback::kAnswered, feasible());
  EXPECT_EQ(bounds_broken_by(helped, 10), Broken{});
  EXPECT_EQ(bounds_broken_by(helped, 11),
            Broken{"the fallback decided 11 of 1011 problems, 1 % or more"});
}

TEST(Tally, TakesOneInAThousandLeftOpenThoughItHasRoom) {
  const Judgement left = judged(Truth::kFeasible, open(), feasible());
  EXPECT_EQ(bounds_broken_by(left, 1), Broken{});
  EXPECT_EQ(bounds_broken_by(left, 2),
            Broken{"planted points with room: 2 of 1002 left open, more than 1 in 1,000"});
}

TEST(Tally, DoesNotLetOneClassMakeUpForAnother) {
  const Judgement left = judged(Truth::kInfeasible, open(), infeasible());
  EXPECT_EQ(bounds_broken_by(left, 1),
            Broken{"planted certificates inside cones: 1 of 1 left open, more than 1 in 1,000"});
}

TEST(Tally, TakesNoObjectiveOffThePlantedOptimumUnlessAGapSaysSo) {
  EngineProblem planted = drawn(Truth::kFeasible);
  planted.optimum = 3.0;
  const Judgement behind = judge(planted, feasible(2.5, 1), Fallback::kNotAsked, feasible(2.5, 1));
  EXPECT_EQ(bounds_broken_by(behind, 1), Broken{});
  // A bound within the tolerance of an objective in millions, which is off by more.
  planted.optimum = 1e6 + 3;
  const Outcome close = feasible(1e6, 4);
  EXPECT_EQ(bounds_broken_by(judge(planted, close, Fallback::kNotAsked, close), 1),
            Broken{"1 of 1001 objectives off the planted optimum, without a gap to say so"});
}

TEST(Tally, TakesNoProblemWithoutAnAnswerAndNamesIt) {
  Tally tally;
  tally.add_unanswered(107, "no answer in time");
  EXPECT_EQ(tally.broken_bounds(), Broken{"1 of 0 problems without an answer"});
  std::ostringstream text;
  tally.print_failures(text);
  EXPECT_EQ(text.str(), "wrong 107 (force, friction): no answer in time\n");
}

}  // namespace
}  // namespace sdpsol::testing
