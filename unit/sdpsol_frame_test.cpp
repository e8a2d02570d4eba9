#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "unit/sdpsol_wrapper.h"
#include "unit/test_support.h"

namespace {

using unit_test::CapturedOutput;

class Frame : public ::testing::Test {
 protected:
  std::string defs(const std::vector<double>& base, std::uint32_t components,
                   std::uint32_t coordinates) {
    const CapturedOutput output;
    std::string text = driver_.intforce_basic_defs(base, {}, components, coordinates);
    said_ = output.text();
    return text;
  }

  std::string constr(const std::vector<int>& types, const std::vector<double>& friction,
                     const std::vector<double>& bounds, std::uint32_t components) {
    const CapturedOutput output;
    std::string text = driver_.intforce_basic_constr(types, friction, bounds, components, 99);
    said_ = output.text();
    return text;
  }

  sdpsol_wrapper driver_{"sdpsol", "sdpsol.in", "sdpsol.out"};
  std::string said_;
};

TEST_F(Frame, DefinesForcesByCoordinates) {
  EXPECT_EQ(defs({0.5, -1, 2, 0}, 2, 2),
            "BIGM=300000;\n"
            "variable z0;\n"
            "variable z1;\n"
            "x0=0.5*z0+-1*z1;\n"
            "x1=2*z0+0*z1;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(Frame, WritesAPlusBeforeNegativeCoefficientsToo) {
  EXPECT_EQ(defs({-1, -0.25, -2}, 1, 3),
            "BIGM=300000;\n"
            "variable z0;\n"
            "variable z1;\n"
            "variable z2;\n"
            "x0=-1*z0+-0.25*z1+-2*z2;\n");
}

TEST_F(Frame, WritesNoSumForASingleCoordinate) {
  EXPECT_EQ(defs({1200000, 0.0000001, 1.0 / 3.0}, 3, 1),
            "BIGM=300000;\n"
            "variable z0;\n"
            "x0=1.2e+06*z0;\n"
            "x1=1e-07*z0;\n"
            "x2=0.333333*z0;\n");
}

TEST_F(Frame, PrintsTheFirstBaseEntryEverywhereWithoutCoordinates) {
  EXPECT_EQ(defs({7, 8}, 3, 0),
            "BIGM=300000;\n"
            "x0=7*z0;\n"
            "x1=7*z0;\n"
            "x2=7*z0;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(Frame, WritesOnlyTheSettingWithoutComponents) {
  EXPECT_EQ(defs({}, 0, 0), "BIGM=300000;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(Frame, ReadsAShortBaseAsZeroWithOneWarning) {
  EXPECT_EQ(defs({1, 2, 3}, 2, 2),
            "BIGM=300000;\n"
            "variable z0;\n"
            "variable z1;\n"
            "x0=1*z0+2*z1;\n"
            "x1=3*z0+0*z1;\n");
  EXPECT_EQ(said_,
            "sdpsol_wrapper-warning: input too short, missing values are read as 0, "
            "size of Base is 3\n");
}

TEST_F(Frame, WritesConesAndBounds) {
  EXPECT_EQ(constr({3, 1}, {0.5, 0.7}, {0, 10, 0, 10, 0, 10, 0, 10}, 4),
            "P0=[\n"
            "x2*0.5,0,x0;\n"
            "0,x2*0.5,x1;\n"
            "x0,x1,x2*0.5\n"
            "];\n"
            "P1=x3;\n"
            "x0>0;\n"
            "x0<10;\n"
            "x1>0;\n"
            "x1<10;\n"
            "x2>0;\n"
            "x2<10;\n"
            "x3>0;\n"
            "x3<10;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(Frame, CountsComponentsAcrossContacts) {
  EXPECT_EQ(constr({1, 3, 1}, {9, 0.25, 9}, {-1, 1, -2, 2, -3, 3, -4, 4, -5, 5}, 5),
            "P0=x0;\n"
            "P1=[\n"
            "x3*0.25,0,x1;\n"
            "0,x3*0.25,x2;\n"
            "x1,x2,x3*0.25\n"
            "];\n"
            "P2=x4;\n"
            "x0>-1;\n"
            "x0<1;\n"
            "x1>-2;\n"
            "x1<2;\n"
            "x2>-3;\n"
            "x2<3;\n"
            "x3>-4;\n"
            "x3<4;\n"
            "x4>-5;\n"
            "x4<5;\n");
}

TEST_F(Frame, WritesNothingWithoutContacts) {
  EXPECT_EQ(constr({}, {}, {}, 0), "");
  EXPECT_EQ(said_, "");
}

TEST_F(Frame, WarnsOfUnknownTypesAndLetsThemConsumeComponents) {
  EXPECT_EQ(constr({2, 1, -1, 1}, {0, 0, 0, 0}, {0, 1, 0, 1, 0, 1}, 3),
            "P1=x2;\n"
            "P3=x2;\n"
            "x0>0;\n"
            "x0<1;\n"
            "x1>0;\n"
            "x1<1;\n"
            "x2>0;\n"
            "x2<1;\n");
  EXPECT_EQ(said_,
            "Warning, unknown friction type 2\n"
            "Warning, unknown friction type -1\n");
}

TEST_F(Frame, CountsComponentsModulo32Bits) {
  EXPECT_EQ(constr({-1, 3}, {9, 0.5}, {0, 1, 2, 3}, 2),
            "P1=[\n"
            "x1*0.5,0,x4294967295;\n"
            "0,x1*0.5,x0;\n"
            "x4294967295,x0,x1*0.5\n"
            "];\n"
            "x0>0;\n"
            "x0<1;\n"
            "x1>2;\n"
            "x1<3;\n");
  EXPECT_EQ(said_, "Warning, unknown friction type -1\n");
}

TEST_F(Frame, ReadsShortFrictionAndBoundsAsZeroWithOneWarning) {
  EXPECT_EQ(constr({3}, {}, {-1, 1, -2}, 3),
            "P0=[\n"
            "x2*0,0,x0;\n"
            "0,x2*0,x1;\n"
            "x0,x1,x2*0\n"
            "];\n"
            "x0>-1;\n"
            "x0<1;\n"
            "x1>-2;\n"
            "x1<0;\n"
            "x2>0;\n"
            "x2<0;\n");
  EXPECT_EQ(said_,
            "sdpsol_wrapper-warning: input too short, missing values are read as 0, "
            "size of Friction constraints is 0, size of Force constraints is 3\n");
}

TEST_F(Frame, DoesNotMissFrictionThatNoContactNeeds) {
  EXPECT_EQ(constr({1}, {}, {0, 1}, 1),
            "P0=x0;\n"
            "x0>0;\n"
            "x0<1;\n");
  EXPECT_EQ(said_, "");
}

TEST_F(Frame, LeavesTheDriverAlone) {
  driver_.definition = "old";
  defs({1}, 1, 1);
  constr({1}, {1}, {0, 1}, 1);
  EXPECT_EQ(driver_.definition, "old");
  EXPECT_EQ(driver_.lastResult.errorCode, -1);
}

TEST_F(Frame, FindsNumbersInLists) {
  EXPECT_FALSE(driver_.isInVector(0, {}));
  EXPECT_TRUE(driver_.isInVector(3, {1, 2, 3}));
  EXPECT_TRUE(driver_.isInVector(1, {1, 1}));
  EXPECT_FALSE(driver_.isInVector(4, {1, 2, 3}));
  EXPECT_TRUE(driver_.isInVector(-1, {0, -1}));
}

}  // namespace
