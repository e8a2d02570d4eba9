// Steps in the forces are the steps in the unknowns, wherever it takes them at all.
#include "solver/engine/cones/range_system.h"

#include <gtest/gtest.h>

#include "solver/engine/cones/test_contacts.h"
#include "solver/engine/cones/variable_system.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;
using testing::arrow;
using testing::Contacts;
using testing::contacts_program;
using testing::Form;
using testing::kOne;
using testing::Numbers;
using testing::row;

/// A program with its system in both kinds of unknowns.
struct Both {
  explicit Both(ConeProgram its_program)
      : program(std::move(its_program)),
        layout(program),
        forces(find_forces(layout, program.objective, 1000).value()),
        variables(layout, program.objective),
        range(RangeSystem::make(layout, program.objective)) {}

  /// The unknowns y as those of the range.
  VectorXd image(const VectorXd& y) const {
    VectorXd z(forces.factor.cols());
    for (Index k = 0; k < z.size(); ++k) z[k] = y[forces.wide[static_cast<std::size_t>(k)]];
    VectorXd u(forces.size() + (forces.common ? 1 : 0));
    u.head(forces.factor.rows()) = forces.factor * z;
    for (std::size_t l = 0; l < forces.local.size(); ++l) {
      u[forces.factor.rows() + static_cast<Index>(l)] = y[forces.local[l]];
    }
    if (forces.common) u[forces.size()] = y[*forces.common];
    return u;
  }

  ConeProgram program;
  Layout layout;
  Forces forces;
  VariableSystem variables;
  std::unique_ptr<RangeSystem> range;
};

bool is_made_for(const ConeProgram& program) {
  return RangeSystem::make(Layout(program), program.objective) != nullptr;
}

/// Unknowns of one small cone each, and nothing that they share.
ConeProgram locals_alone(int count) {
  ConeProgram program;
  for (std::int32_t k = 0; k < count; ++k) {
    program.cones.push_back(arrow(0, {{kOne, 2}}, {{{k, 1}}, {{kOne, 1}}}));
    program.cones.push_back(row({{kOne, 1}, {k, 1}}));
  }
  program.unknowns = count;
  program.objective.assign(static_cast<std::size_t>(count), 1.0);
  return program;
}

/// As many forces as unknowns: any force is in the range.
ConeProgram no_left_null_vectors(Numbers& numbers) {
  ConeProgram program = testing::program({1, 2, 3}, {});
  const MatrixXd f = numbers.matrix(3, 3);
  for (std::int32_t i = 0; i < 12; ++i) {
    Form form = {{kOne, 1}};
    for (std::int32_t k = 0; k < 3; ++k) form.emplace_back(k, (i + 1) * f(i % 3, k));
    program.cones.push_back(row(form));
  }
  return program;
}

std::vector<ConeProgram> programs(Numbers& numbers) {
  std::vector<ConeProgram> all = {locals_alone(4), no_left_null_vectors(numbers)};
  for (const Contacts& kind : testing::kinds_of_contacts()) {
    all.push_back(contacts_program(numbers, kind));
  }
  return all;
}

TEST(RangeSystem, ActsOnTheConesAsTheUnknownsDo) {
  Numbers numbers(1);
  for (const ConeProgram& program : programs(numbers)) {
    const Both both(program);
    ASSERT_TRUE(both.range);
    const VectorXd y = numbers.vector(program.unknowns);
    const VectorXd u = both.image(y);
    ASSERT_EQ(both.range->size(), u.size());
    EXPECT_LE((both.range->multiply(u) - both.variables.multiply(y)).norm(), 1e-12 * u.norm());
    EXPECT_NEAR(both.range->objective().dot(u), both.variables.objective().dot(y),
                1e-11 * u.norm() * both.range->objective().norm());
  }
}

TEST(RangeSystem, FindsThePointThatForcesBelongTo) {
  Numbers numbers(2);
  for (const ConeProgram& program : programs(numbers)) {
    const Both both(program);
    ASSERT_TRUE(both.range);
    const VectorXd y = numbers.vector(program.unknowns);
    EXPECT_LE((both.range->point(both.image(y)) - y).norm(), 1e-11 * y.norm());
  }
}

TEST(RangeSystem, TransposedProductsAndObjectiveLieInTheRange) {
  Numbers numbers(3);
  for (const ConeProgram& program : programs(numbers)) {
    const Both both(program);
    ASSERT_TRUE(both.range);
    const VectorXd z = numbers.vector(both.layout.dimension);
    const VectorXd forces = both.range->multiply_transposed(z);
    for (const VectorXd& v : {forces, both.range->objective()}) {
      // What comes back from the unknowns is what the range holds of a vector.
      EXPECT_LE((both.image(both.range->point(v)) - v).norm(), 1e-11 * v.norm());
    }
    const VectorXd y = numbers.vector(program.unknowns);
    EXPECT_NEAR(forces.dot(both.image(y)), both.variables.multiply_transposed(z).dot(y),
                1e-11 * forces.norm() * both.image(y).norm());
  }
}

TEST(RangeSystem, SolvesTheNormalEquationsOfTheUnknowns) {
  Numbers numbers(4);
  for (int round = 0; round < 3; ++round) {
    for (const ConeProgram& program : programs(numbers)) {
      Both both(program);
      ASSERT_TRUE(both.range);
      NtScaling scaling(both.layout);
      ASSERT_TRUE(scaling.update(numbers.inside(both.layout), numbers.inside(both.layout)));
      ASSERT_TRUE(both.range->factor(scaling));
      ASSERT_TRUE(both.variables.factor(scaling));
      const VectorXd z = numbers.vector(both.layout.dimension);
      const VectorXd u = both.range->solve(both.range->multiply_transposed(z));
      const VectorXd y = both.variables.solve(both.variables.multiply_transposed(z));
      EXPECT_LE((both.range->point(u) - y).norm(), 1e-7 * y.norm());
      EXPECT_LE((u - both.image(y)).norm(), 1e-7 * u.norm());
    }
  }
}

