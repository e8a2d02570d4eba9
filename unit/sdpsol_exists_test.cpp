// The two problems with one inequality: existence and a single contact's
// margin; with them what all five problems share around the text.
#include <gtest/gtest.h>

#include <stdexcept>

#include "unit/intforce_fixture.h"

namespace {

using namespace unit_test;

constexpr auto kForceExists = &sdpsol_wrapper::internalForceExists;
constexpr auto kMaximizePointContact = &sdpsol_wrapper::internalForceMaximizePointContact;

class Exists : public IntForce {};
class PointContact : public IntForce {};

TEST_F(Exists, PosesASingleContactWhole) {
  EXPECT_EQ(ask(kForceExists, {0, 0, 1}, {3}, {0.5}, {0, 10, 0, 10, 0, 10}), 1.0F);
  EXPECT_EQ(driver_.definition,
            "BIGM=300000;\n"
            "variable z0;\n"
            "x0=0*z0;\n"
            "x1=0*z0;\n"
            "x2=1*z0;\n"
            "P0=[\n"
            "x2*0.5,0,x0;\n"
            "0,x2*0.5,x1;\n"
            "x0,x1,x2*0.5\n"
            "];\n"
            "x0>0;\n"
            "x0<10;\n"
            "x1>0;\n"
            "x1<10;\n"
            "x2>0;\n"
            "x2<10;\n"
            "[P0]>0;\n");
  EXPECT_EQ(said_, "");
  EXPECT_EQ(content_of(driver_.definitionFile), driver_.definition);
}

TEST_F(Exists, LaysBlocksOutDiagonally) {
  ask(kForceExists, kBase313, kTypes313, kFriction313, kBounds313);
  EXPECT_EQ(driver_.definition, kDefs313 + kConstr313 +
                                    "[P0,zeros(3,4);\n"
                                    "zeros(1,3),P1,zeros(1,3);\n"
                                    "zeros(3,4),P2]>0;\n");
}

TEST_F(Exists, LaysTwoFrictionlessContactsOut) {
  ask(kForceExists, kBase11, kTypes11, kFriction11, kBounds11);
  EXPECT_EQ(driver_.definition, kDefs11 + kConstr11 +
                                    "[P0,zeros(1,1);\n"
                                    "zeros(1,1),P1]>0;\n");
}

TEST_F(Exists, WarnsOnceOfABaseThatIsNoMultipleAndRoundsDown) {
  ask(kForceExists, {1, 2, 3, 4, 5}, kTypes11, kFriction11, kBounds11);
  EXPECT_EQ(said_,
            "iFE-warning: Error calculation Nullspace size; size of Base is 5,sum_cdim is 2\n");
  EXPECT_EQ(driver_.definition,
            "BIGM=300000;\n"
            "variable z0;\n"
            "variable z1;\n"
            "x0=1*z0+2*z1;\n"
            "x1=3*z0+4*z1;\n" +
                kConstr11 +
                "[P0,zeros(1,1);\n"
                "zeros(1,1),P1]>0;\n");
}

TEST_F(Exists, AnswersExactlyOneOrZero) {
  answer_with(kObjective);
  EXPECT_EQ(ask(kForceExists, kBase3, kTypes3, kFriction3, kBounds3), 1.0F);
  answer_with(kInfeasibleWithNumbers);
  EXPECT_EQ(ask(kForceExists, kBase3, kTypes3, kFriction3, kBounds3), 0.0F);
  answer_with("FEASIBILITY CANNOT BE DETERMINED\n\n*** Variables\n\n");
  EXPECT_EQ(ask(kForceExists, kBase3, kTypes3, kFriction3, kBounds3), 0.0F);
}

TEST_F(Exists, LeavesTheValuesForTheHost) {
  answer_with(kObjective);
  ask(kForceExists, kBase3, kTypes3, kFriction3, kBounds3);
  EXPECT_EQ(driver_.lastResult.errorCode, 0);
  EXPECT_EQ(driver_.lastResult.variableNames,
            (std::vector<std::string>{"epsilon0", "epsilon2", "z0", "z1"}));
  EXPECT_EQ(driver_.lastResult.variableValues, (std::vector<double>{1.5, 2.5, 3.5, 4.5}));
}

TEST_F(Exists, ReplacesADefinitionWithItsParameters) {
  driver_.definition = "old;\n";
  driver_.setParameters(driver_.getDefaultParameters());
  ask(kForceExists, kBase3, kTypes3, kFriction3, kBounds3);
  EXPECT_EQ(driver_.definition, kDefs3 + kConstr3 + "[P0]>0;\n");
}

TEST_F(Exists, AnswersZeroWhenTheRunFails) {
  driver_ = scripted_driver(dir_, "exit 1\n");
  EXPECT_EQ(ask(kForceExists, kBase3, kTypes3, kFriction3, kBounds3), 0.0F);
  EXPECT_EQ(driver_.lastResult.errorCode, 2);
  EXPECT_EQ(driver_.definition, kDefs3 + kConstr3 + "[P0]>0;\n");
}

TEST_F(Exists, LetsTheErrorOfAMalformedResultPass) {
  answer_with("");
  EXPECT_THROW(ask(kForceExists, kBase3, kTypes3, kFriction3, kBounds3), std::out_of_range);
  EXPECT_EQ(driver_.lastResult.errorCode, 100);
}

TEST_F(Exists, WarnsOfAnUnknownTypeAndNamesItsMatrixAllTheSame) {
  ask(kForceExists, {1, 2, 3}, {2, 1}, {0, 0}, {0, 1, 0, 1, 0, 1});
  EXPECT_EQ(said_, "Warning, unknown friction type 2\n");
  EXPECT_EQ(driver_.definition,
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
            "[P0,zeros(2,1);\n"
            "zeros(1,2),P1]>0;\n");
}

TEST_F(Exists, WritesTypesSignedAndWidthsUnsigned) {
  ask(kForceExists, {1, 2}, {3, -1}, {1, 1}, {0, 1, 0, 1});
  EXPECT_EQ(said_, "Warning, unknown friction type -1\n");
  // After the first contact the offset, 3, is past the sum, 2: no block to the right.
  EXPECT_EQ(driver_.definition,
            "BIGM=300000;\n"
            "variable z0;\n"
            "x0=1*z0;\n"
            "x1=2*z0;\n"
            "P0=[\n"
            "x2*1,0,x0;\n"
            "0,x2*1,x1;\n"
            "x0,x1,x2*1\n"
            "];\n"
            "x0>0;\n"
            "x0<1;\n"
            "x1>0;\n"
            "x1<1;\n"
            "[P0zeros(-1,3),P1]>0;\n");
}

TEST_F(Exists, CountsOffsetsModulo32Bits) {
  ask(kForceExists, {1, 2}, {-1, 3}, {1, 1}, {0, 1, 0, 1});
  // The first offset, 2^32 - 1, is past the sum, 2; the second one is the sum.
  EXPECT_TRUE(driver_.definition.ends_with("\n[P0zeros(3,4294967295),P1]>0;\n"));
  ask(kForceExists, {1, 2, 3}, {3, -1, 1}, {1, 1, 1}, {0, 1, 0, 1, 0, 1});
  EXPECT_TRUE(
      driver_.definition.ends_with("\n[P0zeros(-1,3),P1,zeros(-1,1);\nzeros(1,2),P2]>0;\n"));
}

TEST_F(Exists, WarnsBeforeTheRunReports) {
  driver_ = scripted_driver(dir_, "exit 0\n");
  ask(kForceExists, {1, 2, 3}, {2, 1}, {0, 0}, {0, 1});
  EXPECT_EQ(said_,
            "Warning, unknown friction type 2\n"
            "sdpsol_wrapper-warning: input too short, missing values are read as 0, size of Force "
            "constraints is 2\n"
            "----------------------------------------------\n"
            "______________readResult NOT successful_______\n"
            "check permissions of file " +
                driver_.resultFile +
                "\n"
                "----------------------------------------------\n");
}

TEST_F(Exists, ReadsAllShortListsAsZeroWithOneWarning) {
  ask(kForceExists, {}, {3}, {}, {0});
  EXPECT_EQ(said_,
            "sdpsol_wrapper-warning: input too short, missing values are read as 0, size of Base "
            "is 0, size of Friction constraints is 0, size of Force constraints is 1\n");
  EXPECT_EQ(driver_.definition,
            "BIGM=300000;\n"
            "x0=0*z0;\n"
            "x1=0*z0;\n"
            "x2=0*z0;\n"
            "P0=[\n"
            "x2*0,0,x0;\n"
            "0,x2*0,x1;\n"
            "x0,x1,x2*0\n"
            "];\n"
            "x0>0;\n"
            "x0<0;\n"
            "x1>0;\n"
            "x1<0;\n"
            "x2>0;\n"
            "x2<0;\n"
            "[P0]>0;\n");
}

TEST_F(Exists, RepeatsTheFirstEntryOfABaseShorterThanOneColumn) {
  ask(kForceExists, {7, 8}, kTypes3, kFriction3, kBounds3);
  EXPECT_EQ(said_,
            "iFE-warning: Error calculation Nullspace size; size of Base is 2,sum_cdim is 3\n");
  EXPECT_EQ(driver_.definition,
            "BIGM=300000;\n"
            "x0=7*z0;\n"
            "x1=7*z0;\n"
            "x2=7*z0;\n" +
                kConstr3 + "[P0]>0;\n");
}

TEST_F(Exists, RefusesAProblemWithoutContacts) {
  driver_.lastResult = {0, true, 5.0, {"old"}, {1.0}, 1};
  expect_refused(ask(kForceExists, {1, 2}, {}, {}, {}), kNoComponents);
}

TEST_F(Exists, RefusesTypesThatAddUpToZero) {
  expect_refused(ask(kForceExists, {1, 2}, {3, -3}, {1, 1}, {}), kNoComponents);
  expect_refused(ask(kForceExists, {1, 2}, {0, 0}, {1, 1}, {}), kNoComponents);
}

TEST_F(Exists, RefusesMoreThan65536ComponentsWithoutCoordinates) {
  expect_refused(ask(kForceExists, {1, 2}, {65537}, {1}, {}),
                 "sdpsol_wrapper-warning: sum of contact types is 65537, size of Base is 2, "
                 "problem is not solved\n");
  expect_refused(ask(kForceExists, {}, {-1}, {1}, {}),
                 "sdpsol_wrapper-warning: sum of contact types is 4294967295, size of Base is 0, "
                 "problem is not solved\n");
}

TEST_F(Exists, Poses65536ComponentsWithoutCoordinates) {
  EXPECT_EQ(ask(kForceExists, {1}, {65536}, {1}, {}), 1.0F);
  EXPECT_EQ(driver_.definition.substr(0, 21), "BIGM=300000;\nx0=1*z0;");
  EXPECT_NE(driver_.definition.find("\nx65535<0;\n[P0]>0;\n"), std::string::npos);
}

TEST_F(Exists, PosesMoreThan65536ComponentsWithACoordinate) {
  const std::vector<int> types(70000, 1);
  const std::vector<double> ones(140000, 1.0);
  EXPECT_EQ(ask(kForceExists, std::vector<double>(70000, 1.0), types, ones, ones), 1.0F);
  EXPECT_EQ(said_, "");
}

TEST_F(PointContact, PutsTheMarginIntoTheChosenBlock) {
  ask(kMaximizePointContact, kBase31, kTypes31, kFriction31, kBounds31, 0U);
  EXPECT_EQ(driver_.definition, kDefs31 + "variable epsilon;\n" + kConstr31 +
                                    "epsilon>0;\n"
                                    "[P0-epsilon*eye(3),zeros(3,1);\n"
                                    "zeros(1,3),P1] > 0;\n"
                                    "maximize objective=epsilon;\n");
  ask(kMaximizePointContact, kBase31, kTypes31, kFriction31, kBounds31, 1U);
  EXPECT_EQ(driver_.definition, kDefs31 + "variable epsilon;\n" + kConstr31 +
                                    "epsilon>0;\n"
                                    "[P0,zeros(3,1);\n"
                                    "zeros(1,3),P1-epsilon] > 0;\n"
                                    "maximize objective=epsilon;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(PointContact, PosesASingleContact) {
  ask(kMaximizePointContact, kBase3, kTypes3, kFriction3, kBounds3, 0U);
  EXPECT_EQ(driver_.definition, kDefs3 + "variable epsilon;\n" + kConstr3 +
                                    "epsilon>0;\n"
                                    "[P0-epsilon*eye(3)] > 0;\n"
                                    "maximize objective=epsilon;\n");
  ask(kMaximizePointContact, {2}, {1}, {0}, {0, 10}, 0U);
  EXPECT_EQ(driver_.definition,
            "BIGM=300000;\n"
            "variable z0;\n"
            "x0=2*z0;\n"
            "variable epsilon;\n"
            "P0=x0;\n"
            "x0>0;\n"
            "x0<10;\n"
            "epsilon>0;\n"
            "[P0-epsilon] > 0;\n"
            "maximize objective=epsilon;\n");
}

TEST_F(PointContact, LeavesTheMarginUnboundForAContactThatDoesNotExist) {
  const std::string expected = kDefs31 + "variable epsilon;\n" + kConstr31 +
                               "epsilon>0;\n"
                               "[P0,zeros(3,1);\n"
                               "zeros(1,3),P1] > 0;\n"
                               "maximize objective=epsilon;\n";
  for (const std::uint32_t contact : {2U, 4294967295U}) {
    ask(kMaximizePointContact, kBase31, kTypes31, kFriction31, kBounds31, contact);
    EXPECT_EQ(driver_.definition, expected);
    EXPECT_EQ(said_, "");
  }
}

TEST_F(PointContact, ReportsAnUnknownTypeOfTheChosenContactTwice) {
  ask(kMaximizePointContact, {1, 2, 3}, {2, 1}, {0, 0}, {0, 1, 0, 1, 0, 1}, 0U);
  EXPECT_EQ(said_,
            "Warning, unknown friction type 2\n"
            "unknow contact type 2\n");
  EXPECT_NE(driver_.definition.find("\n[P0,zeros(2,1);\nzeros(1,2),P1] > 0;\n"), std::string::npos);
}

TEST_F(PointContact, ReportsAnUnknownTypeElsewhereOnce) {
  ask(kMaximizePointContact, {1, 2, 3}, {2, 1}, {0, 0}, {0, 1, 0, 1, 0, 1}, 1U);
  EXPECT_EQ(said_, "Warning, unknown friction type 2\n");
}

TEST_F(PointContact, WarnsOfABaseThatIsNoMultiple) {
  ask(kMaximizePointContact, {1, 2, 3}, kTypes11, kFriction11, kBounds11, 0U);
  EXPECT_EQ(said_,
            "iFE-warning: Error calculation Nullspace size; size of Base is 3,sum_cdim is 2\n");
}

TEST_F(PointContact, WarnsOnceOfShortLists) {
  ask(kMaximizePointContact, {1, 2, 3}, {3}, {}, {}, 0U);
  EXPECT_EQ(said_,
            "sdpsol_wrapper-warning: input too short, missing values are read as 0, size of "
            "Friction constraints is 0, size of Force constraints is 0\n");
}

TEST_F(PointContact, AnswersTheObjectiveInSinglePrecision) {
  answer_with(kObjective);
  EXPECT_EQ(ask(kMaximizePointContact, kBase3, kTypes3, kFriction3, kBounds3, 0U), 3.43119587F);
}

TEST_F(PointContact, AnswersZeroWhenInfeasibleOrFailed) {
  answer_with(kInfeasibleWithNumbers);
  EXPECT_EQ(ask(kMaximizePointContact, kBase3, kTypes3, kFriction3, kBounds3, 0U), 0.0F);
  EXPECT_EQ(driver_.lastResult.objectiveValue, 3.43119587);
  driver_ = scripted_driver(dir_, "exit 1\n");
  EXPECT_EQ(ask(kMaximizePointContact, kBase3, kTypes3, kFriction3, kBounds3, 0U), 0.0F);
}

TEST_F(PointContact, RefusesAProblemWithoutContacts) {
  expect_refused(ask(kMaximizePointContact, {1}, {}, {}, {}, 0U), kNoComponents);
}

}  // namespace
