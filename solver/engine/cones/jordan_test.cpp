// The algebra of the cones against what it is for matrices.
#include "solver/engine/cones/jordan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "solver/dense/symmetric_eigen.h"
#include "solver/engine/cones/test_cones.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;
using testing::arrow;
using testing::kOne;
using testing::matrix_of;
using testing::mixed_layout;
using testing::Numbers;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

const Part& first_of(Part::Kind kind) {
  for (const Part& part : mixed_layout().parts) {
    if (part.kind == kind) return part;
  }
  throw std::logic_error("no such part");
}

/// A point inside the cones whose dense blocks are diagonal.
VectorXd scaled_point(Numbers& numbers) {
  VectorXd lambda = numbers.inside(mixed_layout());
  for (const Part& part : mixed_layout().parts) {
    if (part.is_second_order()) continue;
    const VectorXd values = numbers.vector(part.order).cwiseAbs();
    pack(values.asDiagonal(), lambda.segment(part.first, part.dimension));
  }
  return lambda;
}

/// By the matrices, not by the coordinates.
bool is_inside(const VectorXd& s) {
  if (!(s.head(mixed_layout().rows).array() > 0).all()) return false;
  for (const Part& part : mixed_layout().parts) {
    if (!(symmetric_eigenvalues(matrix_of(part, s))[0] > 0)) return false;
  }
  return true;
}

TEST(Unit, IsOneInEveryCone) {
  const VectorXd e = unit(mixed_layout());
  for (Index r = 0; r < mixed_layout().rows; ++r) EXPECT_EQ(e[r], 1);
  for (const Part& part : mixed_layout().parts) {
    EXPECT_EQ(matrix_of(part, e), MatrixXd(MatrixXd::Identity(part.order, part.order)));
  }
}

TEST(Product, WithTheUnitIsTheOtherFactor) {
  Numbers numbers(2);
  for (int round = 0; round < 20; ++round) {
    const VectorXd a = numbers.vector(mixed_layout().dimension);
    EXPECT_LE((product(mixed_layout(), unit(mixed_layout()), a) - a).norm(), 1e-14);
    EXPECT_LE((product(mixed_layout(), a, unit(mixed_layout())) - a).norm(), 1e-14);
  }
}

TEST(Product, IsThatOfNumbersOfSecondOrderConesAndOfMatrices) {
  Numbers numbers(3);
  const VectorXd a = numbers.vector(mixed_layout().dimension);
  const VectorXd b = numbers.vector(mixed_layout().dimension);
  const VectorXd c = product(mixed_layout(), a, b);
  for (Index r = 0; r < mixed_layout().rows; ++r) EXPECT_EQ(c[r], a[r] * b[r]);
  for (const Part& part : mixed_layout().parts) {
    if (part.is_second_order()) {
      const VectorXd x = a.segment(part.first, part.dimension);
      const VectorXd y = b.segment(part.first, part.dimension);
      EXPECT_NEAR(c[part.first], x.dot(y), 1e-14);
      for (Index i = 1; i < part.dimension; ++i) {
        EXPECT_NEAR(c[part.first + i], x[0] * y[i] + y[0] * x[i], 1e-14);
      }
    } else {
      const MatrixXd x = matrix_of(part, a);
      const MatrixXd y = matrix_of(part, b);
      EXPECT_LE((matrix_of(part, c) - (x * y + y * x) / 2).norm(), 1e-13);
    }
  }
}

TEST(Quotient, TimesTheDivisorIsTheDividend) {
  Numbers numbers(4);
  for (int round = 0; round < 50; ++round) {
    const VectorXd lambda = scaled_point(numbers);
    const VectorXd b = numbers.vector(mixed_layout().dimension);
    const VectorXd x = quotient(mixed_layout(), b, lambda);
    EXPECT_LE((product(mixed_layout(), lambda, x) - b).norm(), 1e-12 * (1 + x.norm())) << round;
  }
}

/// The least step that leaves the cones, by halving.
double step_by_halving(const VectorXd& lambda, const VectorXd& direction) {
  double within = 0;
  double outside = 1;
  while (is_inside(lambda + outside * direction)) {
    within = outside;
    outside *= 2;
    if (outside > 1e6) return kInfinity;
  }
  for (int i = 0; i < 45; ++i) {
    const double middle = within + (outside - within) / 2;
    (is_inside(lambda + middle * direction) ? within : outside) = middle;
  }
  return within;
}

