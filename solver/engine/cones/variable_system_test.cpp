// Normal equations in the program's own unknowns.
#include "solver/engine/cones/variable_system.h"

#include <gtest/gtest.h>

#include "solver/engine/cones/test_cones.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;
using testing::dense;
using testing::Numbers;
using testing::row;

TEST(VariableSystem, WorksInTheUnknownsOfTheProgram) {
  Numbers numbers(1);
  const ConeProgram program = numbers.mixture(5);
  const Layout layout(program);
  const VariableSystem system(layout, program.objective);
  const MatrixXd g = dense(layout, 5);
  const VectorXd y = numbers.vector(5);
  const VectorXd z = numbers.vector(layout.dimension);
  EXPECT_EQ(system.size(), 5);
  EXPECT_EQ(std::vector<double>(system.objective().begin(), system.objective().end()),
            program.objective);
  EXPECT_EQ(system.point(y), y);
  EXPECT_LE((system.multiply(y) - g * y).norm(), 1e-13);
  EXPECT_LE((system.multiply_transposed(z) - g.transpose() * z).norm(), 1e-13);
}

TEST(VariableSystem, SolvesTheNormalEquations) {
  Numbers numbers(2);
  for (int round = 0; round < 20; ++round) {
    const ConeProgram program = numbers.mixture(round % 10 + 1);
    const Layout layout(program);
    VariableSystem system(layout, program.objective);
    NtScaling scaling(layout);
    ASSERT_TRUE(scaling.update(numbers.inside(layout), numbers.inside(layout)));
    ASSERT_TRUE(system.factor(scaling));
    MatrixXd scaled = dense(layout, program.unknowns);
    for (Index k = 0; k < scaled.cols(); ++k) {
      VectorXd column = scaled.col(k);
      scaling.unscale_transposed(column);
      scaled.col(k) = column;
    }
    const VectorXd right = numbers.vector(program.unknowns);
    const VectorXd solution = system.solve(right);
    EXPECT_LE((scaled.transpose() * (scaled * solution) - right).norm(), 1e-9 * right.norm());
  }
}

TEST(VariableSystem, UnknownsOfVeryDifferentSizesAreSolvedFor) {
  // y_0 + 1e9*y_1 and y_0 - 1e9*y_1
  const ConeProgram program =
      testing::program({1, 1}, {row({{0, 1}, {1, 1e9}}), row({{0, 1}, {1, -1e9}})});
  const Layout layout(program);
  VariableSystem system(layout, program.objective);
  NtScaling scaling(layout);
  scaling.set_identity();
  ASSERT_TRUE(system.factor(scaling));
  const VectorXd solution = system.solve(Eigen::Vector2d(2, 2e9));
  EXPECT_NEAR(solution[0], 1, 1e-14);
  EXPECT_NEAR(solution[1], 1e-9, 1e-23);
}

TEST(VariableSystem, AnUnknownThatNoConeFeelsMakesItSingular) {
  const ConeProgram program = testing::program({1, 1}, {row({{0, 1}})});
  const Layout layout(program);
  VariableSystem system(layout, program.objective);
  NtScaling scaling(layout);
  scaling.set_identity();
  EXPECT_FALSE(system.factor(scaling));
}

TEST(VariableSystem, UnknownsThatMakeNoDifferenceBesideOthersStayFinite) {
  // y_0 + y_1 alone is felt, and fewer coordinates than unknowns.
  const ConeProgram program = testing::program({1, 1}, {row({{0, 1}, {1, 1}})});
  const Layout layout(program);
  VariableSystem system(layout, program.objective);
  NtScaling scaling(layout);
  scaling.set_identity();
  ASSERT_TRUE(system.factor(scaling));
  const VectorXd solution = system.solve(Eigen::Vector2d(3, 3));
  EXPECT_TRUE(solution.allFinite());
  EXPECT_NEAR(solution.sum(), 3, 1e-6);
}

}  // namespace
}  // namespace sdpsol::cones