TEST(RangeSystem, SolvesToTheLastDigitsInTheForces) {
  Numbers numbers(5);
  for (const ConeProgram& program : programs(numbers)) {
    Both both(program);
    ASSERT_TRUE(both.range);
    const auto well_inside = [&]() -> VectorXd {
      return numbers.inside(both.layout) + unit(both.layout);
    };
    NtScaling scaling(both.layout);
    ASSERT_TRUE(scaling.update(well_inside(), well_inside()));
    ASSERT_TRUE(both.range->factor(scaling));
    const VectorXd right = both.range->multiply_transposed(numbers.vector(both.layout.dimension));
    VectorXd s = both.range->multiply(both.range->solve(right));
    scaling.unscale_transposed(s);
    scaling.unscale(s);
    EXPECT_LE((both.range->multiply_transposed(s) - right).norm(), 1e-11 * right.norm());
  }
}

TEST(RangeSystem, MayBeFactoredAgainForAnotherScaling) {
  Numbers numbers(6);
  Both both(contacts_program(numbers, {9, true, true, 2}));
  ASSERT_TRUE(both.range);
  NtScaling scaling(both.layout);
  scaling.set_identity();
  ASSERT_TRUE(both.range->factor(scaling));
  const VectorXd right = both.range->multiply_transposed(numbers.vector(both.layout.dimension));
  const VectorXd first = both.range->solve(right);
  ASSERT_TRUE(scaling.update(numbers.inside(both.layout), numbers.inside(both.layout)));
  ASSERT_TRUE(both.range->factor(scaling));
  EXPECT_GT((both.range->solve(right) - first).norm(), 0.1 * first.norm());
  scaling.set_identity();
  ASSERT_TRUE(both.range->factor(scaling));
  EXPECT_EQ(both.range->solve(right), first);
}

TEST(RangeSystem, ConesOfTheCommonUnknownAloneCount) {
  // Without them H would be that of the forces only; constants alone are no one's.
  Numbers numbers(7);
  ConeProgram program = contacts_program(numbers, {9, true, false, 0});
  const std::int32_t margin = program.unknowns - 1;
  program.cones.insert(program.cones.begin(), row({{kOne, 3}}));
  program.cones.insert(program.cones.begin(),
                       arrow(0, {{kOne, 2}, {margin, 1}}, {{{kOne, 1}}, {{margin, 0.5}}}));
  Both both(program);
  ASSERT_TRUE(both.range);
  NtScaling scaling(both.layout);
  ASSERT_TRUE(scaling.update(numbers.inside(both.layout), numbers.inside(both.layout)));
  ASSERT_TRUE(both.range->factor(scaling));
  ASSERT_TRUE(both.variables.factor(scaling));
  const VectorXd z = numbers.vector(both.layout.dimension);
  const VectorXd u = both.range->solve(both.range->multiply_transposed(z));
  const VectorXd y = both.variables.solve(both.variables.multiply_transposed(z));
  EXPECT_NEAR(u[u.size() - 1], y[margin], 1e-8 * y.norm());
  EXPECT_LE((both.range->point(u) - y).norm(), 1e-8 * y.norm());
}

TEST(RangeSystem, IsNotMadeForUnknownsThatForcesDoNotTellApart) {
  Numbers numbers(8);
  ConeProgram program = contacts_program(numbers, {5, false, false, 0});
  ASSERT_TRUE(is_made_for(program));
  const std::int32_t copy = program.unknowns;
  for (auto& cone : program.cones) {
    const auto before = cone.coefficients;
    for (auto c : before) {
      if (c.unknown != 3) continue;
      c.unknown = copy;
      cone.coefficients.push_back(c);
    }
  }
  program.unknowns += 1;
  program.objective.push_back(1);
  EXPECT_FALSE(is_made_for(program));
}

TEST(RangeSystem, IsNotMadeForFewerForcesThanUnknowns) {
  ConeProgram program = testing::program({1, 2}, {});
  for (int i = 0; i < 9; ++i) program.cones.push_back(row({{kOne, 1}, {0, 1}, {1, 1}}));
  EXPECT_FALSE(is_made_for(program));
}

TEST(RangeSystem, IsNotMadeForMoreLeftNullVectorsThanAWrenchAndTwentyBoxes) {
  Numbers numbers(9);
  EXPECT_TRUE(is_made_for(contacts_program(numbers, {10, false, false, 20})));
  EXPECT_FALSE(is_made_for(contacts_program(numbers, {10, false, false, 21})));
}

TEST(RangeSystem, IsNotMadeForLargeBlocks) {
  // An arrow in which each entry is a force of its own.
  Numbers numbers(10);
  const auto with_arrow_of = [&](std::size_t order) {
    const auto unknowns = static_cast<std::int32_t>(order) - 5;
    ConeProgram program;
    program.unknowns = unknowns;
    program.objective.assign(static_cast<std::size_t>(unknowns), 1.0);
    program.cones = {arrow(0, numbers.form(unknowns), numbers.forms(unknowns, order - 1))};
    return program;
  };
  EXPECT_TRUE(is_made_for(with_arrow_of(40)));
  EXPECT_FALSE(is_made_for(with_arrow_of(41)));
}

}  // namespace
}  // namespace sdpsol::cones