TEST(LargestStep, EndsWhereTheConesEnd) {
  Numbers numbers(5);
  for (int round = 0; round < 25; ++round) {
    const VectorXd lambda = scaled_point(numbers);
    const VectorXd direction = numbers.vector(mixed_layout().dimension);
    const double expected = step_by_halving(lambda, direction);
    EXPECT_NEAR(largest_step(mixed_layout(), lambda, direction), expected, 1e-8 * expected)
        << round;
  }
}

TEST(LargestStep, IsThatOfTheConeThatEndsFirst) {
  Numbers numbers(6);
  const VectorXd lambda = scaled_point(numbers);
  const auto step_in = [&](Index first, Index dimension) {
    VectorXd direction = VectorXd::Zero(mixed_layout().dimension);
    direction[first] = -1;
    direction.segment(first, dimension) += numbers.vector(dimension);
    const double step = largest_step(mixed_layout(), lambda, direction);
    EXPECT_NEAR(step, step_by_halving(lambda, direction), 1e-8 * step) << "from " << first;
  };
  for (int round = 0; round < 3; ++round) {
    for (const Part& part : mixed_layout().parts) step_in(part.first, part.dimension);
  }
  VectorXd direction = VectorXd::Zero(mixed_layout().dimension);
  direction[1] = -3;
  EXPECT_DOUBLE_EQ(largest_step(mixed_layout(), lambda, direction), lambda[1] / 3);
}

TEST(LargestStep, IsInfiniteWhereADirectionStaysInTheCones) {
  Numbers numbers(7);
  const VectorXd lambda = scaled_point(numbers);
  EXPECT_EQ(largest_step(mixed_layout(), lambda, VectorXd::Zero(mixed_layout().dimension)),
            kInfinity);
  EXPECT_EQ(largest_step(mixed_layout(), lambda, unit(mixed_layout())), kInfinity);
  EXPECT_EQ(largest_step(mixed_layout(), lambda, numbers.inside(mixed_layout())), kInfinity);
}

TEST(LargestStep, StraightIntoABorderOfANarrowConeIsFound) {
  // from (1, 0) along (0, 1); and from beside the border along the axis
  const Part& part = first_of(Part::Kind::kArrow);
  VectorXd lambda = unit(mixed_layout());
  VectorXd direction = VectorXd::Zero(mixed_layout().dimension);
  direction[part.first + 1] = 1;
  EXPECT_DOUBLE_EQ(largest_step(mixed_layout(), lambda, direction), 1);
  lambda[part.first + 1] = 1 - 1e-9;
  EXPECT_NEAR(largest_step(mixed_layout(), lambda, direction), 1e-9, 1e-15);
  direction[part.first] = -1;
  direction[part.first + 1] = 0;
  EXPECT_NEAR(largest_step(mixed_layout(), lambda, direction), 1e-9, 1e-15);
}

TEST(LargestStep, IsNoneWhereADirectionIsNotANumber) {
  Numbers numbers(8);
  const VectorXd lambda = scaled_point(numbers);
  for (Index i = 0; i < mixed_layout().dimension; ++i) {
    VectorXd direction = numbers.vector(mixed_layout().dimension);
    direction[i] = std::nan("");
    EXPECT_EQ(largest_step(mixed_layout(), lambda, direction), 0) << "coordinate " << i;
  }
}

TEST(LeastEigenvalue, IsTheLeastOfAllCones) {
  Numbers numbers(9);
  for (int round = 0; round < 30; ++round) {
    const VectorXd s = numbers.vector(mixed_layout().dimension);
    double least = s.head(mixed_layout().rows).minCoeff();
    for (const Part& part : mixed_layout().parts) {
      least = std::min(least, symmetric_eigenvalues(matrix_of(part, s))[0]);
    }
    EXPECT_NEAR(least_eigenvalue(mixed_layout(), s), least, 1e-13);
  }
}

TEST(LeastEigenvalue, IsAsMuchOfTheUnitAsKeepsAPointInside) {
  Numbers numbers(10);
  for (int round = 0; round < 30; ++round) {
    const VectorXd s = numbers.vector(mixed_layout().dimension);
    const double least = least_eigenvalue(mixed_layout(), s);
    EXPECT_TRUE(is_inside(s + (1e-9 - least) * unit(mixed_layout())));
    EXPECT_FALSE(is_inside(s - (1e-9 + least) * unit(mixed_layout())));
  }
}

}  // namespace
}  // namespace sdpsol::cones
