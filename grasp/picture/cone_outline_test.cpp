#include "grasp/picture/cone_outline.h"

#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace grasp::picture {
namespace {

constexpr double kSlant = 46;

const Fit kOnePixel{.scale = 1, .has_scale = true};

Projection front() {
  return {views()[kFront], kOnePixel, Spot::Zero()};
}

TEST(ConeOutline, IsATriangleWithTheWholeAngleSeenFromTheSide) {
  const double friction = 0.4;
  const ConeOutline cone = outline(front(), Vector::Zero(), Vector::UnitX(), friction, kSlant);
  ASSERT_TRUE(cone.tangents);
  EXPECT_NEAR(cone.minor, 0, 1e-12);
  const Spot left = cone.left - cone.apex;
  const Spot right = cone.right - cone.apex;
  EXPECT_NEAR(left.norm(), kSlant, 1e-9);
  EXPECT_NEAR(right.norm(), kSlant, 1e-9);
  EXPECT_NEAR(std::acos(left.dot(right) / (kSlant * kSlant)), 2 * std::atan(friction), 1e-9);
}

TEST(ConeOutline, IsACircleSeenAlongItsAxis) {
  const ConeOutline away = outline(front(), Vector::Zero(), Vector::UnitY(), 0.5, kSlant);
  EXPECT_FALSE(away.tangents);
  EXPECT_FALSE(away.open_to_viewer);
  EXPECT_NEAR(away.major, kSlant * std::sin(std::atan(0.5)), 1e-9);
  EXPECT_NEAR(away.minor, away.major, 1e-9);
  EXPECT_NEAR((away.centre - away.apex).norm(), 0, 1e-9);
  EXPECT_TRUE(outline(front(), Vector::Zero(), -Vector::UnitY(), 0.5, kSlant).open_to_viewer);
}

// The rim, point by point in space and then projected, is the ellipse; and seen from
// the apex it turns exactly from one tangent to the other.
TEST(ConeOutline, AgreesWithTheProjectedRim) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> part(-1, 1);
  int with_tangents = 0;
  for (int round = 0; round < 90; ++round) {
    const Vector axis = Vector(part(random), part(random), part(random)).normalized();
    const double friction = 0.05 + std::abs(part(random));
    const Projection view(views()[static_cast<std::size_t>(round) % 3], kOnePixel, Spot::Zero());
    const Vector apex(3, 4, 5);
    const ConeOutline cone = outline(view, apex, axis, friction, kSlant);
    const double angle = std::atan(friction);
    const Vector first = axis.unitOrthogonal();
    const Vector second = axis.cross(first);
    const double turn = cone.turn * std::numbers::pi / 180;
    const Spot e(std::cos(turn), std::sin(turn));
    double least = 0;
    double most = 0;
    for (int k = 0; k < 360; ++k) {
      const double t = k * std::numbers::pi / 180;
      const Vector rim =
          apex + kSlant * (std::cos(angle) * axis +
                           std::sin(angle) * (std::cos(t) * first + std::sin(t) * second));
      const Spot spot = view.at(rim);
      const Spot in_ellipse = spot - cone.centre;
      const double along = in_ellipse.dot(e);
      const double across = in_ellipse.dot(Spot(-e.y(), e.x()));
      if (cone.minor > 1) {
        EXPECT_NEAR(std::pow(along / cone.minor, 2) + std::pow(across / cone.major, 2), 1, 1e-6);
      }
      const Spot seen = spot - cone.apex;
      const double bearing = std::atan2(e.x() * seen.y() - e.y() * seen.x(), seen.dot(e));
      least = std::min(least, bearing);
      most = std::max(most, bearing);
    }
    if (!cone.tangents) {
      EXPECT_GT(most - least, std::numbers::pi) << "the apex is inside, the rim goes around it";
      continue;
    }
    ++with_tangents;
    const auto bearing_of = [&](const Spot& spot) {
      const Spot seen = spot - cone.apex;
      return std::atan2(e.x() * seen.y() - e.y() * seen.x(), seen.dot(e));
    };
    EXPECT_NEAR(bearing_of(cone.left), least, 1e-3);
    EXPECT_NEAR(bearing_of(cone.right), most, 1e-3);
  }
  EXPECT_GT(with_tangents, 30);
  EXPECT_LT(with_tangents, 88);
}

}  // namespace
}  // namespace grasp::picture
