// Which matrices are taken for which cones, and that their coordinates say the same
// as the matrices do.
#include "solver/engine/cones/layout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "solver/dense/symmetric_eigen.h"
#include "solver/engine/cones/test_cones.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;
using testing::arrow;
using testing::coordinates_at;
using testing::Form;
using testing::kOne;
using testing::matrix;
using testing::matrix_at;
using testing::Numbers;
using testing::row;
using Kind = Part::Kind;

Layout layout_of(const ConeProgram::Cone& cone, std::int32_t unknowns = 3) {
  ConeProgram program;
  program.unknowns = unknowns;
  program.objective.assign(static_cast<std::size_t>(unknowns), 0.0);
  program.cones = {cone};
  return Layout(program);
}

const Part& only_part(const Layout& layout) {
  EXPECT_EQ(layout.parts.size(), 1U);
  return layout.parts.front();
}

const Form kX = {{0, 1}};
const Form kY = {{1, 1}};
const Form kZ = {{2, 1}};

TEST(Layout, PutsRowsFirstAndRemembersWhoseTheyAre) {
  const Layout layout(testing::program(
      {0, 0}, {arrow(0, kX, {kY}), row({{kOne, 5}, {1, 2}}), matrix(2, {kX, kY, kY}), row(kX)}));
  EXPECT_EQ(layout.rows, 2);
  EXPECT_EQ(layout.row_cones, (std::vector<std::size_t>{1, 3}));
  ASSERT_EQ(layout.parts.size(), 2U);
  EXPECT_EQ(layout.parts[0].cone, 0U);
  EXPECT_EQ(layout.parts[0].first, 2);
  EXPECT_EQ(layout.parts[1].cone, 2U);
  EXPECT_EQ(layout.parts[1].first, 4);
  EXPECT_EQ(layout.dimension, 7);
  EXPECT_EQ(coordinates_at(layout, Eigen::Vector2d(10, 20)),
            (VectorXd(7) << 45, 10, 10, 20, 15, -5, 20).finished());
}

TEST(Layout, AnArrowOfAnyOrderIsASecondOrderConeWhateverRowItsHubIs) {
  Numbers numbers(1);
  for (std::int32_t order = 2; order <= 7; ++order) {
    for (std::int32_t hub = 0; hub < order; ++hub) {
      const auto beside = numbers.forms(3, static_cast<std::size_t>(order) - 1);
      const Layout layout = layout_of(arrow(hub, numbers.form(3), beside));
      const Part& part = only_part(layout);
      EXPECT_EQ(part.kind, Kind::kArrow);
      EXPECT_EQ(part.order, order);
      EXPECT_EQ(part.dimension, order);
      // Of two rows either is the hub.
      if (order > 2) {
        EXPECT_EQ(part.hub, hub);
      }
    }
  }
}

TEST(Layout, AnArrowMayLackEntriesBesideItsDiagonal) {
  // The entry of rows 1 and 3 alone could belong to either hub.
  EXPECT_EQ(only_part(layout_of(arrow(3, kX, {{}, kY, {}}))).kind, Kind::kArrow);
  EXPECT_EQ(only_part(layout_of(arrow(3, kX, {{}, kY, kZ}))).hub, 3);
  const Layout none = layout_of(arrow(0, kX, {{}, {}}));
  EXPECT_EQ(only_part(none).kind, Kind::kArrow);
  EXPECT_EQ(coordinates_at(none, Eigen::Vector3d(7, 8, 9)), Eigen::Vector3d(7, 0, 0));
}

TEST(Layout, AMatrixWithoutAHubIsDense) {
  // a triangle of entries, and two that have no row in common
  EXPECT_EQ(only_part(layout_of(matrix(3, {kX, kY, kY, kX, kY, kX}))).kind, Kind::kDense);
  EXPECT_EQ(only_part(layout_of(matrix(4, {kX, kY, {}, {}, kX, {}, {}, kX, kZ, kX}))).kind,
            Kind::kDense);
}

TEST(Layout, AnArrowWithAnotherFormOnItsDiagonalIsDense) {
  const Form shifted = {{0, 1}, {kOne, 1e-6}};
  const Form other = {{1, 1}};
  for (const Form& odd : {shifted, other, Form{}}) {
    EXPECT_EQ(only_part(layout_of(matrix(3, {kX, {}, kY, kX, kZ, odd}))).kind, Kind::kDense);
    EXPECT_EQ(only_part(layout_of(matrix(3, {odd, {}, kY, kX, kZ, kX}))).kind, Kind::kDense);
  }
}

