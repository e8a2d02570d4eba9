// What the command's choice of engines must not cost: every verdict, bound and objective
// that the general engine alone is good for.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "solver/decide/decide.h"
#include "solver/engine/auto_engine.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"
#include "tests/verdicts/decide_text.h"

namespace sdpsol::testing {
namespace {

// The matrix leaves x hardly anything above 0, and being not strict it asks for no room
// there: no point has room in both, and yet there are points.
TEST(SecondEngine, IsAskedWhereABorderlineRestsOnAMatrixThatNeedsNoRoom) {
  const Outcome outcome = decide_text(
      "variable x;"
      "x < 5e-6;"
      "[x + 2.86222, 0, x - 0.901751;"
      " 0, x + 2.86222, x + 2.71646;"
      " x - 0.901751, x + 2.71646, x + 2.86222] >= 0;");
  EXPECT_EQ(outcome.verdict, Verdict::kFeasible) << outcome.reason;
}

double gap_of(const Outcome& outcome) {
  return *outcome.bound - *outcome.objective;
}

TEST(SecondEngine, IsAskedForTheBoundOfAGrasp) {
  const Outcome outcome = decide_text(
      "variable z0,z1,z2,m0,m2;"
      "[0.2421*z0-m0,0,0.633532*z1;"
      " 0,0.2421*z0-m0,0.1*z0+0.303*z1;"
      " 0.633532*z1,0.1*z0+0.303*z1,0.2421*z0-m0]>0;"
      "0.807*z0<1;"
      "0.68*z2<1;"
      "[-m2,0,0.2*z2;0,-m2,0;0.2*z2,0,-m2]>0;"
      "maximize o = m0;");
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible) << outcome.reason;
  EXPECT_LE(gap_of(outcome), 4.4e-6);
}

TEST(SecondEngine, IsAskedForABoundThatIsNotAttained) {
  const Outcome outcome = decide_text(
      "variable a,b,c,x;"
      "[2.48504e6*(a+4),-2*b-6;-2*b-6,4e-7]>0;"
      "[0.2*c+1,a+1;a+1,x]>0;"
      "minimize o = x;");
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible) << outcome.reason;
  EXPECT_LE(gap_of(outcome), 4.4e-6);
}

}  // namespace
}  // namespace sdpsol::testing
