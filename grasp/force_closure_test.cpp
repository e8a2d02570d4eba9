#include "grasp/force_closure.h"

#include <gtest/gtest.h>

#include "grasp/test_grasps.h"

namespace grasp {
namespace {

Answer answer_of(Verdict verdict, int rank = 6, Question question = Question::kExists) {
  Answer answer;
  answer.inquiry = {question, {}};
  answer.balance.rank = rank;
  answer.verdict = verdict;
  return answer;
}

constexpr std::optional<bool> kOpen = std::nullopt;

TEST(ForceClosureOfAGrasp, IsRank6AndAForceInsideTheCones) {
  EXPECT_EQ(force_closure(pinch(), answer_of(Verdict::kFeasible)), true);
  EXPECT_EQ(force_closure(pinch(), answer_of(Verdict::kInfeasible)), false);
  EXPECT_EQ(force_closure(pinch(), answer_of(Verdict::kUndetermined)), kOpen);
  for (const Verdict verdict : {Verdict::kFeasible, Verdict::kInfeasible, Verdict::kUndetermined})
    EXPECT_EQ(force_closure(pinch(), answer_of(verdict, 5)), false);
}

TEST(ForceClosureOfAGrasp, IsOpenWhereBoundsExcludeSmallForces) {
  const Answer none = answer_of(Verdict::kInfeasible);
  const auto with_bounds = [](std::size_t component, Bounds bounds) {
    Grasp grasp = pinch();
    grasp.contacts[1].bounds[component] = bounds;
    return grasp;
  };
  EXPECT_EQ(force_closure(with_bounds(2, {0.1, 9}), none), kOpen);
  EXPECT_EQ(force_closure(with_bounds(2, {-5, 0}), none), kOpen);
  EXPECT_EQ(force_closure(with_bounds(0, {0, 5}), none), kOpen);
  EXPECT_EQ(force_closure(with_bounds(1, {-5, 0}), none), kOpen);
  EXPECT_EQ(force_closure(with_bounds(2, {-1, 0.1}), none), false);
  EXPECT_EQ(force_closure(with_bounds(2, {0.1, 9}), answer_of(Verdict::kFeasible)), true);
}

TEST(ForceClosureOfAGrasp, IsOpenWhereAConeHasNoInside) {
  Grasp grasp = pinch();
  grasp.contacts[0].friction = 0;
  EXPECT_EQ(force_closure(grasp, answer_of(Verdict::kInfeasible)), kOpen);
  grasp.contacts[0] = contact_at({-0.02, 0, 0}, {1, 0, 0}, ContactType::kFrictionless);
  EXPECT_EQ(force_closure(grasp, answer_of(Verdict::kInfeasible)), false);
}

TEST(ForceClosureOfAGrasp, IsOpenWhereTheQuestionAskedFrictionlessContactsForMore) {
  const Answer none = answer_of(Verdict::kInfeasible, 6, Question::kFriction);
  EXPECT_EQ(force_closure(pinch(), none), false);
  Grasp grasp = pinch();
  grasp.contacts[0] = contact_at({-0.02, 0, 0}, {1, 0, 0}, ContactType::kFrictionless);
  EXPECT_EQ(force_closure(grasp, none), kOpen);
  EXPECT_EQ(force_closure(grasp, answer_of(Verdict::kInfeasible, 6, Question::kAll)), false);
}

}  // namespace
}  // namespace grasp