TEST(Layout, DiagonalsThatDifferByRoundingAreOneForm) {
  const Form a = {{kOne, 0.3}, {0, 0.1 * 7}, {1, 1}};
  const Form rounded = {{kOne, 0.1 * 3}, {0, 0.7}, {1, 1 + 3e-16}};
  ASSERT_NE(a, rounded);
  EXPECT_EQ(only_part(layout_of(matrix(3, {a, {}, kY, rounded, kZ, a}))).kind, Kind::kArrow);
  const Form different = {{kOne, 0.3}, {0, 0.1 * 7}, {1, 1 + 1e-12}};
  EXPECT_EQ(only_part(layout_of(matrix(3, {a, {}, kY, different, kZ, a}))).kind, Kind::kDense);
}

TEST(Layout, AnArrowScaledAsAWholeIsOneAndScaledRowByRowIsNot) {
  Numbers numbers(2);
  const ConeProgram::Cone cone = arrow(1, numbers.form(3), numbers.forms(3, 3));
  const auto scaled = [&](std::vector<double> sizes) {
    ConeProgram::Cone result = cone;
    for (auto& c : result.coefficients) {
      c.value *= sizes[static_cast<std::size_t>(c.row)] * sizes[static_cast<std::size_t>(c.column)];
    }
    return result;
  };
  EXPECT_EQ(only_part(layout_of(scaled({1e-4, 1e-4, 1e-4, 1e-4}))).kind, Kind::kArrow);
  EXPECT_EQ(only_part(layout_of(scaled({1, 1, 2, 1}))).kind, Kind::kDense);
}

TEST(Layout, EveryTwoByTwoMatrixIsASecondOrderCone) {
  const Layout different = layout_of(matrix(2, {kX, kZ, kY}));
  EXPECT_EQ(only_part(different).kind, Kind::kTwoByTwo);
  EXPECT_TRUE(only_part(different).is_second_order());
  EXPECT_EQ(coordinates_at(different, Eigen::Vector3d(3, 5, 7)), Eigen::Vector3d(4, -1, 7));
  const Layout equal = layout_of(matrix(2, {kX, kZ, kX}));
  EXPECT_EQ(only_part(equal).kind, Kind::kArrow);
  EXPECT_EQ(equal.dimension, 2);
}

TEST(Layout, CountsWhatTheBarrierCounts) {
  // three rows, four second-order cones, dense blocks of 3 and 4
  const Layout layout(Numbers(3).mixture(2));
  EXPECT_EQ(layout.degree, 3 + 4 + 3 + 4);
  EXPECT_EQ(unit(layout).squaredNorm(), static_cast<double>(layout.degree));
}

TEST(Layout, CoordinatesHaveTheLeastEigenvaluesOfTheMatrices) {
  Numbers numbers(4);
  int inside = 0;
  for (int round = 0; round < 30; ++round) {
    const ConeProgram program = numbers.mixture(4);
    const Layout layout(program);
    VectorXd y = numbers.vector(4);
    const VectorXd s = coordinates_at(layout, y);
    for (Index r = 0; r < layout.rows; ++r) {
      const std::size_t cone = layout.row_cones[static_cast<std::size_t>(r)];
      EXPECT_NEAR(s[r], matrix_at(program.cones[cone], y)(0, 0), 1e-13);
    }
    for (const Part& part : layout.parts) {
      const double least = symmetric_eigenvalues(matrix_at(program.cones[part.cone], y))[0];
      const VectorXd here = s.segment(part.first, part.dimension);
      inside += least > 0;
      if (part.is_second_order()) {
        EXPECT_NEAR(here[0] - here.tail(here.size() - 1).norm(), least, 1e-12);
      } else {
        EXPECT_NEAR(symmetric_eigenvalues(unpack(here, part.order))[0], least, 1e-12);
      }
    }
  }
  EXPECT_GT(inside, 10);
}

/// The sum of <X_i, F_i> over all cones.
double product_of(const ConeProgram& program, const std::vector<double>& multipliers,
                  const VectorXd& y) {
  double sum = 0;
  const auto offsets = multiplier_offsets(program.cones);
  for (std::size_t i = 0; i < program.cones.size(); ++i) {
    const Index n = program.cones[i].size;
    const Eigen::Map<const MatrixXd> x(&multipliers[offsets[i]], n, n);
    sum += x.cwiseProduct(matrix_at(program.cones[i], y)).sum();
  }
  return sum;
}

TEST(Layout, MultipliersAsMatricesHaveTheSameProducts) {
  Numbers numbers(5);
  for (int round = 0; round < 20; ++round) {
    const ConeProgram program = numbers.mixture(4);
    const Layout layout(program);
    const VectorXd z = numbers.inside(layout);
    const auto matrices = layout.matrices(z, multiplier_offsets(program.cones));
    for (int point = 0; point < 3; ++point) {
      const VectorXd y = numbers.vector(4);
      EXPECT_NEAR(product_of(program, matrices, y), z.dot(coordinates_at(layout, y)), 1e-10);
    }
  }
}

