// Every grasp of examples/grasps with every question on the whole road: what its notes
// claim, and what the tests find out another way.
#include <gtest/gtest.h>

#include <algorithm>
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
  std::string reason;  ///< empty: feasible
  int rank;
  bool force_closure;
  /// Of individual (last and first contact), point (last), friction and all.
  std::vector<double> objectives;
};

// Sizes of forces on paper, as the notes of the files derive them; behind them the margins.
const std::map<std::string, Expected>& expectations() {
  static const std::map<std::string, Expected> all = {
      // Equal normal forces of 15 N, and margins of 0.3 times as much.
      {"ball", {"", 6, true, {15, 4.5, 6, 6}}},
      // A clamp of 20 N is sqrt(3) times as strong as C = 20 / sqrt(3); the margins of
      // the others add up to (1 + 1 + 1) * 20 / sqrt(3).
      {"box_corner",
       {"", 6, true, {10 + 10 * 2 / 15.0 / std::sqrt(3), 20, 0, 20 + 60 / std::sqrt(3)}}},
      {"envelope", {"", 6, true, {}}},
      {"pinch", {"", 5, false, {10, 8, 13, 13}}},
      {"three_fingers", {"", 6, true, {12, 4.8, 7.2, 7.2}}},
      {"one_side", {"?", 6, false, {}}},
      {"slippery_wedge", {"?", 5, false, {}}},
      {"three_pushers",
       {"no nullspace: the 3 columns of the grasp map are independent, so that no forces but 0 "
        "balance",
        3,
        false,
        {}}},
      {"tight_bounds", {"?", 5, false, {}}}};
  return all;
}

TEST(GraspExamples, AreAllExpectedHere) {
  std::vector<std::string> files;
  for (const auto& entry :
       std::filesystem::directory_iterator(SDPSOL_SOURCE_DIR "/examples/grasps"))
    files.push_back(entry.path().stem());
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
      if (expected.reason.empty())
        expect_right(grasp, answer, what);
      else
        EXPECT_EQ(answer.verdict, Verdict::kInfeasible) << what;
      EXPECT_EQ(answer.reason, expected.reason) << what;
      if (answer.objective) objectives.push_back(*answer.objective);
      expect_between_pyramids(grasp, answer, grasp.contacts.size() > 4 ? 6 : 12, what);
    }
    EXPECT_EQ(objectives.size(), expected.objectives.size()) << name;
    for (std::size_t i = 0; i < std::min(objectives.size(), expected.objectives.size()); ++i)
      EXPECT_NEAR(objectives[i], expected.objectives[i], 1e-4) << name << ", objective " << i;
  }
}

}  // namespace
