// Border cases of equations, of scalars and of matrices. Each case says why.
#include "tests/verdicts/required_verdict.h"

namespace sdpsol::testing {
namespace {

using enum Verdict;

class BorderEquations : public RequiredVerdict {};
TEST_P(BorderEquations, GiveTheRequiredVerdict) {
  expect_required(GetParam());
}

class UnprovableEquations : public ForbiddenVerdict {};
TEST_P(UnprovableEquations, AreNotDecidedWrongly) {
  expect_not(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    AmongThemselves, BorderEquations,
    ::testing::Values(
        Required{"One", "variable x; x==1;", kFeasible},
        Required{"Twice", "variable x; x==1; x==1;", kFeasible},
        Required{"InOtherUnits", "variable x; x==1; 2*x==2; -4*x==-4;", kFeasible},
        Required{"TwoValues", "variable x; x==1; x==2;", kInfeasible},
        // One in the seventh digit: equations have no room to hide it in.
        Required{"TwoValuesOfSevenDigits", "variable x; x==1; x==1.000001;", kInfeasible},
        Required{"ParallelLines", "variable x,y; x+y==1; x+y==1.000001;", kInfeasible},
        Required{"ParallelLinesInOtherUnits", "variable x,y; x+y==1; 3*x+3*y==3.00001;",
                 kInfeasible},
        Required{"SameLineInOtherUnits", "variable x,y; x+y==1; 4*x+4*y==4;", kFeasible},
        Required{"OnePoint", "variable x,y; x+y==2; x-y==0; x<3;", kFeasible},
        // The third is the sum of the first two.
        Required{"Redundant", "variable x,y,z; x+y==1; y+z==1; x+2*y+z==2;", kFeasible},
        Required{"RedundantButForTheConstant", "variable x,y,z; x+y==1; y+z==1; x+2*y+z==3;",
                 kInfeasible},
        Required{"RedundantButForTheSeventhDigit",
                 "variable x,y,z; x+y==1; y+z==1; x+2*y+z==2.000001;", kInfeasible},
        // Six digits, doubled: the doubles are doubled as well.
        Required{"RedundantWithSixDigits",
                 "variable x,y; 0.333333*x+0.666667*y==1; 0.666666*x+1.333334*y==2;", kFeasible},
        Required{"RedundantAndInOtherUnits",
                 "variable x,y,z; x+y==1; 1e5*y+1e5*z==1e5; 1e-5*x+2e-5*y+1e-5*z==2e-5;",
                 kFeasible},
        // Around and back to where it began, one higher.
        Required{"Cycle", "variable x,y,z; x==y; y==z; z==x; x>=1;", kFeasible},
        Required{"ClimbingCycle", "variable x,y,z; x==y+1; y==z+1; z==x;", kInfeasible},
        // More equations than unknowns, all through (1, 2).
        Required{"Overdetermined", "variable x,y; x+y==3; x-y==-1; 2*x+y==4; 5*x-3*y==-1;",
                 kFeasible},
        Required{"OverdeterminedNot", "variable x,y; x+y==3; x-y==-1; 2*x+y==4; 5*x-3*y==-2;",
                 kInfeasible},
        Required{"UnknownThatCancels", "variable x,y; x+y-y==1; x>0;", kFeasible},
        Required{"Unused", "variable x,y; x==1;", kFeasible},
        // 1e5 and 1e-6 in one equation.
        Required{"BadlyScaled", "variable x,y; 1e5*x+1e-6*y==1; 1e5*x-1e-6*y==0; y<1e6; BIGM=1e7;",
                 kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    AndTheRest, BorderEquations,
    ::testing::Values(
        // With room for the rest.
        Required{"Room", "variable x,y; x+y==1; x>0.4; y>0.4;", kFeasible},
        Required{"RoomOfTheFifthDigit", "variable x; x==1; x>0.99999;", kFeasible},
        // Without: the line touches the quadrant in one point, or passes it by.
        Required{"Touching", "variable x,y; x+y==0; x>=0; y>=0;", kFeasible},
        Required{"TouchingStrict", "variable x,y; x+y==0; x>0; y>0;", kInfeasible},
        Required{"Outside", "variable x,y; x+y==2; x>1.5; y>0.6;", kInfeasible},
        Required{"OutsideByTheSeventhDigit", "variable x,y; x+y==2; x>=1.5; y>=0.5000001;",
                 kInfeasible},
        Required{"OnTheBorder", "variable x; x==0; x>=0;", kFeasible},
        Required{"OnTheBorderStrict", "variable x; x==0; x>0;", kInfeasible},
        Required{"OnTheBorderOfADecimal", "variable x; x==0.1; x<=0.1; x>=0.1;", kFeasible},
        // 1e-6 beside 1 + |x|.
        Required{"RoomOfTheSeventhDigit", "variable x; x==1; x>0.999999;", kUndetermined,
                 kBorderline},
        // Nothing strict is left of x - y > 0 where x == y.
        Required{"StrictDifference", "variable x,y; x==y; x>y;", kInfeasible},
        Required{"NonStrictDifference", "variable x,y; x==y; x>=y; x<=4;", kFeasible},
        // Equations of matrices hold element by element.
        Required{"MatrixTimesVector", "variable v(3,1); A=[1,2,3;4,5,6]; A*v==[6;15]; v>0.5;",
                 kFeasible},
        Required{"MatrixTimesVectorNot", "variable v(3,1); A=[1,2,3;2,4,6]; A*v==[6;13];",
                 kInfeasible},
        Required{"RowsAndColumnsOfATable",
                 "variable X(2,2); X*[1;1]==[1;2]; [1,1]*X==[2,1]; X(1,1)>=0; X(1,2)>=0;"
                 "X(2,1)>=0; X(2,2)>=0;",
                 kFeasible},
        // The sums of the rows are 3, those of the columns 4.
        Required{"TableThatDoesNotAddUp", "variable X(2,2); X*[1;1]==[1;2]; [1,1]*X==[2,2];",
                 kInfeasible},
        // A general matrix made symmetric by an equation.
        Required{"GeneralMadeSymmetric", "variable X(2,2); X==X'; X(1,2)>1; X(2,1)<2;", kFeasible},
        Required{"GeneralMadeSymmetricNot", "variable X(2,2); X==X'; X(1,2)>1; X(2,1)<1;",
                 kInfeasible},
        Required{"Trace", "variable P(2,2) symmetric; trace(P)==1; P>0;", kFeasible},
        Required{"TraceNegative", "variable P(2,2) symmetric; trace(P)==-1; P>=0;", kInfeasible},
        Required{"TraceZeroStrict", "variable P(2,2) symmetric; trace(P)==0; P>0;", kInfeasible},
        // The whole matrix is given, and positive definite.
        Required{"Given", "variable P(2,2) symmetric; P==[2,1;1,2]; P>0;", kFeasible},
        Required{"GivenAndIndefinite", "variable P(2,2) symmetric; P==[1,2;2,1]; P>=0;",
                 kInfeasible},
        Required{"OffDiagonalTooLarge",
                 "variable P(2,2) symmetric; P(1,1)==1; P(2,2)==1; P(1,2)==1.00001; P>=0;",
                 kInfeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Touching, UnprovableEquations,
    ::testing::Values(
        // x = y = 1 on paper; 0.1 + 0.3 is not 0.4 in doubles.
        Forbidden{"RedundantOnPaper",
                  "variable x,y; 0.1*x+0.2*y==0.3; 0.3*x+0.1*y==0.4; 0.4*x+0.3*y==0.7;",
                  kInfeasible},
        Forbidden{"ParallelOnPaper", "variable x; 0.3*x==0.1; 0.9*x==0.3;", kInfeasible},
        // The zero matrix is the only one.
        Forbidden{"TraceZero", "variable P(2,2) symmetric; trace(P)==0; P>=0;", kInfeasible},
        // [1,1;1,1] is the only one.
        Forbidden{"OffDiagonalAtItsLargest",
                  "variable P(2,2) symmetric; P(1,1)==1; P(2,2)==1; P(1,2)==1; P>=0;", kInfeasible},
        // P(2,2) = 0 leaves no P(1,2) but 0.
        Forbidden{"FaceByTrace", "variable P(2,2) symmetric; trace(P)==1; P(1,1)==1; P>=0;",
                  kInfeasible},
        Forbidden{"FaceByTraceMissed",
                  "variable P(2,2) symmetric; trace(P)==1; P(1,1)==1; P(1,2)==0.01; P>=0;",
                  kFeasible},
        Forbidden{"FaceByTraceMissedByLittle",
                  "variable P(2,2) symmetric; trace(P)==1; P(1,1)==1; P(1,2)==1e-5; P>=0;",
                  kFeasible}),
    kByName);

}  // namespace
}  // namespace sdpsol::testing
