// One map makes a point and its multiplier look the same, in every kind of cone.
#include "solver/engine/cones/nt_scaling.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solver/engine/cones/test_cones.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;
using testing::matrix_of;
using testing::mixed_layout;
using testing::Numbers;

using Map = void (NtScaling::*)(VectorXd&) const;

VectorXd mapped(const NtScaling& scaling, Map map, VectorXd v) {
  (scaling.*map)(v);
  return v;
}

const Map kScaleTransposed = &NtScaling::scale_transposed;
const Map kScale = &NtScaling::scale;
const Map kUnscale = &NtScaling::unscale;
const Map kUnscaleTransposed = static_cast<Map>(&NtScaling::unscale_transposed);

/// The scaling of some random points.
class RandomScaling {
 public:
  explicit RandomScaling(Numbers& numbers)
      : s(numbers.inside(mixed_layout())),
        z(numbers.inside(mixed_layout())),
        scaling(mixed_layout()) {
    EXPECT_TRUE(scaling.update(s, z));
  }
  const VectorXd s;
  const VectorXd z;
  NtScaling scaling;
};

TEST(NtScaling, MakesAPointAndItsMultiplierTheSame) {
  Numbers numbers(2);
  for (int round = 0; round < 40; ++round) {
    const RandomScaling random(numbers);
    const VectorXd& lambda = random.scaling.lambda();
    const double tolerance = 1e-9 * lambda.norm();
    EXPECT_LE((mapped(random.scaling, kScale, random.z) - lambda).norm(), tolerance) << round;
    EXPECT_LE((mapped(random.scaling, kUnscaleTransposed, random.s) - lambda).norm(), tolerance)
        << round;
  }
}

TEST(NtScaling, TheScaledPointLiesInTheConesWithTheSameGap) {
  Numbers numbers(3);
  for (int round = 0; round < 40; ++round) {
    const RandomScaling random(numbers);
    const VectorXd& lambda = random.scaling.lambda();
    EXPECT_GT(least_eigenvalue(mixed_layout(), lambda), 0);
    EXPECT_NEAR(lambda.squaredNorm(), random.s.dot(random.z), 1e-10 * lambda.squaredNorm());
    for (const Part& part : mixed_layout().parts) {
      if (part.is_second_order()) continue;
      const MatrixXd block = matrix_of(part, lambda);
      EXPECT_EQ(block, MatrixXd(block.diagonal().asDiagonal()));
    }
  }
}

TEST(NtScaling, MapsUndoEachOther) {
  Numbers numbers(4);
  for (int round = 0; round < 20; ++round) {
    const RandomScaling random(numbers);
    const VectorXd v = numbers.vector(mixed_layout().dimension);
    const NtScaling& scaling = random.scaling;
    const auto there_and_back = [&](Map there, Map back) {
      const VectorXd far = mapped(scaling, there, v);
      return (mapped(scaling, back, far) - v).norm() / (v.norm() + far.norm());
    };
    EXPECT_LE(there_and_back(kScale, kUnscale), 1e-9);
    EXPECT_LE(there_and_back(kUnscale, kScale), 1e-9);
    EXPECT_LE(there_and_back(kScaleTransposed, kUnscaleTransposed), 1e-9);
    EXPECT_LE(there_and_back(kUnscaleTransposed, kScaleTransposed), 1e-9);
  }
}

TEST(NtScaling, MapsAreAdjointToTheirTransposes) {
  Numbers numbers(5);
  for (int round = 0; round < 20; ++round) {
    const RandomScaling random(numbers);
    const VectorXd a = numbers.vector(mixed_layout().dimension);
    const VectorXd b = numbers.vector(mixed_layout().dimension);
    const auto difference = [&](Map map, Map transposed) {
      const VectorXd image = mapped(random.scaling, map, a);
      return std::fabs(image.dot(b) - a.dot(mapped(random.scaling, transposed, b))) /
             (image.norm() * b.norm());
    };
    EXPECT_LE(difference(kScale, kScaleTransposed), 1e-12);
    EXPECT_LE(difference(kUnscale, kUnscaleTransposed), 1e-12);
  }
}

