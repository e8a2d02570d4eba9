// The outline of an object that is given by points, and its edges.
#pragma once

#include <cstddef>
#include <vector>

#include "grasp/picture/views.h"

namespace grasp::picture {

/// The corners of the convex hull, in order around it; fewer than three where all spots
/// are on a line.
std::vector<Spot> convex_hull(std::vector<Spot> spots);

/// Between two of the points.
struct Edge {
  std::size_t from = 0;
  std::size_t to = 0;
  /// Outward, of the faces that meet there.
  std::vector<Vector> normals;
};

/// The edges of the convex hull of points in space: of those faces that have an inside, so
/// none where the points are in a plane. No edges either for more points than 60: the search
/// looks at all planes through three of them, and such a hull is a web of lines.
std::vector<Edge> hull_edges(const std::vector<Vector>& points);

}  // namespace grasp::picture
