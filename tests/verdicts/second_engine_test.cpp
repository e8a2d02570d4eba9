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

}  // namespace
}  // namespace sdpsol::testing
