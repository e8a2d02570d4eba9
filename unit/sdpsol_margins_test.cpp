// The three problems with margins at several contacts.
#include <gtest/gtest.h>

#include "unit/intforce_fixture.h"

namespace {

using namespace unit_test;
using Contacts = std::vector<int>;
using Values = std::vector<double>;

constexpr auto kMaximizeIndividual = &sdpsol_wrapper::internalForceMaximizeIndividual;
constexpr auto kMaximizeFrictionContacts = &sdpsol_wrapper::internalForceMaximizeFrictionContacts;
constexpr auto kMaximizeAll = &sdpsol_wrapper::internalForceMaximizeAll;

// What is said of a contact with friction whose lists of friction and bounds are empty.
constexpr std::string_view kTooShort =
    "sdpsol_wrapper-warning: input too short, missing values are read as 0, size of Friction "
    "constraints is 0, size of Force constraints is 0\n";

class Individual : public IntForce {};
class FrictionContacts : public IntForce {};
class All : public IntForce {};

TEST_F(Individual, PosesTheChosenContacts) {
  ask(kMaximizeIndividual, kBase31, kTypes31, kFriction31, kBounds31, Contacts{0, 1});
  EXPECT_EQ(driver_.definition, kDefs31 +
                                    "variable epsilon0;\n"
                                    "variable epsilon1;\n" +
                                    kConstr31 +
                                    "epsilon0>0;\n"
                                    "epsilon1>0;\n"
                                    "[P0,zeros(3,1);\n"
                                    "zeros(1,3),P1] - \n"
                                    "[epsilon0*eye(3),zeros(3,1);\n"
                                    "zeros(1,3),epsilon1] > 0;\n"
                                    "maximize objective=(0+x2+epsilon1)/2;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(Individual, KeepsTheOrderOfTheListAndShowsOthersAsZeros) {
  ask(kMaximizeIndividual, kBase313, kTypes313, kFriction313, kBounds313, Contacts{2, 1});
  EXPECT_EQ(driver_.definition, kDefs313 +
                                    "variable epsilon2;\n"
                                    "variable epsilon1;\n" +
                                    kConstr313 +
                                    "epsilon2>0;\n"
                                    "epsilon1>0;\n"
                                    "[P0,zeros(3,4);\n"
                                    "zeros(1,3),P1,zeros(1,3);\n"
                                    "zeros(3,4),P2] - \n"
                                    "[zeros(3,3),zeros(3,4);\n"
                                    "zeros(1,3),epsilon1,zeros(1,3);\n"
                                    "zeros(3,4),epsilon2*eye(3)] > 0;\n"
                                    "maximize objective=(0+x6+epsilon1)/2;\n");
}

TEST_F(Individual, ShowsAFrictionlessContactThatIsNotChosenAsZero) {
  ask(kMaximizeIndividual, kBase31, kTypes31, kFriction31, kBounds31, Contacts{0});
  EXPECT_EQ(driver_.definition, kDefs31 + "variable epsilon0;\n" + kConstr31 +
                                    "epsilon0>0;\n"
                                    "[P0,zeros(3,1);\n"
                                    "zeros(1,3),P1] - \n"
                                    "[epsilon0*eye(3),zeros(3,1);\n"
                                    "zeros(1,3),0] > 0;\n"
                                    "maximize objective=(0+x2)/1;\n");
}

TEST_F(Individual, CountsRepetitions) {
  ask(kMaximizeIndividual, kBase31, kTypes31, kFriction31, kBounds31, Contacts{1, 1});
  EXPECT_EQ(driver_.definition, kDefs31 +
                                    "variable epsilon1;\n"
                                    "variable epsilon1;\n" +
                                    kConstr31 +
                                    "epsilon1>0;\n"
                                    "epsilon1>0;\n"
                                    "[P0,zeros(3,1);\n"
                                    "zeros(1,3),P1] - \n"
                                    "[zeros(3,3),zeros(3,1);\n"
                                    "zeros(1,3),epsilon1] > 0;\n"
                                    "maximize objective=(0+epsilon1+epsilon1)/2;\n");
}

TEST_F(Individual, AsksForNoObjectiveWithoutAChosenContact) {
  answer_with(kFeasible);
  EXPECT_EQ(ask(kMaximizeIndividual, kBase31, kTypes31, kFriction31, kBounds31, Contacts{}), 0.0F);
  EXPECT_EQ(driver_.definition, kDefs31 + kConstr31 +
                                    "[P0,zeros(3,1);\n"
                                    "zeros(1,3),P1] - \n"
                                    "[zeros(3,3),zeros(3,1);\n"
                                    "zeros(1,3),0] > 0;\n");
  EXPECT_TRUE(driver_.lastResult.feasible);
}

TEST_F(Individual, WarnsOfContactsThatDoNotExistAndLeavesThemOutOfTheSum) {
  ask(kMaximizeIndividual, kBase31, kTypes31, kFriction31, kBounds31, Contacts{-1, 0, 2});
  EXPECT_EQ(said_,
            "sdpsol_wrapper-warning: defined Contact to maximize does not exist, maxContact -1\n"
            "sdpsol_wrapper-warning: defined Contact to maximize does not exist, maxContact 2\n");
  EXPECT_EQ(driver_.definition, kDefs31 + "variable epsilon0;\n" + kConstr31 +
                                    "epsilon0>0;\n"
                                    "[P0,zeros(3,1);\n"
                                    "zeros(1,3),P1] - \n"
                                    "[epsilon0*eye(3),zeros(3,1);\n"
                                    "zeros(1,3),0] > 0;\n"
                                    "maximize objective=(0+x2)/3;\n");
}

TEST_F(Individual, MaximisesNothingWhenNoChosenContactExists) {
  ask(kMaximizeIndividual, kBase11, kTypes11, kFriction11, kBounds11, Contacts{7});
  EXPECT_EQ(driver_.definition, kDefs11 + kConstr11 +
                                    "[P0,zeros(1,1);\n"
                                    "zeros(1,1),P1] - \n"
                                    "[0,zeros(1,1);\n"
                                    "zeros(1,1),0] > 0;\n"
                                    "maximize objective=(0)/1;\n");
}

TEST_F(Individual, ReportsUnknownTypesTwiceInOrder) {
  ask(kMaximizeIndividual, {1, 2, 3}, {2, 1}, {0, 0}, {0, 1, 0, 1, 0, 1}, Contacts{0, 9});
  EXPECT_EQ(said_,
            "sdpsol_wrapper-warning: defined Contact to maximize does not exist, maxContact 9\n"
            "Warning, unknown friction type 2\n"
            "unknown friction type 2\n");
  EXPECT_NE(driver_.definition.find("epsilon0>0;\n"
                                    "[P0,zeros(2,1);\n"
                                    "zeros(1,2),P1] - \n"
                                    "[,zeros(2,1);\n"
                                    "zeros(1,2),0] > 0;\n"
                                    "maximize objective=(0+epsilon0)/2;\n"),
            std::string::npos);
}

TEST_F(Individual, CountsComponentsOfTheObjectiveModulo32Bits) {
  ask(kMaximizeIndividual, {1, 2}, {-1, 3}, {1, 1}, {0, 1, 0, 1}, Contacts{1});
  EXPECT_TRUE(driver_.definition.ends_with("\nmaximize objective=(0+x1)/1;\n"));
}

TEST_F(Individual, WarnsOfABaseThatIsNoMultipleWithItsOwnPrefix) {
  ask(kMaximizeIndividual, {1, 2, 3}, kTypes11, kFriction11, kBounds11, Contacts{0});
  EXPECT_EQ(said_,
            "sdpsol_wrapper-warning: Error calculation Nullspace size; size of Base is 3,sum_cdim "
            "is 2\n");
}

TEST_F(Individual, WarnsOnceOfShortLists) {
  ask(kMaximizeIndividual, {1, 2, 3}, {3}, {}, {}, Contacts{0});
  EXPECT_EQ(said_, kTooShort);
}

TEST_F(Individual, AnswersTheObjectiveOrZero) {
  answer_with(kObjective);
  EXPECT_EQ(ask(kMaximizeIndividual, kBase31, kTypes31, kFriction31, kBounds31, Contacts{0}),
            3.43119587F);
  answer_with(kInfeasibleWithNumbers);
  EXPECT_EQ(ask(kMaximizeIndividual, kBase31, kTypes31, kFriction31, kBounds31, Contacts{0}), 0.0F);
}

TEST_F(Individual, RefusesAProblemWithoutContacts) {
  expect_refused(ask(kMaximizeIndividual, {1}, {}, {}, {}, Contacts{0}), kNoComponents);
}

TEST_F(FrictionContacts, PosesMarginsOfContactsWithFrictionFirst) {
  Values values(3);
  ask(kMaximizeFrictionContacts, kBase313, kTypes313, kFriction313, kBounds313, &values);
  EXPECT_EQ(driver_.definition,
            "variable epsilon0;\n"
            "variable epsilon2;\n" +
                kDefs313 + kConstr313 +
                "epsilon0>0;\n"
                "epsilon2>0;\n"
                "[P0,zeros(3,4);\n"
                "zeros(1,3),P1,zeros(1,3);\n"
                "zeros(3,4),P2] - \n"
                "[epsilon0*eye(3),zeros(3,4);\n"
                "zeros(1,3),1,zeros(1,3);\n"
                "zeros(3,4),epsilon2*eye(3)] > 0;\n"
                "maximize objective=(0+epsilon0+epsilon2)/2;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(FrictionContacts, DividesByZeroForASingleContact) {
  Values values(1);
  ask(kMaximizeFrictionContacts, kBase3, kTypes3, kFriction3, kBounds3, &values);
  EXPECT_EQ(driver_.definition, "variable epsilon0;\n" + kDefs3 + kConstr3 +
                                    "epsilon0>0;\n"
                                    "[P0] - \n"
                                    "[epsilon0*eye(3)] > 0;\n"
                                    "maximize objective=(0+epsilon0)/0;\n");
}

TEST_F(FrictionContacts, PosesNoMarginsWithoutFriction) {
  Values values(2);
  ask(kMaximizeFrictionContacts, kBase11, kTypes11, kFriction11, kBounds11, &values);
  EXPECT_EQ(driver_.definition, kDefs11 + kConstr11 +
                                    "[P0,zeros(1,1);\n"
                                    "zeros(1,1),P1] - \n"
                                    "[1,zeros(1,1);\n"
                                    "zeros(1,1),1] > 0;\n"
                                    "maximize objective=(0)/1;\n");
}

TEST_F(FrictionContacts, HandsTheFirstValuesOutWhateverTheyBelongTo) {
  answer_with(kObjective);
  Values values{-1, -1, -1};
  EXPECT_EQ(ask(kMaximizeFrictionContacts, kBase313, kTypes313, kFriction313, kBounds313, &values),
            3.43119587F);
  EXPECT_EQ(values, (Values{1.5, 2.5, 3.5}));
}

TEST_F(FrictionContacts, LeavesElementsBehindTheValuesUntouched) {
  answer_with(kFeasible);
  Values values{-1, -2, -3, -4};
  ask(kMaximizeFrictionContacts, kBase313, kTypes313, kFriction313, kBounds313, &values);
  EXPECT_EQ(values, (Values{1.0, -2, -3, -4}));
}

TEST_F(FrictionContacts, NeverWritesMoreValuesThanContacts) {
  answer_with(kObjective);
  Values values{-1, -2, -3, -4};
  ask(kMaximizeFrictionContacts, kBase3, kTypes3, kFriction3, kBounds3, &values);
  EXPECT_EQ(values, (Values{1.5, -2, -3, -4}));
}

TEST_F(FrictionContacts, NeverWritesBehindAShortOutputList) {
  answer_with(kObjective);
  Values values{-1};
  ask(kMaximizeFrictionContacts, kBase313, kTypes313, kFriction313, kBounds313, &values);
  EXPECT_EQ(values, Values{1.5});
  EXPECT_EQ(ask(kMaximizeFrictionContacts, kBase313, kTypes313, kFriction313, kBounds313,
                static_cast<Values*>(nullptr)),
            3.43119587F);
}

TEST_F(FrictionContacts, HandsValuesOutWhenInfeasibleToo) {
  answer_with(kInfeasibleWithNumbers);
  Values values{-1, -1, -1};
  EXPECT_EQ(ask(kMaximizeFrictionContacts, kBase313, kTypes313, kFriction313, kBounds313, &values),
            0.0F);
  EXPECT_EQ(values, (Values{3.5, -1, -1}));
}

TEST_F(FrictionContacts, LeavesTheOutputListAfterAFailedRun) {
  driver_ = scripted_driver(dir_, "exit 1\n");
  Values values{-1, -1, -1};
  EXPECT_EQ(ask(kMaximizeFrictionContacts, kBase313, kTypes313, kFriction313, kBounds313, &values),
            0.0F);
  EXPECT_EQ(values, (Values{-1, -1, -1}));
}

TEST_F(FrictionContacts, ReportsUnknownTypesTwiceAndOmitsTheirBlocks) {
  Values values(2);
  ask(kMaximizeFrictionContacts, {1, 2, 3}, {2, 1}, {0, 0}, {0, 1, 0, 1, 0, 1}, &values);
  EXPECT_EQ(said_,
            "Warning, unknown friction type 2\n"
            "unknown friction type 2\n");
  EXPECT_NE(driver_.definition.find("x2<1;\n"
                                    "[P0,zeros(2,1);\n"
                                    "zeros(1,2),P1] - \n"
                                    "[,zeros(2,1);\n"
                                    "zeros(1,2),1] > 0;\n"
                                    "maximize objective=(0)/1;\n"),
            std::string::npos);
}

TEST_F(FrictionContacts, WarnsOfABaseThatIsNoMultiple) {
  Values values(2);
  ask(kMaximizeFrictionContacts, {1, 2, 3}, kTypes11, kFriction11, kBounds11, &values);
  EXPECT_EQ(said_,
            "iFE-warning: Error calculation Nullspace size; size of Base is 3,sum_cdim is 2\n");
}

TEST_F(FrictionContacts, WarnsOnceOfShortLists) {
  Values values(1);
  ask(kMaximizeFrictionContacts, {1, 2, 3}, {3}, {}, {}, &values);
  EXPECT_EQ(said_, kTooShort);
}

TEST_F(FrictionContacts, RefusesAProblemWithoutContacts) {
  Values values{-1};
  expect_refused(ask(kMaximizeFrictionContacts, {1}, {}, {}, {}, &values), kNoComponents);
  EXPECT_EQ(values, Values{-1});
}

TEST_F(All, PosesMarginsOfAllContactsFirst) {
  Values values(3);
  ask(kMaximizeAll, kBase313, kTypes313, kFriction313, kBounds313, &values);
  EXPECT_EQ(driver_.definition,
            "variable epsilon0;\n"
            "variable epsilon1;\n"
            "variable epsilon2;\n" +
                kDefs313 + kConstr313 +
                "epsilon0>0;\n"
                "epsilon1>0;\n"
                "epsilon2>0;\n"
                "[P0,zeros(3,4);\n"
                "zeros(1,3),P1,zeros(1,3);\n"
                "zeros(3,4),P2] - \n"
                "[epsilon0*eye(3),zeros(3,4);\n"
                "zeros(1,3),epsilon1,zeros(1,3);\n"
                "zeros(3,4),epsilon2*eye(3)] > 0;\n"
                "maximize objective=((0+epsilon0+epsilon2)/2)+epsilon1;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(All, DividesByZeroForASingleContact) {
  Values values(1);
  ask(kMaximizeAll, kBase3, kTypes3, kFriction3, kBounds3, &values);
  EXPECT_EQ(driver_.definition, "variable epsilon0;\n" + kDefs3 + kConstr3 +
                                    "epsilon0>0;\n"
                                    "[P0] - \n"
                                    "[epsilon0*eye(3)] > 0;\n"
                                    "maximize objective=((0+epsilon0)/0);\n");
}

TEST_F(All, AddsMarginsWithoutFrictionUndivided) {
  Values values(2);
  ask(kMaximizeAll, kBase11, kTypes11, kFriction11, kBounds11, &values);
  EXPECT_EQ(driver_.definition,
            "variable epsilon0;\n"
            "variable epsilon1;\n" +
                kDefs11 + kConstr11 +
                "epsilon0>0;\n"
                "epsilon1>0;\n"
                "[P0,zeros(1,1);\n"
                "zeros(1,1),P1] - \n"
                "[epsilon0,zeros(1,1);\n"
                "zeros(1,1),epsilon1] > 0;\n"
                "maximize objective=((0)/1)+epsilon0+epsilon1;\n");
}

TEST_F(All, HandsTheFirstValuesOut) {
  answer_with(kObjective);
  Values values{-1, -1, -1};
  EXPECT_EQ(ask(kMaximizeAll, kBase313, kTypes313, kFriction313, kBounds313, &values), 3.43119587F);
  EXPECT_EQ(values, (Values{1.5, 2.5, 3.5}));
  answer_with(kInfeasibleWithNumbers);
  values = {-1, -1, -1};
  EXPECT_EQ(ask(kMaximizeAll, kBase313, kTypes313, kFriction313, kBounds313, &values), 0.0F);
  EXPECT_EQ(values, (Values{3.5, -1, -1}));
}

TEST_F(All, GivesContactsOfUnknownTypeAVariableButNoBlock) {
  Values values(2);
  ask(kMaximizeAll, {1, 2, 3}, {2, 1}, {0, 0}, {0, 1, 0, 1, 0, 1}, &values);
  EXPECT_EQ(said_,
            "Warning, unknown friction type 2\n"
            "unknown friction type 2\n");
  EXPECT_EQ(driver_.definition,
            "variable epsilon0;\n"
            "variable epsilon1;\n"
            "BIGM=300000;\n"
            "variable z0;\n"
            "x0=1*z0;\n"
            "x1=2*z0;\n"
            "x2=3*z0;\n"
            "P1=x2;\n"
            "x0>0;\n"
            "x0<1;\n"
            "x1>0;\n"
            "x1<1;\n"
            "x2>0;\n"
            "x2<1;\n"
            "epsilon0>0;\n"
            "epsilon1>0;\n"
            "[P0,zeros(2,1);\n"
            "zeros(1,2),P1] - \n"
            "[,zeros(2,1);\n"
            "zeros(1,2),epsilon1] > 0;\n"
            "maximize objective=((0)/1)+epsilon1;\n");
}

TEST_F(All, WarnsOfABaseThatIsNoMultiple) {
  Values values(2);
  ask(kMaximizeAll, {1, 2, 3}, kTypes11, kFriction11, kBounds11, &values);
  EXPECT_EQ(said_,
            "iFE-warning: Error calculation Nullspace size; size of Base is 3,sum_cdim is 2\n");
}

TEST_F(All, WarnsOnceOfShortLists) {
  Values values(1);
  ask(kMaximizeAll, {1, 2, 3}, {3}, {}, {}, &values);
  EXPECT_EQ(said_, kTooShort);
}

TEST_F(All, RefusesAProblemWithoutContacts) {
  Values values{-1};
  expect_refused(ask(kMaximizeAll, {1}, {}, {}, {}, &values), kNoComponents);
}

}  // namespace
