// The methods of the group "IntForce" where they have a grasp: what the driver is
// asked, and what comes back.
#include "unit/zel_sdpsol_grasp_fixture.h"

namespace {

using namespace unit_test;

using AnyMethod = EveryGraspMethod;

TEST_P(AnyMethod, AsksWhatTheDriverIsAskedDirectly) {
  expect_as_directly(kGrasp313);
  EXPECT_EQ(driver_of(unit_).definition.substr(0, 8),
            GetParam().has_epsilons ? "variable" : "BIGM=300");
  EXPECT_EQ(content_of(dir_.path("sdpsol.in")), driver_of(unit_).definition);
}

TEST_P(AnyMethod, WidensEveryNumber) {
  GraspInputs grasp{{0.1F, -0.0F, 1e-30F, kInfinity, -kInfinity, kNan, 1e30F},
                    {-0.3F, kNan, kInfinity},
                    Floats(14, -1e-7F),
                    {3, 1, 3}};
  grasp.bounds[3] = kInfinity;
  grasp.bounds[4] = kNan;
  expect_as_directly(grasp);
}

TEST_P(AnyMethod, PassesListsOfEveryLengthOn) {
  // Too short, too long, and no multiple of the number of components.
  expect_as_directly({{1}, {0.5F}, {0}, {3, 1, 3}});
  expect_as_directly({Floats(30, 2), Floats(9, 0.5F), Floats(40, 1), {3, 1, 3}});
  expect_as_directly({Floats(8, 2), Floats(3, 0.5F), Floats(14, 1), {3, 1, 3}});
  expect_as_directly({{0, 0, 1}, {0.5F}, {0, 10, 0, 10, 0, 10}, {3}});
}

TEST_P(AnyMethod, PassesUnknownTypesOn) {
  expect_as_directly({{1, 2, 3, 4, 5}, {0.5F, 0.5F}, Floats(10, 1), {2, 3}});
  EXPECT_NE(said_, "");
  expect_as_directly({{1, 2}, {0.5F, 0.5F}, Floats(4, 1), {-1, 3}});
}

TEST_P(AnyMethod, ShowsThatTypesWithoutComponentsWereNotAsked) {
  fire(unit_);
  const std::string before = driver_of(unit_).definition;
  expect_as_directly({{1, 2}, {0.5F, 0.5F}, Floats(4, 1), {1, -1}});
  EXPECT_EQ(driver_of(unit_).definition, before);
  EXPECT_EQ(get_result(root_), (Shown{0, 0, 100, {}}));
}

TEST_P(AnyMethod, ShowsTheResultOnGetResultToo) {
  fire(unit_);
  EXPECT_EQ(get_result(root_), (Shown{1, 3.43119587F, 0, {1.5F, 2.5F, 3.5F, 4.5F}}));
}

TEST_P(AnyMethod, ShowsAnObjectiveOfAnInfeasibleResultAsItStands) {
  answer_with(kInfeasibleWithNumbers);
  expect_as_directly(kGrasp313);
  EXPECT_EQ(out(unit_, 0), 0.0F);
  if (GetParam().float_outputs > 1) {
    EXPECT_EQ(out(unit_, 1), 3.43119587F);
  }
}

TEST_P(AnyMethod, ShowsAResultWithoutNumbers) {
  answer_with(kInfeasible);
  expect_as_directly(kGrasp313);
  answer_with(kFeasible);
  expect_as_directly(kGrasp313);
}

TEST_P(AnyMethod, ShowsAFailedRunAsNoForces) {
  driver_of(unit_).commandLine = "exit 1";
  fire(unit_);
  EXPECT_EQ(out(unit_, 0), 0.0F);
  if (GetParam().float_outputs > 1) {
    EXPECT_EQ(out(unit_, 1), 0.0F);
  }
  if (GetParam().has_epsilons) {
    EXPECT_EQ(RecordingHost::array_out(unit_, 2), Floats(14, 0.0F));
  }
  EXPECT_EQ(get_result(root_), (Shown{0, 0, 2, {}}));
}

TEST_P(AnyMethod, AsksForLengthsOnlyAndForTheFirstFourInOrder) {
  fire(unit_);
  const std::string dimension = "zel_dim_of_dyn_inp(" + GetParam().full_name() + ", ";
  std::string checks;
  for (const char* input : {"0", "1", "2", "3"}) checks += dimension + input + ", 0)\n";
  EXPECT_EQ(calls_.substr(0, checks.size()), checks);
  std::istringstream lines(calls_);
  std::string last;
  for (std::string line; std::getline(lines, line); last = line) {
    EXPECT_TRUE(last.empty() || last.starts_with(dimension)) << last;
    EXPECT_TRUE(line.ends_with(", 0)") || line.ends_with("array)")) << line;
  }
  if (GetParam().has_epsilons) {
    EXPECT_EQ(last, "zel_reassign(" + GetParam().full_name() + ", 2, 0, 14, array)");
  } else {
    EXPECT_TRUE(last.starts_with(dimension)) << last;
  }
}

TEST_P(AnyMethod, ReplacesParametersSetBefore) {
  fire(find(root_, "General:Set_Params"));
  EXPECT_NE(driver_of(unit_).definition, "");
  expect_as_directly(kGrasp313);
}

INSTANTIATE_TEST_SUITE_P(IntForce, AnyMethod, every_method(), name_of_method);

class Epsilons : public EveryGraspMethod {};

TEST_P(Epsilons, AreAsManyAsBoundsWithZerosBehindTheContacts) {
  set(unit_, {{1, 2, 3}, {0, 0, 0}, {0, 1, 0, 1, 0, 1}, {1, 1, 1}});
  fire(unit_);
  EXPECT_EQ(RecordingHost::array_out(unit_, 2), (Floats{1.5F, 2.5F, 3.5F, 0, 0, 0}));
}

TEST_P(Epsilons, AreCutWhereThereAreFewerBoundsThanContacts) {
  set(unit_, {{1, 2, 3}, {0, 0, 0}, {0, 1}, {1, 1, 1}});
  fire(unit_);
  EXPECT_EQ(RecordingHost::array_out(unit_, 2), (Floats{1.5F, 2.5F}));
}

TEST_P(Epsilons, AreZeroWhereTheResultHasTooFewValues) {
  answer_with(kFeasible);
  fire(unit_);
  Floats expected(14, 0.0F);
  expected[0] = 1;
  EXPECT_EQ(RecordingHost::array_out(unit_, 2), expected);
}

TEST_P(Epsilons, AreRoundedToSinglePrecision) {
  answer_with(
      "*** Objective value\nobjective = 0.1\n\n*** Variables\na = 0.1\n\nb = 1e-300\n\n"
      "c = 1e300\n\n");
  fire(unit_);
  EXPECT_EQ(out(unit_, 1), 0.1F);
  Floats expected(14, 0.0F);
  expected[0] = 0.1F;
  expected[2] = kInfinity;
  EXPECT_EQ(RecordingHost::array_out(unit_, 2), expected);
}

TEST_P(Epsilons, AreHandedOverWhenAllElseIsWritten) {
  fire(unit_);
  const std::vector<Floats> expected{{1.0F, 3.43119587F}};
  EXPECT_EQ(host_.floats_at_hand_overs, expected);
}

TEST_P(Epsilons, ReplaceThoseOfTheRunBefore) {
  fire(unit_);
  answer_with(kInfeasible);
  fire(unit_);
  EXPECT_EQ(RecordingHost::array_out(unit_, 2), Floats(14, 0.0F));
}

INSTANTIATE_TEST_SUITE_P(IntForce, Epsilons, ::testing::Values(kFrictionContacts, kAll),
                         name_of_method);

class MaximizeIndividual : public GraspTest {
 protected:
  std::string ask(const Integers& contacts) {
    set(unit_, kGrasp313);
    RecordingHost::set_array(unit_, 4, contacts);
    fire(unit_);
    return driver_of(unit_).definition;
  }

