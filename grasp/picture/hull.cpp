#include "grasp/picture/hull.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace grasp::picture {
namespace {

constexpr std::size_t kMaxPoints = 60;

double cross(const Spot& from, const Spot& a, const Spot& b) {
  return (a.x() - from.x()) * (b.y() - from.y()) - (a.y() - from.y()) * (b.x() - from.x());
}

/// Which of the spots are corners, in order around the hull (Andrew's monotone chain).
std::vector<std::size_t> corners(const std::vector<Spot>& spots) {
  std::vector<std::size_t> order(spots.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto before = [&](std::size_t a, std::size_t b) {
    return spots[a].x() != spots[b].x() ? spots[a].x() < spots[b].x() : spots[a].y() < spots[b].y();
  };
  std::sort(order.begin(), order.end(), before);
  const auto same = [&](std::size_t a, std::size_t b) { return spots[a] == spots[b]; };
  order.erase(std::unique(order.begin(), order.end(), same), order.end());
  if (order.size() < 3) return order;

  const double size = (spots[order.back()] - spots[order.front()]).norm();
  std::vector<std::size_t> chain;
  const auto go = [&](auto begin, auto end) {
    const std::size_t start = chain.size();
    for (auto at = begin; at != end; ++at) {
      while (chain.size() >= start + 2) {
        const Spot& last = spots[chain.back()];
        const double turn = cross(spots[chain[chain.size() - 2]], last, spots[*at]);
        if (turn > 1e-9 * size * (spots[*at] - last).norm()) break;
        chain.pop_back();
      }
      chain.push_back(*at);
    }
    chain.pop_back();
  };
  go(order.begin(), order.end());
  go(order.rbegin(), order.rend());
  return chain;
}

/// A plane that leaves all points on one side.
struct Face {
  Vector normal;
  std::vector<std::size_t> members;
};

std::optional<Face> face_through(const std::vector<Vector>& points, double size, std::size_t a,
                                 std::size_t b, std::size_t c) {
  const double tolerance = 1e-6 * size;
  Vector normal = (points[b] - points[a]).cross(points[c] - points[a]);
  if (normal.norm() <= tolerance * size) return std::nullopt;
  normal.normalize();
  Face face;
  bool above = false;
  bool below = false;
  for (std::size_t k = 0; k < points.size(); ++k) {
    const double distance = normal.dot(points[k] - points[a]);
    if (std::abs(distance) <= tolerance) {
      face.members.push_back(k);
    } else {
      (distance > 0 ? above : below) = true;
      if (above && below) return std::nullopt;
    }
  }
  if (above == below) return std::nullopt;
  face.normal = above ? Vector(-normal) : normal;
  return face;
}

void add_edges(std::vector<Edge>& edges, const Face& face, const std::vector<Vector>& points) {
  const Vector right = face.normal.unitOrthogonal();
  const Vector up = face.normal.cross(right);
  std::vector<Spot> spots;
  for (const std::size_t member : face.members) {
    const Vector from_first = points[member] - points[face.members.front()];
    spots.emplace_back(from_first.dot(right), from_first.dot(up));
  }
  const std::vector<std::size_t> around = corners(spots);
  for (std::size_t k = 0; k < around.size(); ++k) {
    const std::size_t a = face.members[around[k]];
    const std::size_t b = face.members[around[(k + 1) % around.size()]];
    const auto [from, to] = std::minmax(a, b);
    const auto known = std::find_if(
        edges.begin(), edges.end(),
        [from = from, to = to](const Edge& e) { return e.from == from && e.to == to; });
    if (known == edges.end()) {
      edges.push_back({.from = from, .to = to, .normals = {face.normal}});
    } else {
      known->normals.push_back(face.normal);
    }
  }
}

}  // namespace

std::vector<Spot> convex_hull(std::vector<Spot> spots) {
  std::vector<Spot> hull;
  for (const std::size_t corner : corners(spots)) hull.push_back(spots[corner]);
  return hull;
}

std::vector<Edge> hull_edges(const std::vector<Vector>& points) {
  std::vector<Edge> edges;
  if (points.size() < 4 || points.size() > kMaxPoints) return edges;
  double size = 0;
  for (const Vector& point : points) size = std::max(size, (point - points.front()).norm());
  std::vector<std::vector<std::size_t>> seen;
  for (std::size_t a = 0; a < points.size(); ++a) {
    for (std::size_t b = a + 1; b < points.size(); ++b) {
      for (std::size_t c = b + 1; c < points.size(); ++c) {
        const std::optional<Face> face = face_through(points, size, a, b, c);
        if (!face || std::find(seen.begin(), seen.end(), face->members) != seen.end()) continue;
        seen.push_back(face->members);
        add_edges(edges, *face, points);
      }
    }
  }
  return edges;
}

}  // namespace grasp::picture
