// A driver whose command answers, a small grasp for each list of types, and the
// common frame texts of those grasps spelled out.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "unit/sdpsol_wrapper.h"
#include "unit/test_support.h"

namespace unit_test {

constexpr std::string_view kNoComponents =
    "sdpsol_wrapper-warning: sum of contact types is 0, problem is not solved\n";

class IntForce : public ::testing::Test {
 protected:
  // Runs one of the members and keeps what it says.
  template <class Member, class... Last>
  float ask(Member member, const std::vector<double>& base, const std::vector<int>& types,
            const std::vector<double>& friction, const std::vector<double>& bounds, Last... last) {
    const CapturedOutput output;
    const float answer = (driver_.*member)(base, types, friction, bounds, last...);
    said_ = output.text();
    return answer;
  }

  void answer_with(std::string_view result) { write_file(dir_.path("answer"), result); }

  // What a refused problem leaves behind; `warning` is all that is said.
  void expect_refused(float answer, std::string_view warning) {
    EXPECT_EQ(answer, 0.0F);
    EXPECT_EQ(said_, warning);
    EXPECT_EQ(driver_.definition, "");
    EXPECT_FALSE(std::filesystem::exists(driver_.definitionFile));
    EXPECT_EQ(driver_.lastResult.errorCode, 100);
    EXPECT_FALSE(driver_.lastResult.feasible);
    EXPECT_EQ(driver_.lastResult.objectiveValue, 0.0);
    EXPECT_TRUE(driver_.lastResult.variableNames.empty());
    EXPECT_TRUE(driver_.lastResult.variableValues.empty());
    EXPECT_EQ(driver_.lastResult.valueCount, 0);
  }

  TestFolder dir_;
  sdpsol_wrapper driver_ = answering_driver(dir_, kFeasible);
  std::string said_;
};

/// Types 3, 1, 3 with one coordinate: the base is 1..7, friction 0.5 and 0.25,
/// every component between 0 and 10.
inline const std::vector<double> kBase313{1, 2, 3, 4, 5, 6, 7};
inline const std::vector<int> kTypes313{3, 1, 3};
inline const std::vector<double> kFriction313{0.5, 9, 0.25};
inline const std::vector<double> kBounds313{0, 10, 0, 10, 0, 10, 0, 10, 0, 10, 0, 10, 0, 10};
inline const std::string kDefs313 =
    "BIGM=300000;\n"
    "variable z0;\n"
    "x0=1*z0;\n"
    "x1=2*z0;\n"
    "x2=3*z0;\n"
    "x3=4*z0;\n"
    "x4=5*z0;\n"
    "x5=6*z0;\n"
    "x6=7*z0;\n";
inline const std::string kConstr313 =
    "P0=[\n"
    "x2*0.5,0,x0;\n"
    "0,x2*0.5,x1;\n"
    "x0,x1,x2*0.5\n"
    "];\n"
    "P1=x3;\n"
    "P2=[\n"
    "x6*0.25,0,x4;\n"
    "0,x6*0.25,x5;\n"
    "x4,x5,x6*0.25\n"
    "];\n"
    "x0>0;\n"
    "x0<10;\n"
    "x1>0;\n"
    "x1<10;\n"
    "x2>0;\n"
    "x2<10;\n"
    "x3>0;\n"
    "x3<10;\n"
    "x4>0;\n"
    "x4<10;\n"
    "x5>0;\n"
    "x5<10;\n"
    "x6>0;\n"
    "x6<10;\n";

/// Types 3, 1 in the same manner.
inline const std::vector<double> kBase31{1, 2, 3, 4};
inline const std::vector<int> kTypes31{3, 1};
inline const std::vector<double> kFriction31{0.5, 0.7};
inline const std::vector<double> kBounds31{0, 10, 0, 10, 0, 10, 0, 10};
inline const std::string kDefs31 =
    "BIGM=300000;\n"
    "variable z0;\n"
    "x0=1*z0;\n"
    "x1=2*z0;\n"
    "x2=3*z0;\n"
    "x3=4*z0;\n";
inline const std::string kConstr31 =
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
    "x3<10;\n";

/// Two frictionless contacts.
inline const std::vector<double> kBase11{1, 2};
inline const std::vector<int> kTypes11{1, 1};
inline const std::vector<double> kFriction11{0, 0};
inline const std::vector<double> kBounds11{0, 10, 0, 10};
inline const std::string kDefs11 =
    "BIGM=300000;\n"
    "variable z0;\n"
    "x0=1*z0;\n"
    "x1=2*z0;\n";
inline const std::string kConstr11 =
    "P0=x0;\n"
    "P1=x1;\n"
    "x0>0;\n"
    "x0<10;\n"
    "x1>0;\n"
    "x1<10;\n";

/// One contact with friction.
inline const std::vector<double> kBase3{0, 0, 1};
inline const std::vector<int> kTypes3{3};
inline const std::vector<double> kFriction3{0.5};
inline const std::vector<double> kBounds3{0, 10, 0, 10, 0, 10};
inline const std::string kDefs3 =
    "BIGM=300000;\n"
    "variable z0;\n"
    "x0=0*z0;\n"
    "x1=0*z0;\n"
    "x2=1*z0;\n";
inline const std::string kConstr3 =
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
    "x2<10;\n";

/// A result with an objective.
constexpr std::string_view kObjective =
    "*** Objective value\nobjective = 3.43119587\n\n*** Variables\n"
    "epsilon0 = 1.5\n\nepsilon2 = 2.5\n\nz0 = 3.5\n\nz1 = 4.5\n\n";

constexpr std::string_view kInfeasibleWithNumbers =
    "INFEASIBLE\n*** Objective value\nobjective = 3.43119587\n\n*** Variables\nz0 = 3.5\n\n";

}  // namespace unit_test
