// Border cases of objectives: reached or only approached, limited by the box
// alone, or not limited by anything that the variables do.
#include <cmath>

#include "tests/verdicts/required_verdict.h"

namespace sdpsol::testing {
namespace {

struct Optimised {
  const char* name;
  const char* text;
  double objective;  ///< as the definition states it, so the least for "minimize"
  bool limited_by_box = false;
};

void PrintTo(const Optimised& optimised, std::ostream* out) {
  *out << optimised.text;
}

class BorderObjectives : public ::testing::TestWithParam<Optimised> {};

TEST_P(BorderObjectives, ReachTheRequiredValue) {
  const Outcome outcome = decide_text(GetParam().text);
  ASSERT_STREQ(word_for(outcome.verdict), "FEASIBLE") << outcome.reason;
  ASSERT_TRUE(outcome.objective && outcome.bound);
  EXPECT_EQ(outcome.limited_by_box, GetParam().limited_by_box);
  const bool minimize = std::string(GetParam().text).find("minimize") != std::string::npos;
  const double truth = minimize ? -GetParam().objective : GetParam().objective;
  const double allowed = 1e-6 * std::max(1.0, std::fabs(truth));
  EXPECT_NEAR(*outcome.objective, truth, allowed);
  EXPECT_NEAR(*outcome.bound, truth, allowed);
  // The reported point may be rounded onto the border, by no more than that.
  EXPECT_LE(*outcome.objective, truth + 1e-12 * std::max(1.0, std::fabs(truth)));
  EXPECT_GE(*outcome.bound, truth);
}

INSTANTIATE_TEST_SUITE_P(
    Definitions, BorderObjectives,
    ::testing::Values(
        // An optimum on the border of a strict inequality is approached, not reached.
        Optimised{"Strict", "variable x; x<3; maximize o=x;", 3},
        Optimised{"NonStrict", "variable x; x<=3; maximize o=x;", 3},
        Optimised{"Minimised", "variable x; x>1; minimize o=x;", 1},
        Optimised{"MinimisedNonStrict", "variable x; x>=-2; minimize o=2*x+1;", -3},
        Optimised{"AtZero", "variable x; x>=0; minimize o=x;", 0},
        Optimised{"ByEquation", "variable x,y; x+y==1; x>=0; y>=0; maximize o=x+2*y;", 2},
        // Nothing to choose.
        Optimised{"GivenByEquation", "variable x; x==0.1; maximize o=10*x;", 1},
        Optimised{"OnlyPoint", "variable x; x>=2; x<=2; maximize o=x;", 2},
        // The variables make no difference.
        Optimised{"Constant", "variable x; x>0; x<1; maximize o=7;", 7},
        Optimised{"ConstantMinimised", "variable x; x>0; x<1; minimize o=7;", 7},
        Optimised{"TimesZero", "variable x; x>0; x<1; maximize o=0*x+2;", 2},
        Optimised{"ConstantWithoutConditions", "variable x; maximize o=5;", 5},
        // Limited only by the box: said, with the value at the bound.
        Optimised{"OnlyTheBox", "variable x; x>0; maximize o=x;", 15000, true},
        Optimised{"OnlyTheBoxBelow", "variable x; x<0; minimize o=x;", -15000, true},
        Optimised{"OnlyTheBoxWithoutConditions", "variable x; maximize o=x;", 15000, true},
        Optimised{"OnlyALargeBox", "BIGM=1e6; variable x; x>0; maximize o=x;", 1e6, true},
        Optimised{"OnlyASmallBox", "BIGM=0.5; variable x; x>0; maximize o=2*x;", 1, true},
        Optimised{"OneUnknownOfTwo", "variable x,y; x+y<1; maximize o=x;", 15000, true},
        // One unknown at the box, the other where that leads; both; far from all else.
        Optimised{"OtherUnknownAtTheBox", "BIGM=9; variable x,y; -x-2*y-13>0; maximize o=3*x;", 15,
                  true},
        Optimised{"UnknownOfTheObjectiveAlone",
                  "BIGM=8; variable x,y; -3*y+10>=0; maximize o=3*x+82*y;", 24 + 820.0 / 3, true},
        Optimised{"FarBox", "BIGM=1e9; variable x; x<=0.6; maximize o=-x;", 1e9, true},
        Optimised{"FarFromItsRows",
                  "variable x; 3*x>=0; 6*x+0.00001>0; 9*x-0.001>=0; maximize o=x;", 15000, true},
        // A condition at the same place as the box.
        Optimised{"BoxNotNeeded", "variable x; x<=14000; maximize o=x;", 14000},
        // Sizes.
        Optimised{"Millionths", "variable x; 1e-6*x<=1e-3; maximize o=1e6*x;", 1e9},
        Optimised{"Millions", "variable x; 1e6*x<=1; maximize o=x;", 1e-6},
        Optimised{"LargeConstant", "variable x; x<=1; maximize o=x+1e6;", 1000001},
        Optimised{"Duplicated", "variable x; x<3; x<3; 2*x<6; maximize o=x;", 3},
        // The optimum is a whole edge.
        Optimised{"Edge", "variable x,y; x>=0; y>=0; x+y<=1; maximize o=x+y;", 1},
        Optimised{"HugeBoxTinyAccuracy",
                  "BIGM=1e9; ABSTOL=1e-300; RELTOL=1e-300; variable x; x<=2; maximize o=x;", 2},
        // Matrices: the smallest eigenvalue, the root of a product, an element.
        Optimised{"Eigenvalue", "variable t; [2,1;1,2]-t*eye(2)>0; maximize o=t;", 1},
        Optimised{"Root", "variable t; [2,t;t,8]>=0; maximize o=t;", 4},
        Optimised{"Element", "variable P(2,2) symmetric; P>=0; trace(P)==2; maximize o=P(1,2);", 1},
        // A minimum that is approached by ever larger x only: 1/15000 in the box.
        Optimised{"ApproachedInTheBox", "variable x,y; [x,1;1,y]>=0; minimize o=y;", 1.0 / 15000,
                  true}),
    kByName);

class BorderObjectiveVerdicts : public RequiredVerdict {};
TEST_P(BorderObjectiveVerdicts, AreThoseOfTheConditions) {
  expect_required(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Definitions, BorderObjectiveVerdicts,
    ::testing::Values(
        // An objective helps no contradiction.
        Required{"Contradiction", "variable x; x>0; x<0; maximize o=x;", Verdict::kInfeasible},
        Required{"ConstantContradiction", "variable x; 1<0; maximize o=x;", Verdict::kInfeasible},
        Required{"FlatContradiction", "variable x,y; x-y>0; x+y>0; x<=0; maximize o=y;",
                 Verdict::kInfeasible},
        // The conditions leave no room, whatever the objective.
        Required{"NoRoom", "variable x; x>1; x<1.000001; maximize o=x;", Verdict::kUndetermined,
                 kBorderline},
        Required{"OutsideTheBox", "variable x; x>20000; minimize o=x;", Verdict::kUndetermined,
                 kOutsideBox}),
    kByName);

}  // namespace
}  // namespace sdpsol::testing
