// Forces are found in the coefficients: what counts as one, and that cones stand in
// them as they stand in the unknowns.
#include "solver/engine/cones/forces.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solver/engine/cones/test_contacts.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;
using testing::Contacts;
using testing::contacts_program;
using testing::Form;
using testing::kOne;
using testing::matrix;
using testing::Numbers;
using testing::row;

Forces forces_of(const ConeProgram& program) {
  return find_forces(Layout(program), program.objective, 1000).value();
}

/// `count` rows in two unknowns with the same form, and one more: unknowns 0 and 1 are wide.
ConeProgram rows_and(const Form& other, int count = 9) {
  ConeProgram program = testing::program({1, 1}, {});
  for (int i = 0; i < count; ++i) program.cones.push_back(row({{kOne, 1.0 * i}, {0, 3}, {1, 4}}));
  program.cones.push_back(row(other));
  return program;
}

TEST(Forces, EqualFormsAreOneForceOfNormOne) {
  const Forces forces = forces_of(rows_and({{kOne, 7}, {0, 3}, {1, 4}}));
  ASSERT_EQ(forces.factor.rows(), 1);
  EXPECT_EQ(forces.factor.cols(), 2);
  EXPECT_LE((forces.factor - MatrixXd(Eigen::RowVector2d(0.6, 0.8))).norm(), 1e-15);
  EXPECT_EQ(forces.linear.starts.size(), 11U);
  for (const Term& t : forces.linear.terms) {
    EXPECT_EQ(t.unknown, 0);
    EXPECT_DOUBLE_EQ(t.value, 5);
  }
}

TEST(Forces, MultiplesOfAFormAreThatForce) {
  for (const double factor : {2.0, -1.0, -0.1, 1e-6, 1e6}) {
    const Forces forces = forces_of(rows_and({{0, factor * 3}, {1, factor * 4}}));
    EXPECT_EQ(forces.factor.rows(), 1) << factor;
    const double share = forces.linear.terms.back().value * forces.factor(0, 0);
    EXPECT_NEAR(share, factor * 3, 1e-14 * std::fabs(factor)) << factor;
  }
}

TEST(Forces, NoiseOfRoundingMakesNoOtherForce) {
  Numbers numbers(1);
  const VectorXd form = numbers.vector(40);
  ConeProgram program = testing::program(std::vector<double>(40, 1.0), {});
  for (int i = 0; i < 30; ++i) {
    Form scaled;
    const double factor = numbers.number();
    for (std::int32_t k = 0; k < 40; ++k) {
      scaled.emplace_back(k, factor * form[k] * (1 + 2e-16 * numbers.number()));
    }
    program.cones.push_back(row(scaled));
  }
  EXPECT_EQ(forces_of(program).factor.rows(), 1);
}

TEST(Forces, ADifferenceBeyondRoundingMakesAnother) {
  EXPECT_EQ(forces_of(rows_and({{0, 3}, {1, 4 * (1 + 1e-10)}})).factor.rows(), 2);
  EXPECT_EQ(forces_of(rows_and({{0, -3}, {1, 4}})).factor.rows(), 2);
  EXPECT_EQ(forces_of(rows_and({{0, 3}})).factor.rows(), 2);
}

TEST(Forces, FormsWithNearlyOneSignatureAreToldApart) {
  // Many forms a little beside each other, each of them twice.
  ConeProgram program = testing::program({1, 1}, {});
  for (int i = 0; i < 20; ++i) {
    const double value = 4 + 2e-12 * (i % 10);
    program.cones.push_back(row({{0, 3}, {1, value}}));
  }
  const Forces forces = forces_of(program);
  EXPECT_EQ(forces.factor.rows(), 10);
  for (std::size_t i = 0; i < 10; ++i) {
    EXPECT_EQ(forces.linear.terms[i].unknown, forces.linear.terms[i + 10].unknown);
  }
}

TEST(Forces, RowsOfOneWideUnknownAreOneForceOfItsOwn) {
  ConeProgram program = rows_and({{kOne, 10}, {1, 2}});
  program.cones.push_back(row({{kOne, 10}, {1, -2}}));
  const Forces forces = forces_of(program);
  ASSERT_EQ(forces.factor.rows(), 2);
  const auto& terms = forces.linear.terms;
  ASSERT_EQ(terms.size(), 11U);
  EXPECT_EQ(terms[9].unknown, terms[10].unknown);
  EXPECT_NE(terms[9].unknown, terms[0].unknown);
  EXPECT_EQ(terms[9].value, -terms[10].value);
  EXPECT_EQ(forces.factor.row(terms[9].unknown).cwiseAbs(), Eigen::RowVector2d(0, 1));
}

