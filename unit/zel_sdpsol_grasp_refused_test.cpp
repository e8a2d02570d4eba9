// The methods of the group "IntForce" where one of their lists is empty.
#include "unit/zel_sdpsol_grasp_fixture.h"

namespace {

using namespace unit_test;

class Refusal : public EveryGraspMethod {
 protected:
  // Fires after a good run, whose traces must be gone.
  void expect_refused() {
    driver_of(unit_).definition = "from before";
    driver_of(unit_).lastResult = {0, true, 5.0, {"old"}, {1.0}, 1};
    fire_anyhow(unit_);
    EXPECT_EQ(packets_, Packets{GetParam().warning()});
    EXPECT_EQ(said_, "");
    EXPECT_EQ(driver_of(unit_).definition, "from before");
    expect_same_result(driver_of(unit_).lastResult, {100, false, 0.0, {}, {}, 0});
    for (int output = 0; output < GetParam().float_outputs; ++output) {
      EXPECT_EQ(out(unit_, output), 0.0F) << output;
    }
    EXPECT_FALSE(std::filesystem::exists(dir_.path("sdpsol.in")));
    EXPECT_EQ(get_result(root_), (Shown{0, 0, 100, {}}));
  }
};

TEST_P(Refusal, IsSaidInOneWriteOfTheKnownText) {
  const std::map<std::string, std::size_t> lengths{{"Exists", 93},
                                                   {"Maximize_Individual", 98},
                                                   {"Maximize_PointCont", 102},
                                                   {"Maximize_FrictConts", 105},
                                                   {"Maximize_All", 91}};
  RecordingHost::claim_length(unit_, 0, 0);
  fire_anyhow(unit_);
  ASSERT_EQ(packets_.size(), 1U);
  EXPECT_EQ(packets_[0], GetParam().warning());
  EXPECT_EQ(packets_[0].size(), lengths.at(GetParam().name));
}

TEST_P(Refusal, FollowsWhenAnyOfFourListsIsEmpty) {
  for (int input = 0; input < 4; ++input) {
    for (const int length : {0, -1, std::numeric_limits<int>::min()}) {
      SCOPED_TRACE("input " + std::to_string(input) + ", length " + std::to_string(length));
      set(unit_, kGrasp313);
      RecordingHost::claim_length(unit_, input, length);
      expect_refused();
    }
  }
}

TEST_P(Refusal, FollowsWhenNothingWasEverSet) {
  def_unittype* const root = answering(kObjective);
  root_ = root;
  unit_ = method(GetParam());
  expect_refused();
}

TEST_P(Refusal, StopsAtTheFirstEmptyListAndHandsOverNoArray) {
  RecordingHost::claim_length(unit_, 2, 0);
  fire_anyhow(unit_);
  const std::string unit = GetParam().full_name();
  std::string expected = "zel_dim_of_dyn_inp(" + unit + ", 0, 0)\nzel_dim_of_dyn_inp(" + unit +
                         ", 1, 0)\nzel_dim_of_dyn_inp(" + unit + ", 2, 0)\n";
  if (GetParam().has_epsilons) expected += "zel_reassign(" + unit + ", 2, 0, 0, null)\n";
  EXPECT_EQ(calls_, expected);
}

TEST_P(Refusal, EndsWithTheNextGoodCall) {
  RecordingHost::claim_length(unit_, 1, 0);
  expect_refused();
  expect_as_directly(kGrasp313);
}

TEST_P(Refusal, DependsOnNoOtherInput) {
  // Neither an empty list of contacts to maximise nor a number that is no contact.
  if (std::string(GetParam().name) == "Maximize_Individual") {
    RecordingHost::claim_length(unit_, 4, 0);
  }
  if (std::string(GetParam().name) == "Maximize_PointCont") {
    RecordingHost::set_float(unit_, 4, 0, kNan);
  }
  fire(unit_);
  EXPECT_EQ(out(unit_, 0), 1.0F);
}

INSTANTIATE_TEST_SUITE_P(IntForce, Refusal, every_method(), name_of_method);

class RefusedEpsilons : public Refusal {};

TEST_P(RefusedEpsilons, TakesTheEpsilonsOfBeforeAway) {
  fire(unit_);
  EXPECT_NE(RecordingHost::array_out(unit_, 2), std::nullopt);
  RecordingHost::claim_length(unit_, 3, 0);
  fire_anyhow(unit_);
  EXPECT_EQ(RecordingHost::array_out(unit_, 2), std::nullopt);
  const std::vector<Floats> all_else{{0.0F, 0.0F}};
  EXPECT_EQ(host_.floats_at_hand_overs, all_else);
}

INSTANTIATE_TEST_SUITE_P(IntForce, RefusedEpsilons, ::testing::Values(kFrictionContacts, kAll),
                         name_of_method);

}  // namespace
