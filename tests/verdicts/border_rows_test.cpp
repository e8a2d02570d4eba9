// Border cases of rows: what a verdict has to be where a digit more or less, or
// the kind of a relation, decides. Each case says why.
#include "tests/verdicts/required_verdict.h"

namespace sdpsol::testing {
namespace {

using enum Verdict;

class BorderRows : public RequiredVerdict {};
TEST_P(BorderRows, GiveTheRequiredVerdict) {
  expect_required(GetParam());
}

class UnprovableRows : public ForbiddenVerdict {};
TEST_P(UnprovableRows, AreNotDecidedWrongly) {
  expect_not(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Constants, BorderRows,
    ::testing::Values(
        // True relations between constants vanish; nothing else is asked.
        Required{"True", "1>0;", kFeasible}, Required{"TrueNonStrict", "0>=0;", kFeasible},
        Required{"TrueEquation", "2+2==4;", kFeasible}, Required{"False", "-1>0;", kInfeasible},
        Required{"ZeroStrict", "0>0;", kInfeasible},
        Required{"ZeroMatrixStrict", "[0]>0;", kInfeasible},
        Required{"ZeroMatrixNonStrict", "[0]>=0;", kFeasible},
        Required{"FalseEquation", "1==0;", kInfeasible},
        // A constant has no other size than its own: 1e-7 is as good as 1.
        Required{"Tiny", "[1e-7]>0;", kFeasible},
        Required{"TinyNegative", "[-1e-7]>=0;", kInfeasible},
        Required{"SmallestOfAll", "1e-300>0;", kFeasible},
        // A number that underflows is 0.
        Required{"Underflow", "1e-400>0;", kInfeasible},
        // 0.3 is 5.6e-17 less than 0.1 + 0.2 in doubles, and equal on paper.
        Required{"CancelledEquation", "0.1+0.2-0.3==0;", kUndetermined},
        // One false relation is enough, whatever stands beside it.
        Required{"FalseBesideTrue", "variable x; x>0; x<5; 2<1;", kInfeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Cancelled, UnprovableRows,
    ::testing::Values(
        // 1e20 + 1 - 1e20 is 1 on paper and 0 in doubles: neither proves anything.
        Forbidden{"ConstantStrict", "1e20+1-1e20>0;", kInfeasible},
        Forbidden{"ConstantEquation", "1e20+1-1e20==0;", kFeasible},
        Forbidden{"ConstantAbove", "1e20+1-1e20<=0;", kFeasible},
        Forbidden{"ConstantOfAMatrix", "[1e20+1-1e20,1;1,5]>=0;", kInfeasible},
        // x > 0 on paper, 0 > 0 in doubles.
        Forbidden{"Coefficient", "variable x; 1e20*x+x-1e20*x>0;", kInfeasible},
        Forbidden{"CoefficientOfAMatrix", "variable x; [1e20*x+x-1e20*x,0.5;0.5,1]>0;",
                  kInfeasible},
        // x == 0 on paper, 0 == 0 in doubles, and x > 1 beside it.
        Forbidden{"CoefficientOfAnEquation", "variable x; 1e20*x+x-1e20*x==0; x>1;", kFeasible},
        // x >= 3 on paper; a coefficient that is a millionth of a millionth less asks for more.
        Forbidden{"RoundedCoefficient", "variable x; x<=3; 6789.6*x+32.6608*x-6789.6*x>=97.9824;",
                  kInfeasible},
        // x > 5 + 1 and x < 5.5 on paper; the 1 is lost in doubles.
        Forbidden{"Bound", "variable x; x>5+1e20+1-1e20; x<5.5;", kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    TwoBounds, BorderRows,
    ::testing::Values(
        // Added up they say 0 > 0.
        Required{"BothSigns", "variable x; x>0; x<0;", kInfeasible},
        Required{"StrictAgainstNonStrict", "variable x; x>0; x<=0;", kInfeasible},
        Required{"AtFive", "variable x; x>5; x<5;", kInfeasible},
        Required{"AtADecimal", "variable x; x>0.1; x<=0.1;", kInfeasible},
        // The same number read twice is the same double, also in other units.
        Required{"AtADecimalInOtherUnits", "variable x; 2*x>0.2; 4*x<0.4;", kInfeasible},
        // The one point between satisfies both.
        Required{"BothSignsNonStrict", "variable x; x>=0; x<=0;", kFeasible},
        Required{"BothAtADecimal", "variable x; x>=0.1; x<=0.1;", kFeasible},
        Required{"Chain", "variable x; 1<=x<=1;", kFeasible},
        // A millionth of a percent is far beyond the rounding of reading.
        Required{"MissedByTheEighthDigit", "variable x; x>=1; x<=0.99999999;", kInfeasible},
        Required{"MissedByTheTwelfthDigit", "variable x; x>=1; x<=0.999999999999;", kInfeasible},
        Required{"MissedBesideZero", "variable x; x>=0; x<=-1e-9;", kInfeasible},
        // Room is a share of what was added up, here 1 + |x|: 4.4e-6 of that on either
        // side make 1.76e-5.
        Required{"GapOfTheSeventhDigit", "variable x; x>1; x<1.000001;", kUndetermined,
                 kBorderline},
        Required{"GapJustTooNarrow", "variable x; x>1; x<1.0000175;", kUndetermined},
        Required{"GapJustWideEnough", "variable x; x>1; x<1.0000178;", kFeasible},
        // Beside 0 nothing is added up that a gap would be small against.
        Required{"GapBesideZero", "variable x; x>0; x<1e-9;", kFeasible},
        // What is left of 1e12 + 0.1 - 1e12 is below 1e-12 of what was added up.
        Required{"CancelledBound", "variable x; x>1e12+0.1-1e12; x<0.1;", kUndetermined,
                 "decided by coefficients at noise level"},
        // Two names for one form.
        Required{"DuplicatedRows", "variable x; x>0; x>0; x>0; x<1; x<1;", kFeasible},
        Required{"DuplicatedContradiction", "variable x; x>0; x>0; x<0; x<0;", kInfeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    SeveralUnknowns, BorderRows,
    ::testing::Values(
        // x = y = 1 satisfies all three.
        Required{"ImpliedEquation", "variable x,y; x-y>=0; y-x>=0; x>=1;", kFeasible},
        // The same with a strict one: 0 > 0.
        Required{"ImpliedEquationStrict", "variable x,y; x-y>0; y-x>=0; x>=1;", kInfeasible},
        // Only x = y = 0 is left, and z is free.
        Required{"EquationOfThreeRows", "variable x,y,z; x>=0; y>=0; -x-y>=0; z>0;", kFeasible},
        // A cycle that climbs: the sum says 0 > 3.
        Required{"Cycle", "variable x,y,z; x>=y+1; y>=z+1; z>=x+1;", kInfeasible},
        // A cycle that climbs by nothing at all, and once strictly.
        Required{"StrictCycle", "variable x,y,z; x>=y; y>=z; z>x;", kInfeasible},
        Required{"FlatCycle", "variable x,y,z; x>=y; y>=z; z>=x; x+y+z>=3;", kFeasible},
        // Three rows that meet in the point (1/2, 1/2) only.
        Required{"MeetInOnePoint", "variable x,y; x+y>=1; x<=0.5; y<=0.5;", kFeasible},
        Required{"MeetInOnePointStrict", "variable x,y; x+y>1; x<0.5; y<0.5;", kInfeasible},
        Required{"MissEachOther", "variable x,y; x+y>=1; x<=0.5; y<=0.499999;", kInfeasible},
        // Only the zero force meets this cone: |y| <= x, and x <= 0.
        Required{"ConeOfZero", "variable x,y; x-y>0; x+y>0; x<0;", kInfeasible},
        Required{"ConeOfZeroTouched", "variable x,y; x-y>0; x+y>0; x<=0;", kInfeasible},
        Required{"ConeOfZeroNonStrict", "variable x,y; x-y>=0; x+y>=0; x<=0;", kFeasible},
        // The third row is the sum of the others: dependent, and no contradiction.
        Required{"DependentRows", "variable x,y; x+y>1; x-y>1; 2*x>2; x<4;", kFeasible},
        // The coefficients of x and y are the same in every row.
        Required{"DependentUnknowns", "variable x,y; x+y>1; x+y<2; 3*x+3*y<5;", kFeasible},
        Required{"DependentUnknownsNot", "variable x,y; x+y>1; 3*x+3*y<3;", kInfeasible},
        Required{"UnusedUnknown", "variable x,y,z; x>0; x<1;", kFeasible},
        Required{"UnusedUnknownInAContradiction", "variable x,y; x>0; x<0;", kInfeasible},
        Required{"OnlyUnusedUnknowns", "variable x,y; 1>0;", kFeasible},
        // y stands in the text, and not in what it says.
        Required{"UnknownTimesZero", "variable x,y; x+0*y>1; x<2;", kFeasible},
        Required{"NothingButUnknownTimesZero", "variable x; 0*x>0;", kInfeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Sizes, BorderRows,
    ::testing::Values(
        // Twelve orders of magnitude between the unknowns, ten between the rows.
        Required{"BadlyScaled",
                 "variable x,y; 1e-6*x+1e6*y>1e-3; 1e5*x<1e8; 1e-5*y<1e-10; 1e5*x>0;", kFeasible},
        Required{"BadlyScaledContradiction",
                 "variable x,y; 1e-6*x+1e6*y>1e-3; 1e-1*x+1e11*y<99.9999;", kInfeasible},
        Required{"MillionOfOne", "variable x; 1000000*x>1; 1000000*x<2;", kFeasible},
        Required{"MillionthOfOne", "variable x; 0.000001*x>0.001; 0.000001*x<0.002;", kFeasible},
        // A small coefficient is not noise where it is its unknown's only one.
        Required{"SmallButAlone", "variable x; 1e-17*x>0;", kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Noise, BorderRows,
    ::testing::Values(
        // Feasible if 1e-13 is meant, 0 > 0 if it is noise.
        Required{"Alone", "variable x; 1e-13*x>0; x<1;", kUndetermined, kNoise},
        Required{"AgainstABound", "variable x,y; x+1e-17*y>0; x<=0; y<5;", kUndetermined, kNoise},
        // Either way.
        Required{"ThatDoesNotMatter", "variable x,y; x+1e-17*y>0; y>1; x<3;", kFeasible},
        // 0.1 + 0.2 - 0.3 is 5.6e-17 in doubles and 0 on paper.
        Required{"OfCancellation", "variable x; 0.1*x+0.2*x-0.3*x>0;", kUndetermined, kNoise},
        // Just above the limit of 1e-12: a coefficient like any other.
        Required{"JustAboveTheLimit", "variable x; 2e-12*x>0; x<1;", kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Box, BorderRows,
    ::testing::Values(
        // The default BIGM is 15000.
        Required{"Beyond", "variable x; x>20000;", kUndetermined, kOutsideBox},
        Required{"BeyondNonStrict", "variable x; x>=15001;", kUndetermined, kOutsideBox},
        Required{"BeyondByEquation", "variable x; x==20000;", kUndetermined, kOutsideBox},
        Required{"Below", "variable x; x<-20000;", kUndetermined, kOutsideBox},
        Required{"OfTwoUnknowns", "variable x,y; x+y>40000;", kUndetermined, kOutsideBox},
        Required{"FarBeyond", "variable x,y; x+y>=1e20;", kUndetermined, kOutsideBox},
        Required{"Larger", "BIGM=1e6; variable x; x>20000;", kFeasible},
        Required{"Smaller", "BIGM=10; variable x; x>20;", kUndetermined, kOutsideBox},
        // The box itself belongs to it.
        Required{"AtItsBorder", "variable x; x>=15000;", kFeasible},
        Required{"AtItsBorderByEquation", "variable x; x==-15000;", kFeasible},
        Required{"JustInside", "variable x; x>14999;", kFeasible},
        // Contradictory with and without it.
        Required{"NotNeeded", "variable x; x>20000; x<10000;", kInfeasible},
        Required{"Huge", "BIGM=1e15; variable x; x>1e10;", kFeasible},
        Required{"HugeAndUseless", "BIGM=1e15; variable x; x>0; x<0;", kInfeasible},
        Required{"HugeWithTinyAccuracy",
                 "BIGM=1e12; ABSTOL=1e-300; RELTOL=1e-300; variable x,y; x+y>1; x<y; y<3;",
                 kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Sizes, UnprovableRows,
    ::testing::Values(
        // Contradictory on paper; 1e-6 and 1e-1 are not 1e5 apart in doubles.
        Forbidden{"BadlyScaledTouching", "variable x,y; 1e-6*x+1e6*y>0; 1e-1*x+1e11*y<=0;",
                  kFeasible},
        // Contradictory with the small coefficient and without.
        Forbidden{"NoiseThatCannotHelp", "variable x,y; x+1e-17*y>0; x<-1; y<5;", kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Box, UnprovableRows,
    ::testing::Values(
        // x = 15000 is the last value, and not above 15000; 20000 would be.
        Forbidden{"JustOutside", "variable x; x>15000;", kFeasible},
        Forbidden{"JustOutsideIsNoContradiction", "variable x; x>15000;", kInfeasible},
        Forbidden{"BeyondIsNoContradiction", "BIGM=1e-3; variable x; x>1;", kInfeasible},
        Forbidden{"SmallCoefficient", "variable x; 1e-30*x>=1;", kInfeasible},
        // True at x = 1; six digits cannot tell the bounds apart.
        Forbidden{"GapOfTheSeventhDigitNonStrict", "variable x; x>=1; x<=1.000001;", kInfeasible},
        // 0.1 + 0.2 on paper is 0.3.
        Forbidden{"SumOfDecimals", "variable x; x>=0.1+0.2; x<=0.3;", kInfeasible},
        Forbidden{"SumOfDecimalsStrict", "variable x; x>0.3; x<0.1+0.2;", kFeasible}),
    kByName);

}  // namespace
}  // namespace sdpsol::testing