TEST(Forces, UnknownsOfFewCoordinatesAreLocal) {
  // Unknown 2 is in eight coordinates, unknown 3 in nine.
  ConeProgram program = testing::program({1, 1, 1, 1}, {});
  for (int i = 0; i < 9; ++i) {
    program.cones.push_back(row({{0, 3}, {1, 4}, {3, 1}}));
    if (i < 8) program.cones.push_back(row({{2, 0.5}}));
  }
  const Forces forces = forces_of(program);
  EXPECT_EQ(forces.wide, (std::vector<std::int32_t>{0, 1, 3}));
  EXPECT_EQ(forces.local, std::vector<std::int32_t>{2});
  EXPECT_FALSE(forces.common);
  EXPECT_EQ(forces.size(), forces.factor.rows() + 1);
}

TEST(Forces, TheOnlyUnknownOfTheObjectiveIsCommonIfItIsWide) {
  ConeProgram program = rows_and({{0, 3}, {1, 4}});
  program.objective = {0, -2};
  EXPECT_EQ(forces_of(program).common, 1);
  EXPECT_EQ(forces_of(program).wide, std::vector<std::int32_t>{0});
  EXPECT_EQ(forces_of(program).common_column, VectorXd(VectorXd::Constant(10, 4)));
  program.objective = {1, -2};
  EXPECT_FALSE(forces_of(program).common);
  program.objective = {0, 0};
  EXPECT_FALSE(forces_of(program).common);
  EXPECT_EQ(forces_of(program).common_column, VectorXd(VectorXd::Zero(10)));
  ConeProgram local = testing::program({1}, {row({{0, 1}})});
  EXPECT_FALSE(forces_of(local).common);
  EXPECT_EQ(forces_of(local).local, std::vector<std::int32_t>{0});
}

TEST(Forces, TheCommonUnknownIsNoPartOfAForce) {
  ConeProgram program = rows_and({{0, 3}, {1, 4}});
  // With and without it, and with another multiple of it.
  program.unknowns = 3;
  program.objective = {0, 0, 1};
  for (std::size_t i = 0; i < 9; ++i) {
    program.cones[i].coefficients.push_back({0, 0, 2, -1.0 - static_cast<double>(i)});
  }
  EXPECT_EQ(forces_of(program).common, 2);
  EXPECT_EQ(forces_of(program).factor.rows(), 1);
}

TEST(Forces, AMatrixStandsInItsForces) {
  ConeProgram program = rows_and({{0, 1}});
  program.cones.push_back(matrix(2, {{{0, 6}, {1, 8}}, {{0, -1}}, {{0, 6}, {1, 8}}}));
  const Forces forces = forces_of(program);
  EXPECT_EQ(forces.factor.rows(), 2);
}

TEST(Forces, GraspsHaveThreeForContactsAndOneForEachBox) {
  for (const Contacts& kind : testing::kinds_of_contacts()) {
    Numbers numbers(2);
    const ConeProgram program = contacts_program(numbers, kind);
    const Forces forces = forces_of(program);
    EXPECT_EQ(forces.factor.rows(), 3 * kind.count + kind.boxed);
    EXPECT_EQ(forces.factor.cols(), 3 * kind.count - 6);
    EXPECT_EQ(forces.local.size(), kind.with_locals ? 8U : 0U);
    EXPECT_EQ(forces.common.has_value(), kind.with_margin);
    const VectorXd norms = forces.factor.rowwise().norm();
    EXPECT_LE((norms - VectorXd::Ones(norms.size())).norm(), 1e-14);
  }
}

TEST(Forces, CoordinatesAreTheSameInForcesAsInUnknowns) {
  Numbers numbers(3);
  for (const Contacts& kind : testing::kinds_of_contacts()) {
    const ConeProgram program = contacts_program(numbers, kind);
    const Layout layout(program);
    const Forces forces = forces_of(program);
    const VectorXd y = numbers.vector(program.unknowns);
    VectorXd z(forces.factor.cols());
    for (Index k = 0; k < z.size(); ++k) z[k] = y[forces.wide[static_cast<std::size_t>(k)]];
    VectorXd x(forces.size());
    x.head(forces.factor.rows()) = forces.factor * z;
    for (std::size_t l = 0; l < forces.local.size(); ++l) {
      x[forces.factor.rows() + static_cast<Index>(l)] = y[forces.local[l]];
    }
    VectorXd s = layout.constants;
    if (forces.common) s += forces.common_column * y[*forces.common];
    const auto& [terms, starts] = forces.linear;
    ASSERT_EQ(starts.size(), static_cast<std::size_t>(s.size()) + 1);
    for (Index i = 0; i < s.size(); ++i) {
      const auto at = static_cast<std::size_t>(i);
      for (std::size_t t = starts[at]; t < starts[at + 1]; ++t) {
        s[i] += terms[t].value * x[terms[t].unknown];
      }
    }
    EXPECT_LE((s - testing::coordinates_at(layout, y)).norm(), 1e-12 * s.norm());
  }
}

}  // namespace
}  // namespace sdpsol::cones
