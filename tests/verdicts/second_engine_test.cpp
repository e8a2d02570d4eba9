// What the command's choice of engines must not cost: every verdict, bound and objective
// that the general engine alone is good for.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "solver/decide/decide.h"
#include "solver/engine/cones_engine.h"
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

// Limited by BIGM alone, in units far apart: the first engine is content with an objective
// that is some millionths behind.
TEST(SecondEngine, IsAskedWhereTheFirstIsContentWithLess) {
  const Outcome outcome = decide_text(
      "variable x0,x1,x2,x5,x6,x7,x8,x9,x10,x11,x13,x14,x15,x16,x17,x18,x19,x20,x21,x22,"
      "x23,x24,x25,x26,x27,x29;"
      "1*(-0.266059*x16-1*x22+0.7)>0;"
      "[1*(0.723056*x23-2.2*x18+4),1*(-0.9*x14-959.4*x13+1.1*x0-6),1*(-0.3*x16+"
      "0.272*x22-5),1*(-0.292655*x25-4);1*(-0.9*x14-959.4*x13+1.1*x0-6),1*(-276*x13+2),"
      "1*(0.6*x8-0.784672*x25+0*x21+0),1*(-0.1*x15+2.07*x1+3);1*(-0.3*x16+0.272*x22-5),"
      "1*(0.6*x8-0.784672*x25+0*x21+0),1*(-2.7*x1+0.448*x11+10),1*(0.722004*x5-5);"
      "1*(-0.292655*x25-4),1*(-0.1*x15+2.07*x1+3),1*(0.722004*x5-5),1*(0.95*x2+"
      "0.745197*x11+11)]>0;"
      "0.2*(1*x19-1.3*x26+1)>0;"
      "[778*x17+4,-22564*x9-1,1*x20-0;-22564*x9-1,778*x17+4,0;1*x20-0,0,778*x17+4]>0;"
      "433*x13+0.12*x18+2>=0;"
      "[-5*x6+0.294*x7-0.29*x2-2,1*x20+2;1*x20+2,0.5*x21-2]>0;"
      "[0.96*x29+5,-0.455*x18+2;-0.455*x18+2,-1.3*x29+2.5]>0;"
      "[1*(-0.766*x24+3*x27+8),1*(0*x21-4),1*(-0*x2+14891*x9-2);1*(0*x21-4),1*(-0.2*x11+5),"
      "1*(0.942499*x21+1);1*(-0*x2+14891*x9-2),1*(0.942499*x21+1),1*(1*x14+2)]>0;"
      "-0.0589146*x14+0.0488652>=0;"
      "1*(0.6*x25+2.6*x24+243*x13+2)>=0;"
      "minimize o = 1*x1-1.5*x5-1623*x9+1*x10-34*x13-1*x16-1885*x17+1*x20+1*x21+1*x22+"
      "1*x23-0.2*x26+1*x29;");
  ASSERT_EQ(outcome.verdict, Verdict::kFeasible) << outcome.reason;
  EXPECT_LE(gap_of(outcome), 1e-6 * std::fabs(*outcome.objective));
}

/// As many unknowns as one likes in two rows.
Problem many_unknowns_in_two_rows(int count) {
  std::string names;
  std::string sum;
  for (int i = 0; i < count; ++i) {
    const std::string name = "x" + std::to_string(i);
    names += (i > 0 ? "," : "") + name;
    sum += (i > 0 ? "+" : "") + name;
  }
  const Source source("test.def", "variable " + names + "; " + sum + ">1; " + sum + "<2;");
  Diagnostics diagnostics;
  return build_problem(*read_definition(source, diagnostics));
}

TEST(ConesEngine, FindsAPointHoweverManyUnknownsShareTheRows) {
  const auto cones = make_cones_engine();
  EXPECT_EQ(decide(many_unknowns_in_two_rows(20), *cones, {}).verdict, Verdict::kFeasible);
  const Outcome outcome = decide(many_unknowns_in_two_rows(29), *cones, {});
  EXPECT_EQ(outcome.verdict, Verdict::kFeasible) << outcome.reason;
  EXPECT_GT(outcome.iterations, 0);
}

/// A chain of small matrices, each of which shares an unknown with the next.
std::string chain_of(int count) {
  const auto name = [](int i) { return "x" + std::to_string(i); };
  std::ostringstream names;
  std::ostringstream matrices;
  std::ostringstream sum;
  for (int i = 0; i < count; ++i) {
    names << (i > 0 ? "," : "") << name(i);
    sum << (i % 3 == 0 ? "+" : "-") << name(i);
    if (i + 1 == count) break;
    matrices << "[2+" << name(i) << "," << name(i + 1) << ";" << name(i + 1) << ",3-" << name(i)
             << "]>0;";
  }
  return "variable " + names.str() + ";" + matrices.str() + "maximize o=" + sum.str() + ";";
}

// Dense normal equations would take several times as long.
TEST(ChoiceOfEngines, LeavesALongChainToTheGeneralOne) {
  const Outcome outcome = decide_text(chain_of(250));
  EXPECT_EQ(outcome.verdict, Verdict::kFeasible);
  EXPECT_EQ(outcome.engine, "csdp");
  EXPECT_EQ(outcome.fallbacks, 0);
}

// Rows that ask for more than BIGM, and matrices that contradict them in any box.
TEST(SecondEngine, IsAskedWhereAnEmptyBoxIsNotAllThatCanBeProven) {
  const Outcome outcome = decide_text(
      "variable z0,z1,z2,z3,z4,z5;"
      "+0.00086*z1+0.00086*z2+0.00086*z3+0.00086*z4+0.00086*z5>1;"
      "+-0*z0+-0.000298*z1+-0.000298322*z3+-0.0003*z4+-0.0003*z5>1;"
      "+0.000257*z1+0*z2+0.00026*z3+0*z4>1;"
      "[-0.2*z0+-0+3,1*z5+1;1*z5+1,0*z3+2+3]>0;"
      "[-1*z2+0+3,1*z2+0,-0.3*z4+2;1*z2+0,0.2*z3+1+3,-1*z0+1;-0.3*z4+2,-1*z0+1,1*z0+-1+"
      "3]>0;");
  EXPECT_EQ(outcome.verdict, Verdict::kInfeasible) << outcome.reason;
}

}  // namespace
}  // namespace sdpsol::testing
