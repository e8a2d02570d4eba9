#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "unit/sdpsol_wrapper.h"
#include "unit/test_support.h"

namespace {

using unit_test::CapturedOutput;
using unit_test::TestFolder;
using Matrix = std::vector<std::vector<double>>;

class IsFeasible : public ::testing::Test {
 protected:
  // The definition that the command gets to see, and what is said meanwhile.
  std::string posed(const std::vector<Matrix>& matrices, bool strict) {
    const CapturedOutput output;
    driver_.isFeasible(matrices, strict);
    said_ = output.text();
    EXPECT_EQ(unit_test::content_of(driver_.definitionFile), driver_.definition);
    return driver_.definition;
  }

  TestFolder dir_;
  sdpsol_wrapper driver_ = unit_test::answering_driver(dir_, unit_test::kFeasible);
  std::string said_;
};

TEST_F(IsFeasible, PosesTheSumOfAllMatrices) {
  EXPECT_EQ(posed({{{1, 0}, {0, 1}}, {{0.5, 2}, {2, -1}}}, true),
            "P0=[1,0;0,1];\n"
            "P1=[0.5,2;2,-1];\n"
            "variable x1;\n"
            "P=P0+P1*x1;\n"
            "P>0;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(IsFeasible, NumbersVariablesFromOne) {
  EXPECT_EQ(posed({{{1}}, {{2}}, {{3}}, {{4}}}, true),
            "P0=[1];\n"
            "P1=[2];\n"
            "P2=[3];\n"
            "P3=[4];\n"
            "variable x1;\n"
            "variable x2;\n"
            "variable x3;\n"
            "P=P0+P1*x1+P2*x2+P3*x3;\n"
            "P>0;\n");
}

TEST_F(IsFeasible, PosesAnInequalityThatIsNotStrict) {
  EXPECT_EQ(posed({{{5}}}, false),
            "P0=[5];\n"
            "P=P0;\n"
            "P>=0;\n");
}

TEST_F(IsFeasible, DeclaresNoVariableForASingleMatrix) {
  EXPECT_EQ(posed({{{1, 2}, {2, 5}}}, true),
            "P0=[1,2;2,5];\n"
            "P=P0;\n"
            "P>0;\n");
}

TEST_F(IsFeasible, NamesAMatrixThatNobodyGaveForAnEmptyList) {
  EXPECT_EQ(posed({}, true),
            "P=P0;\n"
            "P>0;\n");
}

TEST_F(IsFeasible, WritesAnEmptyMatrixAsEmptyBrackets) {
  EXPECT_EQ(posed({{}}, true),
            "P0=[];\n"
            "P=P0;\n"
            "P>0;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(IsFeasible, ReadsRowsWithoutElementsAsZeroWithOneWarning) {
  EXPECT_EQ(posed({{{}, {1}}, {{}, {}}}, true),
            "P0=[0;1];\n"
            "P1=[0;0];\n"
            "variable x1;\n"
            "P=P0+P1*x1;\n"
            "P>0;\n");
  EXPECT_EQ(said_,
            "sdpsol_wrapper-warning: matrix rows without elements are read as 0; "
            "number of such rows is 3\n");
}

TEST_F(IsFeasible, SaysThatASingleRowWithoutElementsIsReadAsZero) {
  EXPECT_EQ(posed({{{}}}, true),
            "P0=[0];\n"
            "P=P0;\n"
            "P>0;\n");
  EXPECT_EQ(said_,
            "sdpsol_wrapper-warning: matrix rows without elements are read as 0; "
            "number of such rows is 1\n");
}

TEST_F(IsFeasible, WritesWhateverShapesItGets) {
  EXPECT_EQ(posed({{{1, 2, 3}, {4}}}, true),
            "P0=[1,2,3;4];\n"
            "P=P0;\n"
            "P>0;\n");
}

TEST_F(IsFeasible, WritesSixSignificantDigits) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(posed({{{0.0000001, 1500000}, {1.23456789, -0.333333333}},
                   {{1.2345671, 1.2345674}, {123456.4, kInfinity}}},
                  true),
            "P0=[1e-07,1.5e+06;1.23457,-0.333333];\n"
            "P1=[1.23457,1.23457;123456,inf];\n"
            "variable x1;\n"
            "P=P0+P1*x1;\n"
            "P>0;\n");
}

TEST_F(IsFeasible, AnswersTheVerdict) {
  EXPECT_TRUE(driver_.isFeasible({{{1}}}, true));
  unit_test::write_file(dir_.path("answer"), unit_test::kInfeasible);
  EXPECT_FALSE(driver_.isFeasible({{{1}}}, true));
  EXPECT_EQ(driver_.lastResult.errorCode, 0);
}

TEST_F(IsFeasible, LeavesTheWholeResultForTheHost) {
  unit_test::write_file(dir_.path("answer"),
                        "*** Objective value\nNO OBJECTIVE.\n\n*** Variables\nx1 = -2.5\n\n");
  EXPECT_TRUE(driver_.isFeasible({{{1}}, {{2}}}, true));
  EXPECT_EQ(driver_.lastResult.variableNames, std::vector<std::string>{"x1"});
  EXPECT_EQ(driver_.lastResult.variableValues, std::vector<double>{-2.5});
}

TEST_F(IsFeasible, ReplacesADefinitionWithItsParameters) {
  driver_.definition = "old;\n";
  driver_.setParameters(driver_.getDefaultParameters());
  EXPECT_EQ(posed({{{5}}}, true),
            "P0=[5];\n"
            "P=P0;\n"
            "P>0;\n");
}

TEST_F(IsFeasible, AnswersNoWhenTheRunFails) {
  sdpsol_wrapper failing = unit_test::scripted_driver(dir_, "exit 1\n");
  const CapturedOutput output;
  EXPECT_FALSE(failing.isFeasible({{{1}}}, true));
  EXPECT_EQ(failing.lastResult.errorCode, 2);
  EXPECT_EQ(output.text().substr(47, 47), "_____________callsdpsol NOT successful________\n");
}

TEST_F(IsFeasible, LetsTheErrorOfAMalformedResultPass) {
  unit_test::write_file(dir_.path("answer"), "");
  EXPECT_THROW(driver_.isFeasible({{{1}}}, true), std::out_of_range);
  EXPECT_EQ(driver_.lastResult.errorCode, 100);
  EXPECT_EQ(driver_.definition,
            "P0=[1];\n"
            "P=P0;\n"
            "P>0;\n");
}

}  // namespace