TEST(Layout, MultipliersInsideTheConesArePositiveDefiniteMatrices) {
  Numbers numbers(6);
  for (int round = 0; round < 30; ++round) {
    const ConeProgram program = numbers.mixture(1);
    const Layout layout(program);
    const auto offsets = multiplier_offsets(program.cones);
    const auto matrices = layout.matrices(numbers.inside(layout), offsets);
    for (std::size_t i = 0; i < program.cones.size(); ++i) {
      const Index n = program.cones[i].size;
      const Eigen::Map<const MatrixXd> x(&matrices[offsets[i]], n, n);
      EXPECT_EQ(x, x.transpose());
      EXPECT_GT(symmetric_eigenvalues(x)[0], 0) << "cone " << i;
    }
  }
}

TEST(Layout, MultipliersOnTheBorderOfAnArrowAreSingularAndNotIndefinite) {
  const Layout layout = layout_of(arrow(1, kX, {kY, kZ}));
  const auto least = [&](const VectorXd& z) {
    const auto x = layout.matrices(z, {0, 9});
    return symmetric_eigenvalues(Eigen::Map<const MatrixXd>(x.data(), 3, 3))[0];
  };
  EXPECT_NEAR(least(Eigen::Vector3d(5, 3, 4)), 0, 1e-15);
  EXPECT_NEAR(least(Eigen::Vector3d(5 - 1e-10, 3, 4)), 0, 1e-15);
  EXPECT_EQ(least(Eigen::Vector3d(3, 0, 0)), 1);
  EXPECT_EQ(least(Eigen::Vector3d(0, 0, 0)), 0);
}

TEST(Layout, CoefficientsMayComeInAnyOrderAndInPieces) {
  Numbers numbers(7);
  std::mt19937 random(7);
  for (int round = 0; round < 20; ++round) {
    const ConeProgram program = numbers.mixture(4);
    ConeProgram shuffled = program;
    for (auto& cone : shuffled.cones) {
      const auto whole = cone.coefficients;
      cone.coefficients.clear();
      for (auto c : whole) {
        // Halves add up exactly. What is 0 is as good as absent.
        c.value /= 2;
        cone.coefficients.insert(cone.coefficients.end(), {c, c});
        cone.coefficients.push_back({c.row, c.column, 4, 0});
      }
      std::shuffle(cone.coefficients.begin(), cone.coefficients.end(), random);
    }
    const Layout expected(program);
    const Layout layout(shuffled);
    ASSERT_EQ(layout.parts.size(), expected.parts.size());
    for (std::size_t p = 0; p < layout.parts.size(); ++p) {
      EXPECT_EQ(layout.parts[p].kind, expected.parts[p].kind);
    }
    EXPECT_EQ(layout.constants, expected.constants);
    EXPECT_EQ(layout.linear.starts, expected.linear.starts);
    EXPECT_EQ(testing::dense(layout, 4), testing::dense(expected, 4));
  }
}

TEST(Layout, NoCoordinateHoldsAnUnknownTwice) {
  Numbers numbers(8);
  ConeProgram program = numbers.mixture(5);
  for (auto& cone : program.cones) {
    const auto once = cone.coefficients;
    cone.coefficients.insert(cone.coefficients.end(), once.rbegin(), once.rend());
  }
  const Layout layout(program);
  const auto& [terms, starts] = layout.linear;
  ASSERT_EQ(starts.size(), static_cast<std::size_t>(layout.dimension) + 1);
  for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
    for (std::size_t t = starts[i]; t + 1 < starts[i + 1]; ++t) {
      EXPECT_LT(terms[t].unknown, terms[t + 1].unknown);
    }
  }
}

TEST(Packing, KeepsMatricesAndTheirInnerProducts) {
  Numbers numbers(9);
  for (Index order = 1; order <= 6; ++order) {
    const MatrixXd half = numbers.matrix(order, order);
    const MatrixXd other_half = numbers.matrix(order, order);
    const MatrixXd a = half + half.transpose();
    const MatrixXd b = other_half + other_half.transpose();
    VectorXd packed_a(order * (order + 1) / 2);
    VectorXd packed_b(packed_a.size());
    pack(a, packed_a);
    pack(b, packed_b);
    EXPECT_NEAR(packed_a.dot(packed_b), a.cwiseProduct(b).sum(), 1e-12);
    EXPECT_LE((unpack(packed_a, order) - a).norm(), 1e-14);
  }
}

}  // namespace
}  // namespace sdpsol::cones
