// Border cases of matrix inequalities: singular ones, weakly infeasible ones,
// the edge of stability. Each case says why.
#include "tests/verdicts/required_verdict.h"

namespace sdpsol::testing {
namespace {

using enum Verdict;

class BorderMatrices : public RequiredVerdict {};
TEST_P(BorderMatrices, GiveTheRequiredVerdict) {
  expect_required(GetParam());
}

class UnprovableMatrices : public ForbiddenVerdict {};
TEST_P(UnprovableMatrices, AreNotDecidedWrongly) {
  expect_not(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Constant, BorderMatrices,
    ::testing::Values(Required{"Definite", "[2,1;1,2]>0;", kFeasible},
                      Required{"Indefinite", "[1,2;2,1]>=0;", kInfeasible},
                      // The null vector [1,-1] is exact.
                      Required{"Singular", "[1,1;1,1]>=0;", kFeasible},
                      Required{"SingularStrict", "[1,1;1,1]>0;", kInfeasible},
                      Required{"SingularOfOtherNumbers", "[4,2;2,1]>=0;", kFeasible},
                      Required{"SingularOfOtherNumbersStrict", "[4,2;2,1]>0;", kInfeasible},
                      // The null vector is [3,-2]: no power of two makes it [1,-2/3].
                      Required{"SingularByThirds", "[4,6;6,9]>=0;", kFeasible},
                      Required{"SingularByThirdsStrict", "[4,6;6,9]>0;", kInfeasible},
                      // A million million between the diagonal entries, and nothing beside them.
                      Required{"BadlyScaled", "[1e-6,0;0,1e6]>0;", kFeasible},
                      Required{"ZeroBesideOne", "[1,0;0,0]>=0;", kFeasible},
                      Required{"ZeroBesideOneStrict", "[1,0;0,0]>0;", kInfeasible},
                      Required{"OneBesideZero", "[1,1;1,0]>=0;", kInfeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Constant, UnprovableMatrices,
    ::testing::Values(
        // Singular on paper; the squares of decimals are not what they are in doubles.
        Forbidden{"SquaresOfDecimals", "[1,0.1;0.1,0.01]>=0;", kInfeasible},
        Forbidden{"SquaresOfDecimalsStrict", "[1,0.1;0.1,0.01]>0;", kFeasible},
        Forbidden{"ThirdsOfSixDigits", "[1,0.333333;0.333333,0.111111]>0;", kInfeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Singular, BorderMatrices,
    ::testing::Values(
        // Positive semidefinite and singular for every value, by a common null vector.
        Required{"Ones", "variable x; [x,x;x,x]>=0; x<=3;", kFeasible},
        Required{"OnesStrict", "variable x; [x,x;x,x]>0; x<=3;", kInfeasible},
        Required{"Square", "variable x; [x,2*x;2*x,4*x]>=0; x<=3;", kFeasible},
        Required{"SquareStrict", "variable x; [x,2*x;2*x,4*x]>0;", kInfeasible},
        Required{"SquareByThirds", "variable x; [4*x,6*x;6*x,9*x]>=0; x<=3;", kFeasible},
        Required{"SquareByThirdsStrict", "variable x; [4*x,6*x;6*x,9*x]>0; x<=3;", kInfeasible},
        Required{"OnesOfThree", "variable x; x*ones(3,3)>=0; x>=1;", kFeasible},
        Required{"OnesOfThreeStrict", "variable x; x*ones(3,3)>0;", kInfeasible},
        // Weights of a triangle's edges: every row adds up to 0.
        Required{"Triangle", "variable a,b,c; [a+b,-a,-b;-a,a+c,-c;-b,-c,b+c]>=0; a>0; b>0; c>0;",
                 kFeasible},
        Required{"TriangleStrict", "variable a,b,c; [a+b,-a,-b;-a,a+c,-c;-b,-c,b+c]>0;",
                 kInfeasible},
        // A column of the pattern [B, B; B, B].
        Required{"Doubled", "variable x,y; B=[x,y;y,2*x]; [B,B;B,B]>=0; x>=1; y==0.5;", kFeasible},
        Required{"DoubledStrict", "variable x,y; B=[x,y;y,2*x]; [B,B;B,B]>0;", kInfeasible},
        // A row and a column that are 0 for every value.
        Required{"EmptyRow", "variable x; [x,0;0,0]>=0; x>1;", kFeasible},
        Required{"EmptyRowStrict", "variable x; [x,0;0,0]>0;", kInfeasible},
        Required{"NothingAtAll", "variable x; zeros(2)*x>=0; x>1;", kFeasible},
        // The coefficient matrices of x and y are the same.
        Required{"DependentCoefficients", "variable x,y; (x+y)*[2,1;1,2]-eye(2)>0; x<5;",
                 kFeasible},
        Required{"DependentCoefficientsNot", "variable x,y; (x+y)*[2,1;1,2]>0; x<-1; y<1;",
                 kInfeasible},
        // Twice the same condition, and once in other units.
        Required{"Duplicated", "variable x; [x,1;1,x]>0; [x,1;1,x]>0; 1000*[x,1;1,x]>0; x<5;",
                 kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Singular, UnprovableMatrices,
    ::testing::Values(
        // x = y = 1 satisfies it, and has no room.
        Forbidden{"MeetWhereSingularNonStrict", "variable x,y; [x,x;x,y]>=0; y<=x; x>=1;",
                  kInfeasible},
        // Only singular where both hold; the proof lives on [1,-1], no principal submatrix.
        Forbidden{"MeetWhereSingularStrict", "variable x,y; [x,x;x,y]>0; y<=x;", kFeasible},
        // Only the zero force: |y| <= x <= 0.
        Forbidden{"ConeOfZero", "variable x,y; [x,y;y,x]>=0; x<=0;", kInfeasible},
        // Six digits of 1/3 and 1/9.
        Forbidden{"AlmostSquare", "variable x; [x,0.333333*x;0.333333*x,0.111111*x]>0; x<3;",
                  kInfeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Weak, BorderMatrices,
    ::testing::Values(
        // The 1 beside a 0 can be made up for by no x, however large.
        Required{"ZeroOnTheDiagonalStrict", "variable x; [x,1;1,0]>0;", kInfeasible},
        Required{"ZeroOnTheDiagonal", "variable x; [x,1;1,0]>=0;", kInfeasible},
        // y > 0 and y <= 0.
        Required{"OtherZeroStrict", "variable x,y; [x,1;1,y]>0; y<=0;", kInfeasible},
        Required{"OtherMinorStrict", "variable x,y,w; [x,y;y,w]>0; w<=0; y>0;", kInfeasible},
        // -1 is no 0.
        Required{"NegativeOnTheDiagonal", "variable x; [x,1;1,-1]>=0;", kInfeasible},
        // Only the zero force meets the cone and the half-space behind it.
        Required{"ConeOfZeroStrict", "variable x,y; [x,y;y,x]>0; x<0;", kInfeasible},
        Required{"ConeOfZeroTouched", "variable x,y; [x,y;y,x]>0; x<=0;", kInfeasible},
        Required{"FrictionConeOfZero",
                 "variable f,a,b; [f,0,a;0,f,b;a,b,f]>0; -f+0.5*a>0; -f-0.5*a>0;", kInfeasible}),
    kByName);

// Points come as near as one likes to satisfying these, and none does.
INSTANTIATE_TEST_SUITE_P(
    Weak, UnprovableMatrices,
    ::testing::Values(
        Forbidden{"Minor", "variable x,y,w; [x,y;y,w]>=0; w<=0; y>0;", kFeasible},
        Forbidden{"MinorOfOne", "variable x,y,w; [x,y;y,w]>=0; w<=0; y>=1;", kFeasible},
        Forbidden{"MinorOfLittle", "variable x,y,w; [x,y;y,w]>=0; w<=0; y>=1e-4;", kFeasible},
        Forbidden{"MinorByEquation", "variable x,y,w; [x,y;y,w]>=0; w==0; y==1;", kFeasible},
        Forbidden{"MinorInALargeBox", "BIGM=1e12; variable x,y,w; [x,y;y,w]>=0; w<=0; y>=1e-3;",
                  kFeasible},
        Forbidden{"Corner", "variable x,y; [x,1;1,y]>=0; y<=0;", kFeasible},
        Forbidden{"CornerInALargeBox", "BIGM=1e10; variable x,y; [x,1;1,y]>=0; y<=0;", kFeasible},
        Forbidden{"CornerBySum", "variable x,y,z; [x,1;1,y]>=0; [z,0;0,-y-z]>=0; z>=0;", kFeasible},
        // y = 0 makes w = 0, and w >= 1.
        Forbidden{"ChainOfTwo", "variable x,y,z,u,w; [x,y;y,z]>=0; z<=0; [u,w;w,y]>=0; w>=1;",
                  kFeasible},
        Forbidden{"ChainOfThree",
                  "variable x,y,z,u,w,s,t; [x,y;y,z]>=0; z<=0; [u,w;w,y]>=0; [s,t;t,w]>=0; t>=1;",
                  kFeasible},
        Forbidden{"ChainInOneMatrix", "variable a,b,c,d; [a,b,0;b,0,c;0,c,d]>=0; b>=1;", kFeasible},
        Forbidden{"MatrixOfThree", "variable a,b,c,d,e; [a,b,c;b,d,e;c,e,0*a]>=0; [d,1;1,e]>=0;",
                  kFeasible},
        Forbidden{"MixedWithRows", "variable x,y,w; [x,y+w;y+w,w]>=0; w<=0; y>=0.1; x<=10000;",
                  kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Lyapunov, BorderMatrices,
    ::testing::Values(
        Required{"Stable", "variable P(2,2) symmetric; A=[-1,0.5;-0.5,-2]; P>0; A'*P+P*A<0;",
                 kFeasible},
        Required{"Unstable", "variable P(2,2) symmetric; A=[1,0;0,-1]; P>0; A'*P+P*A<0;",
                 kInfeasible},
        Required{"UnstableFull", "variable P(2,2) symmetric; A=[1,3;-2,1]; P>0; A'*P+P*A<0;",
                 kInfeasible},
        // Eigenvalues -1 and 0.
        Required{"Integrator", "variable P(2,2) symmetric; A=[0,1;0,-1]; P>0; A'*P+P*A<0;",
                 kInfeasible},
        // Eigenvalues on the imaginary axis: undamped.
        Required{"Oscillator", "variable P(2,2) symmetric; A=[0,1;-1,0]; P>0; A'*P+P*A<0;",
                 kInfeasible},
        Required{"OscillatorOfDecimals",
                 "variable P(2,2) symmetric; A=[0,1;-0.25,0]; P>0; A'*P+P*A<0;", kInfeasible},
        Required{"DoubleIntegrator", "variable P(2,2) symmetric; A=[0,1;0,0]; P>0; A'*P+P*A<0;",
                 kInfeasible},
        // A hundredth of damping is room enough.
        Required{"Damped", "variable P(2,2) symmetric; A=[0,1;-1,-0.01]; P>0; A'*P+P*A<0;",
                 kFeasible},
        Required{"Excited", "variable P(2,2) symmetric; A=[0,1;-1,0.01]; P>0; A'*P+P*A<0;",
                 kInfeasible},
        // In discrete time: a rotation shrunk, and one blown up.
        Required{"Shrinking",
                 "variable P(2,2) symmetric; A=0.99*[0.6,-0.8;0.8,0.6]; P>0; P-A'*P*A>0;",
                 kFeasible},
        // The proof lives on an irrational vector; the room beside P > 0 lets it hold.
        Required{"SaddleBeyondEye",
                 "variable P(2,2) symmetric; A=[-1,3;2,-1]; P>eye(2); A'*P+P*A<0;", kInfeasible},
        Required{"Growing",
                 "variable P(2,2) symmetric; A=1.01*[0.6,-0.8;0.8,0.6]; P>0; P-A'*P*A>0;",
                 kInfeasible},
        // Two systems with one P.
        Required{"Switched",
                 "variable P(2,2) symmetric; A=[-1,1;0,-1]; B=[-1,0;1,-1]; P>0; A'*P+P*A<0;"
                 "B'*P+P*B<0;",
                 kFeasible},
        Required{"SwitchedNot",
                 "variable P(2,2) symmetric; A=[-1,5;0,-1]; B=[-1,0;5,-1]; P>0; A'*P+P*A<0;"
                 "B'*P+P*B<0;",
                 kInfeasible},
        // A diagonal P is enough for this system.
        Required{"Diagonal", "variable D(3,3) diagonal; A=[-2,1,0;1,-2,1;0,1,-2]; D>0; A'*D+D*A<0;",
                 kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Lyapunov, UnprovableMatrices,
    ::testing::Values(
        // Eigenvalues -1 + sqrt 6 and -1 - sqrt 6: the proof lives on an irrational vector.
        Forbidden{"Saddle", "variable P(2,2) symmetric; A=[-1,3;2,-1]; P>0; A'*P+P*A<0;",
                  kFeasible},
        // P = I satisfies it with equality.
        Forbidden{"OscillatorNonStrict",
                  "variable P(2,2) symmetric; A=[0,1;-1,0]; P>0; A'*P+P*A<=0;", kInfeasible},
        // A rotation by 45 degrees of six digits is longer than 1 by 3e-7.
        Forbidden{"RotationOfSixDigits",
                  "variable P(2,2) symmetric; A=[0.707107,-0.707107;0.707107,0.707107];"
                  "P>0; P-A'*P*A>0;",
                  kFeasible}),
    kByName);

INSTANTIATE_TEST_SUITE_P(
    Variables, BorderMatrices,
    ::testing::Values(
        Required{"DiagonalWithTrace", "variable D(3,3) diagonal; D>0; trace(D)==1;", kFeasible},
        // Only the identity: the diagonal blocks are rows, and the rows equations.
        Required{"DiagonalAtItsBound", "variable D(3,3) diagonal; D>=eye(3); trace(D)<=3;",
                 kFeasible},
        Required{"DiagonalBeyondItsBound", "variable D(3,3) diagonal; D>eye(3); trace(D)<=3;",
                 kInfeasible},
        Required{"OneByOne", "variable x(1,1) symmetric; x>1; x<2;", kFeasible},
        // Element by element, for vectors.
        Required{"Vector", "variable v(3,1); v>[1;2;3]; sum(v)<6.1;", kFeasible},
        Required{"VectorNot", "variable v(3,1); v>[1;2;3]; sum(v)<=6;", kInfeasible},
        Required{"Correlations",
                 "variable C(3,3) symmetric; C>=0; diag(C)==ones(3,1); C(1,2)==0.5; C(2,3)==0.5;",
                 kFeasible},
        // 1 and 2 alike, 2 and 3 alike, 1 and 3 opposite.
        Required{"CorrelationsNot",
                 "variable C(3,3) symmetric; C>=0; diag(C)==ones(3,1); C(1,2)>0.9; C(2,3)>0.9;"
                 "C(1,3)<-0.9;",
                 kInfeasible},
        // What builders write around it must not matter.
        Required{"BlockMatrix",
                 "variable x,y; P0=[x,0,y;0,x,y;y,y,x]; P1=x; "
                 "[P0,zeros(3,1);zeros(1,3),P1]-[1*eye(3),zeros(3,1);zeros(1,3),1]>0; x<10;",
                 kFeasible},
        // Noise beside what decides, and noise that decides.
        Required{"Noise", "variable x,y; [x,1+1e-17*y;1+1e-17*y,x]>0; x<2; y<1; y>0.1;", kFeasible},
        // A large enough x makes up for it, unless it is noise.
        Required{"DecidingNoise", "BIGM=1e20; variable x,y; [x,1;1,1e-17*y]>0; y<1; y>0.1;",
                 kUndetermined, kNoise},
        Required{"TooFewIterations", "MAXITER=1; variable x,y; [x-3,y;y,8-x]>0; y>2.4;",
                 kUndetermined, kOutOfIterations}),
    kByName);

// Two fingertips that press on each other along the axis x; what is tangential is
// a millionth, a digit that the texts of grasps cut off.
INSTANTIATE_TEST_SUITE_P(
    Grasp, BorderMatrices,
    ::testing::Values(
        Required{"Held",
                 "variable f; P0=[0.5*f,0,0;0,0.5*f,0;0,0,0.5*f]; P1=P0; f>0; f<10;"
                 "[P0,zeros(3);zeros(3),P1]>0;",
                 kFeasible},
        // The tangential force is the normal one times the friction coefficient.
        Required{"OnTheConeStrict",
                 "variable f; P0=[0.5*f,0,0.5*f;0,0.5*f,0;0.5*f,0,0.5*f]; P0>0; f<10;",
                 kInfeasible},
        Required{"InsideTheConeBySixDigits",
                 "variable f; P0=[0.5*f,0,0.499999*f;0,0.5*f,0;0.499999*f,0,0.5*f]; P0>0; f<10;",
                 kUndetermined, kBorderline},
        Required{"InsideTheConeByFiveDigits",
                 "variable f; P0=[0.5*f,0,0.49999*f;0,0.5*f,0;0.49999*f,0,0.5*f]; P0>0; f<10;",
                 kFeasible},
        Required{"OutsideTheCone",
                 "variable f; P0=[0.5*f,0,0.50001*f;0,0.5*f,0;0.50001*f,0,0.5*f]; P0>0; f<10;",
                 kInfeasible},
        // Both normals point the same way: nothing but no force balances.
        Required{"Unheld", "variable f; x0=0.5*f; x1=-0.5*f; x0>0; x0<10; x1>0; x1<10;",
                 kInfeasible}),
    kByName);

}  // namespace
}  // namespace sdpsol::testing