  std::string asked_directly(const std::vector<int>& contacts) {
    sdpsol_wrapper driver = twin();
    const CapturedOutput output;
    driver.internalForceMaximizeIndividual(kBase313, kTypes313, kFriction313, kBounds313, contacts);
    said_directly_ = output.text();
    return driver.definition;
  }

  def_unittype* unit_ = method(kIndividual);
  std::string said_directly_;
};

TEST_F(MaximizeIndividual, PassesTheChosenContactsOn) {
  for (const Integers& contacts :
       {Integers{0}, Integers{2, 1}, Integers{1, 1, 0}, Integers{0, 1, 2}}) {
    EXPECT_EQ(ask(contacts), asked_directly(contacts));
    EXPECT_EQ(said_, "");
  }
  EXPECT_NE(ask({0}), ask({1}));
}

TEST_F(MaximizeIndividual, PassesNumbersThatAreNoContactsOn) {
  const Integers contacts{-1, 1, 3, std::numeric_limits<int>::min(),
                          std::numeric_limits<int>::max()};
  EXPECT_EQ(ask(contacts), asked_directly(contacts));
  EXPECT_EQ(said_, said_directly_);
  EXPECT_NE(said_, "");
}

TEST_F(MaximizeIndividual, AsksWithNoContactWhereNoneIsChosen) {
  const std::string none = asked_directly({});
  EXPECT_EQ(ask({}), none);
  EXPECT_EQ(none.find("maximize"), std::string::npos);
  ask({0});
  // Lengths that no array has count as none.
  for (const int length : {-1, std::numeric_limits<int>::min()}) {
    RecordingHost::claim_length(unit_, 4, length);
    fire(unit_);
    EXPECT_EQ(driver_of(unit_).definition, none);
  }
}

class MaximizePointContact : public GraspTest {
 protected:
  std::string ask(float contact) {
    set(unit_, kGrasp313);
    RecordingHost::set_float(unit_, 4, 0, contact);
    fire(unit_);
    return driver_of(unit_).definition;
  }