TEST(NtScaling, IsTheSquareRootOfAQuotientForRows) {
  VectorXd s = unit(mixed_layout());
  VectorXd z = unit(mixed_layout());
  s[1] = 8;
  z[1] = 2;
  NtScaling scaling(mixed_layout());
  ASSERT_TRUE(scaling.update(s, z));
  EXPECT_DOUBLE_EQ(scaling.lambda()[1], 4);
  EXPECT_DOUBLE_EQ(scaling.inverse_row(1), 0.5);
  EXPECT_EQ(scaling.inverse_rows().size(), mixed_layout().rows);
  EXPECT_DOUBLE_EQ(scaling.inverse_rows()[1], 0.5);
}

TEST(NtScaling, TheIdentityChangesNothing) {
  Numbers numbers(6);
  NtScaling scaling(mixed_layout());
  ASSERT_TRUE(scaling.update(numbers.inside(mixed_layout()), numbers.inside(mixed_layout())));
  scaling.set_identity();
  const VectorXd v = numbers.vector(mixed_layout().dimension);
  for (const Map map : {kScale, kScaleTransposed, kUnscale, kUnscaleTransposed}) {
    EXPECT_LE((mapped(scaling, map, v) - v).norm(), 1e-14);
  }
}

TEST(NtScaling, MapsColumnsAsItMapsVectors) {
  Numbers numbers(7);
  const RandomScaling random(numbers);
  for (std::size_t p = 0; p < mixed_layout().parts.size(); ++p) {
    const Part& part = mixed_layout().parts[p];
    // Fewer, as many and more than there are coordinates.
    for (const Index count : {Index{1}, part.dimension, part.dimension + 1, 3 * part.dimension}) {
      const MatrixXd columns = numbers.matrix(part.dimension, count);
      MatrixXd scaled = columns;
      random.scaling.unscale_transposed(p, scaled);
      for (Index j = 0; j < count; ++j) {
        VectorXd v = VectorXd::Zero(mixed_layout().dimension);
        v.segment(part.first, part.dimension) = columns.col(j);
        const VectorXd one = mapped(random.scaling, kUnscaleTransposed, v);
        EXPECT_LE((one.segment(part.first, part.dimension) - scaled.col(j)).norm(),
                  1e-13 * one.norm());
      }
    }
  }
}

/// No scaling, with v as the point, as the multiplier, or as both.
void expect_none(const VectorXd& v, const char* what) {
  const VectorXd e = unit(mixed_layout());
  NtScaling scaling(mixed_layout());
  EXPECT_FALSE(scaling.update(v, e)) << what;
  EXPECT_FALSE(scaling.update(e, v)) << what;
  EXPECT_FALSE(scaling.update(v, v)) << what;
}

TEST(NtScaling, ThereIsNoneOnTheBorderOrOutside) {
  for (const double value : {0.0, -1.0}) {
    VectorXd v = unit(mixed_layout());
    v[mixed_layout().rows - 1] = value;
    expect_none(v, "row");
  }
  for (const Part& part : mixed_layout().parts) {
    VectorXd v = unit(mixed_layout());
    auto here = v.segment(part.first, part.dimension);
    if (part.is_second_order()) {
      here[0] = -1;
      expect_none(v, "the opposite of the cone");
      here[0] = 0;
      expect_none(v, "nothing");
      here[0] = here[1] = 1;
      expect_none(v, "border");
      here[0] = 1 - 1e-15;
      expect_none(v, "outside");
    } else {
      pack(MatrixXd::Ones(part.order, part.order), here);
      expect_none(v, "singular");
      here.setZero();
      expect_none(v, "nothing");
      pack(-MatrixXd::Identity(part.order, part.order), here);
      expect_none(v, "negative");
    }
  }
}

TEST(NtScaling, ThereIsNoneOfWhatIsNotANumber) {
  for (Index i = 0; i < mixed_layout().dimension; ++i) {
    for (const double odd : {std::nan(""), HUGE_VAL}) {
      VectorXd v = unit(mixed_layout());
      v[i] = odd;
      expect_none(v, "not finite");
    }
  }
}

}  // namespace
}  // namespace sdpsol::cones
