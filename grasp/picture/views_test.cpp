#include "grasp/picture/views.h"

#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <cmath>
#include <random>

namespace grasp::picture {
namespace {

constexpr double kLargest = 270;
constexpr double kSmallest = 130;

std::vector<Item> points(const std::vector<Vector>& at) {
  std::vector<Item> items;
  items.reserve(at.size());
  for (const Vector& point : at) items.push_back({.point = point, .offset = Vector::Zero()});
  return items;
}

TEST(Views, LookAtARightHandedWorld) {
  for (const View& view : views()) {
    const Vector right = Vector::Unit(view.right);
    const Vector up = Vector::Unit(view.up);
    EXPECT_EQ(right.cross(up), view.to_viewer) << view.name;
  }
}

TEST(Projection, PutsOneCoordinateIntoOneLineOfTheSheet) {
  const Fit scale = fit(points({{0, 0, 0}, {3, 2, 1}}), kLargest, kSmallest);
  const Projection front(views()[kFront], scale, {10, 900});
  const Projection top(views()[kTop], scale, {10, 400});
  const Projection side(views()[kSide], scale, {500, 900});
  const Vector point(1, 0.5, 0.25);
  EXPECT_DOUBLE_EQ(front.at(point).x(), top.at(point).x());
  EXPECT_DOUBLE_EQ(front.at(point).y(), side.at(point).y());
  EXPECT_DOUBLE_EQ(side.at(point).x() - 500, 400 - top.at(point).y());
}

TEST(Fit, FillsTheLargestSizeAndKeepsOneScale) {
  const Fit scale = fit(points({{0, 0, 0}, {3, 2, 0}}), kLargest, kSmallest);
  EXPECT_TRUE(scale.has_scale);
  EXPECT_NEAR(scale.scale, kLargest / 3, 1e-6);
  EXPECT_NEAR(scale.size.x(), kLargest, 1e-6);
  EXPECT_NEAR(scale.size.y(), kLargest * 2 / 3, 1e-6);
  EXPECT_EQ(scale.size.z(), kSmallest);
}

TEST(Fit, HoldsEveryItemWhateverItsSize) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> part(-1, 1);
  for (int round = 0; round < 200; ++round) {
    const double size = std::pow(10, 6 * part(random));
    std::vector<Item> items;
    for (int k = 0; k < 6; ++k) {
      const Vector point(part(random), part(random), round % 3 == 0 ? 0.5 : part(random));
      const Vector offset(part(random), part(random), part(random));
      items.push_back({.point = size * point, .offset = 80 * offset});
    }
    const Fit scale = fit(items, kLargest, kSmallest);
    ASSERT_TRUE(scale.has_scale);
    for (const Item& item : items) {
      const Vector at = scale.scale * (item.point - scale.middle) + scale.shift + item.offset;
      EXPECT_GE(at.minCoeff(), -1e-6);
      EXPECT_LE((at - scale.size).maxCoeff(), 1e-6);
      EXPECT_LE(scale.size.maxCoeff(), kLargest + 1e-6);
    }
  }
}

TEST(Fit, HasNoScaleWhereAllPointsAreOne) {
  const Fit scale = fit(points({{1, 2, 3}, {1, 2, 3}}), kLargest, kSmallest);
  EXPECT_FALSE(scale.has_scale);
  const Projection front(views()[kFront], scale, {0, kSmallest});
  EXPECT_EQ(front.at({1, 2, 3}), Spot(kSmallest / 2, kSmallest / 2));
}

TEST(Fit, TakesNoRoundingForALength) {
  const double next = std::nextafter(100.0, 200.0);
  EXPECT_FALSE(fit(points({{100, 0, 0}, {next, 0, 0}}), kLargest, kSmallest).has_scale);
}

}  // namespace
}  // namespace grasp::picture
