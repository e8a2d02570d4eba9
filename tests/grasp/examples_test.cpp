// Every grasp of examples/grasps with every question on the whole road: what its notes
// claim, and what the tests find out another way.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>

#include "tests/grasp/asked.h"

namespace {

using grasp::Answer;
using grasp::Grasp;
using grasp::Inquiry;
using grasp::Question;
using grasp::Verdict;
using namespace grasp_asked;

struct Expected {
  /// Of the question whether there is a force; empty: feasible.
  std::string reason;
  int rank;
  bool force_closure;
  /// Of individual (last and first contact), point (last), friction and all; of what the
  /// notes say nothing about the pyramids decide.
  std::vector<double> objectives;
};

// Sizes of forces as the notes of the files derive them; behind them the margins.
const std::map<std::string, Expected>& expectations() {
  // The clamp's 20 N are 20 / sqrt(3) times what the notes take for 1.
  const double clamp = 20 / std::sqrt(3);
  static const std::map<std::string, Expected> all = {
      {"ball", {"", 6, true, {15, 4.5, 6, 6}}},
      {"box_corner", {"", 6, true, {(20 + 2 / 15.0 * clamp) / 2, 20, 0, 20 + 3 * clamp}}},
      {"envelope", {"", 6, true, {}}},
      {"pinch", {"", 5, false, {10, 8, 13, 13}}},
      {"three_fingers", {"", 6, true, {12, 4.8, 7.2, 7.2}}},
      {"one_side",
       {"for forces that balance, two bounds exclude each other: normal force of 0 above 0 N, "
        "normal force of 1 above 0 N",
        6,
        false,
        {}}},
      {"slippery_wedge",
       {"for forces that balance, the conditions contradict each other: the cones, "
        "normal force of left above 0 N",
        5,
        false,
        {}}},
      {"three_pushers",
       {"no nullspace: the 3 columns of the grasp map are independent, so that no forces but 0 "
        "balance",
        3,
        false,
        {}}},
      {"tight_bounds",
       {"for forces that balance, two bounds exclude each other: normal force of strong above 5 N, "
        "normal force of weak "
        "below 3 N",
        5,
        false,
        {}}}};
  return all;
}

TEST(GraspExamples, AreAllExpectedHere) {
  std::vector<std::string> files;
  for (const auto& entry :
       std::filesystem::directory_iterator(SDPSOL_SOURCE_DIR "/examples/grasps"))
    if (entry.path().extension() == ".json") files.push_back(entry.path().stem());
  std::sort(files.begin(), files.end());
  std::vector<std::string> known;
  for (const auto& [name, expected] : expectations()) known.push_back(name);
  EXPECT_EQ(files, known);
}

TEST(GraspExamples, AnswerEveryQuestionAsTheirNotesSay) {
  for (const auto& [name, expected] : expectations()) {
    const Grasp grasp = example(name);
    std::vector<double> objectives;
    for (const Inquiry& inquiry : all_inquiries(grasp)) {
      const Answer answer = ask(grasp, inquiry);
      const std::string what = name + ", " + std::string(to_string(inquiry.question));
      EXPECT_EQ(answer.balance.rank, expected.rank) << what;
      EXPECT_EQ(answer.force_closure, expected.force_closure) << what;
      if (expected.reason.empty()) {
        expect_right(grasp, answer, what);
      } else {
        EXPECT_EQ(answer.verdict, Verdict::kInfeasible) << what;
      }
      if (inquiry.question == Question::kExists) {
        EXPECT_EQ(answer.reason, expected.reason) << what;
      }
      EXPECT_EQ(answer.reason.empty(), expected.reason.empty()) << what;
      if (answer.objective) objectives.push_back(*answer.objective);
      expect_between_pyramids(grasp, answer, grasp.contacts.size() > 4 ? 6 : 12, what);
    }
    EXPECT_EQ(objectives.size(), expected.reason.empty() ? 4U : 0U) << name;
    for (std::size_t i = 0; i < std::min(objectives.size(), expected.objectives.size()); ++i)
      EXPECT_NEAR(objectives[i], expected.objectives[i], 1e-5 * 60) << name << ", objective " << i;
  }
}

}  // namespace
