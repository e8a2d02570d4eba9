// Random grasps, and what does not change an answer.
#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

#include "grasp/geometry.h"
#include "tests/grasp/asked.h"
#include "tests/verdicts/many.h"

namespace {

using grasp::Answer;
using grasp::Grasp;
using grasp::Inquiry;
using grasp::Question;
using grasp::Vector;
using grasp::Verdict;
using namespace grasp_asked;

TEST(RandomGrasps, AreAnsweredAsPyramidsInsideAndAroundTheConesSay) {
  std::mt19937 random(20260401);
  const int count = sdpsol::testing::many(40);
  int feasible = 0;
  int infeasible = 0;
  int unclear = 0;
  for (int i = 0; i < count; ++i) {
    const Grasp grasp = random_grasp(random, 2 + i % 4);
    const int sides = i % 4 == 3 ? 6 : 8;
    const std::vector<Inquiry> inquiries = all_inquiries(grasp);
    const std::string what = "grasp " + std::to_string(i);
    const Answer exists = ask(grasp, inquiries[0]);
    if (!expect_between_pyramids(grasp, exists, sides, what)) ++unclear;
    ++(exists.verdict == Verdict::kFeasible ? feasible : infeasible);
    if (exists.verdict == Verdict::kFeasible) expect_right(grasp, exists, what);
    const Inquiry& other = inquiries[static_cast<std::size_t>(1 + i / 4 % 4)];
    const Answer best = ask(grasp, other);
    expect_between_pyramids(grasp, best, sides,
                            what + ", " + std::string(to_string(other.question)));
    // The question about friction asks for more.
    if (other.question != Question::kFriction) {
      EXPECT_EQ(best.verdict, exists.verdict) << what;
    }
    if (best.verdict == Verdict::kFeasible)
      expect_right(grasp, best, what + ", " + std::string(to_string(other.question)));
  }
  EXPECT_GE(feasible, count / 5);
  EXPECT_GE(infeasible, count / 5);
  EXPECT_LE(unclear, count / 5 + 1);
}

void turn(Grasp& grasp, const Eigen::Matrix3d& by, const Vector& shift, bool keep_frames) {
  for (grasp::Contact& contact : grasp.contacts) {
    contact.point = by * contact.point + shift;
    const Vector tangent = by * contact.frame.tangential_1;
    contact.frame = grasp::make_frame(by * contact.frame.normal,
                                      keep_frames ? std::optional(tangent) : std::nullopt);
  }
  grasp.centre = by * grasp.centre + shift;
}

/// The same grasp, looked at another way.
std::vector<std::pair<std::string, Grasp>> variants(const Grasp& grasp) {
  std::vector<std::pair<std::string, Grasp>> all(5, {"", grasp});
  all[0].first = "in millimetres";
  for (grasp::Contact& contact : all[0].second.contacts) contact.point *= 1000;
  all[0].second.centre *= 1000;
  const Eigen::Matrix3d by = Eigen::AngleAxisd(1, Vector(1, -2, 3).normalized()).matrix();
  all[1].first = "turned and shifted";
  turn(all[1].second, by, {0.7, -3, 0.2}, true);
  all[2].first = "with other tangents";
  turn(all[2].second, by, Vector::Zero(), false);
  all[3].first = "about another centre";
  all[3].second.centre = {5, -7, 9};
  all[4].first = "from the last contact to the first";
  std::reverse(all[4].second.contacts.begin(), all[4].second.contacts.end());
  return all;
}

TEST(GraspAnswer, DoesNotDependOnUnitsPlaceTangentsCentreOrOrder) {
  std::vector<std::string> names = {"ball",     "box_corner",    "tight_bounds",   "one_side",
                                    "envelope", "three_fingers", "slippery_wedge", "pinch"};
  names.resize(std::min<std::size_t>(8, 3 + sdpsol::testing::many(8)));
  for (const std::string& name : names) {
    const Grasp grasp = example(name);
    for (const Question question : {Question::kExists, Question::kAll}) {
      const Answer answer = ask(grasp, {question, {}});
      for (const auto& [how, other] : variants(grasp)) {
        const std::string what = name + (" " + how);
        const Answer same = ask(other, {question, {}});
        EXPECT_EQ(same.verdict, answer.verdict) << what << ": " << same.reason;
        EXPECT_EQ(same.force_closure, answer.force_closure) << what;
        EXPECT_EQ(same.balance.rank, answer.balance.rank) << what;
        if (same.verdict == Verdict::kFeasible) expect_right(other, same, what);
        ASSERT_EQ(same.objective.has_value(), answer.objective.has_value()) << what;
        if (same.objective) {
          EXPECT_NEAR(*same.objective, *answer.objective, 1e-5 * std::abs(*answer.objective))
              << what;
        }
      }
    }
  }
}

// Form closure with contacts that could rub, but whose friction is 0: the definition has no
// force strictly inside of such cones, and every wrench can be resisted all the same.
TEST(ForceClosure, IsNotDeniedBecauseOfConesThatHaveNoInside) {
  Grasp grasp = example("box_corner");
  EXPECT_EQ(ask(grasp, {}).force_closure, true);
  for (grasp::Contact& contact : grasp.contacts) {
    contact.type = grasp::ContactType::kFriction;
    contact.bounds = {{-20, 20}, {-20, 20}, contact.bounds.front()};
  }
  const Answer answer = ask(grasp, {});
  EXPECT_NE(answer.verdict, Verdict::kFeasible);
  EXPECT_EQ(answer.force_closure, std::nullopt);
  ASSERT_FALSE(answer.notes.empty());
  EXPECT_EQ(answer.notes.front(),
            "contact A1 has a friction coefficient of 0, a cone that no force is inside of; "
            "\"frictionless\" is what it may be meant to be");
}

// Bounds that no small force satisfies say nothing about forces of any size.
TEST(ForceClosure, IsLeftOpenWhereBoundsMayBeTheReason) {
  Grasp grasp = example("three_fingers");
  grasp.contacts[0].bounds.back() = {11, 12};
  grasp.contacts[1].bounds.back() = {0, 1};
  EXPECT_EQ(ask(grasp, {}).verdict, Verdict::kInfeasible);
  EXPECT_EQ(ask(grasp, {}).force_closure, std::nullopt);
  // The question about friction asks frictionless contacts for more than 1 N.
  Grasp corner = example("box_corner");
  for (grasp::Contact& contact : corner.contacts) contact.bounds = {{0, 0.5}};
  EXPECT_EQ(ask(corner, {Question::kFriction, {}}).force_closure, std::nullopt);
  EXPECT_EQ(ask(corner, {Question::kAll, {}}).force_closure, true);
}

}  // namespace
