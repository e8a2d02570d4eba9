#include "grasp/picture/hull.h"

#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace grasp::picture {
namespace {

std::vector<Vector> box(double x, double y, double z) {
  std::vector<Vector> points;
  for (unsigned k = 0; k < 8; ++k) {
    points.emplace_back((k & 1U) != 0 ? x : 0, (k & 2U) != 0 ? y : 0, (k & 4U) != 0 ? z : 0);
  }
  return points;
}

TEST(ConvexHull, LeavesOutWhatIsInsideOnAnEdgeOrTwice) {
  const std::vector<Spot> hull =
      convex_hull({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {1, 1}, {1, 0}, {2, 2}, {0, 1}});
  EXPECT_EQ(hull, (std::vector<Spot>{{0, 0}, {2, 0}, {2, 2}, {0, 2}}));
}

TEST(ConvexHull, IsALineOrASpotWhereNothingIsInside) {
  EXPECT_EQ(convex_hull({{0, 0}, {1, 1}, {3, 3}, {2, 2}}).size(), 2U);
  EXPECT_EQ(convex_hull({{1, 1}, {1, 1}}).size(), 1U);
  EXPECT_TRUE(convex_hull({}).empty());
}

TEST(ConvexHull, HasAllSpotsOnOneSideOfEachEdge) {
  std::mt19937 random(3);
  std::normal_distribution<double> part;
  for (int round = 0; round < 50; ++round) {
    std::vector<Spot> spots;
    spots.reserve(30);
    for (int k = 0; k < 30; ++k) spots.emplace_back(part(random), part(random));
    const std::vector<Spot> hull = convex_hull(spots);
    for (std::size_t k = 0; k < hull.size(); ++k) {
      const Spot along = hull[(k + 1) % hull.size()] - hull[k];
      for (const Spot& spot : spots) {
        const Spot to = spot - hull[k];
        EXPECT_GE(along.x() * to.y() - along.y() * to.x(), -1e-7);
      }
    }
  }
}

TEST(HullEdges, OfABoxAreTwelveBetweenTwoFacesEachAtAnySize) {
  for (const double size : {1e-4, 1.0, 100.0}) {
    const std::vector<Edge> edges = hull_edges(box(size, 2 * size, 0.5 * size));
    EXPECT_EQ(edges.size(), 12U);
    for (const Edge& edge : edges) {
      ASSERT_EQ(edge.normals.size(), 2U);
      EXPECT_NEAR(edge.normals[0].dot(edge.normals[1]), 0, 1e-12);
    }
  }
}

TEST(HullEdges, PointOutward) {
  std::vector<Vector> points = box(1, 1, 1);
  points.emplace_back(0.5, 0.5, 0.5);
  points.emplace_back(0.5, 0.5, 1);
  const Vector middle(0.5, 0.5, 0.5);
  const std::vector<Edge> edges = hull_edges(points);
  EXPECT_EQ(edges.size(), 12U) << "points inside and in a face are no corners";
  for (const Edge& edge : edges) {
    for (const Vector& normal : edge.normals) {
      EXPECT_GT(normal.dot(points[edge.from] - middle), 0.4);
    }
  }
}

TEST(HullEdges, AreNoneOfAFlatObject) {
  EXPECT_TRUE(hull_edges({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}).empty());
  EXPECT_TRUE(hull_edges({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}}).empty());
  EXPECT_TRUE(hull_edges(std::vector<Vector>(5, Vector(1, 2, 3))).empty());
}

TEST(HullEdges, OfPointsInGeneralPositionSatisfyEulersFormula) {
  std::mt19937 random(4);
  std::normal_distribution<double> part;
  std::vector<Vector> points;
  points.reserve(20);
  for (int k = 0; k < 20; ++k) {
    points.push_back(Vector(part(random), part(random), part(random)).normalized());
  }
  EXPECT_EQ(hull_edges(points).size(), 3U * 20 - 6);
}

}  // namespace
}  // namespace grasp::picture