  std::string asked_directly(std::uint32_t contact) {
    sdpsol_wrapper driver = twin();
    driver.internalForceMaximizePointContact(kBase313, kTypes313, kFriction313, kBounds313,
                                             contact);
    return driver.definition;
  }

  def_unittype* unit_ = method(kPointContact);
};

TEST_F(MaximizePointContact, TruncatesTheNumberOfTheContact) {
  EXPECT_EQ(ask(0), asked_directly(0));
  EXPECT_EQ(ask(1), asked_directly(1));
  EXPECT_EQ(ask(2.9F), asked_directly(2));
  EXPECT_EQ(ask(0.999F), asked_directly(0));
  EXPECT_EQ(ask(-0.999F), asked_directly(0));
  EXPECT_NE(asked_directly(0), asked_directly(1));
  EXPECT_NE(asked_directly(1), asked_directly(2));
}

TEST_F(MaximizePointContact, TakesNumbersThatAreNoContact) {
  const std::string none = asked_directly(0xffffffffU);
  EXPECT_EQ(ask(3), none);
  EXPECT_EQ(ask(-1), none);
  EXPECT_EQ(ask(-1.9F), none);
  EXPECT_EQ(ask(4294967040.0F), none);
  EXPECT_EQ(ask(1e20F), none);
  EXPECT_EQ(ask(kInfinity), none);
  EXPECT_EQ(ask(-1e20F), none);
  EXPECT_EQ(ask(-kInfinity), none);
}

TEST_F(MaximizePointContact, TakesWhatIsNoNumberForTheFirstContact) {
  EXPECT_EQ(ask(kNan), asked_directly(0));
}

TEST_F(GraspTest, ExistsWritesItsOnlyOutput) {
  def_unittype* const unit = method(kExists);
  set(unit, kGrasp313);
  fire(unit);
  EXPECT_EQ(out(unit, 0), 1.0F);
  EXPECT_THROW(out(unit, 1), std::out_of_range);
  EXPECT_TRUE(host_.floats_at_hand_overs.empty());
}

}  // namespace
