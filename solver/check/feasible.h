// What a point proves about a problem.
#pragma once

#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol {

/// How much a strict inequality must leave at the point.
enum class RoomAsked {
  kForVerdict,      ///< F(v) - kRoom*diag(T(v)) positive definite: a verdict may rest on it
  kBeyondRounding,  ///< F(v) positive definite beyond rounding: good enough to be reported
};

enum class PointResult {
  kProven,         ///< feasible
  kOnlyWithin1e8,  ///< a non-strict matrix inequality needs 1e-8*diag(T) added
  kNotProven,
};

struct FeasibleCheck {
  PointResult result = PointResult::kNotProven;
  /// The point, moved onto the equations if there were any.
  std::vector<double> point;
  /// An exact solution exists with |v'_k - point_k| <= distance[k]; empty if the
  /// point itself is one.
  std::vector<double> distance;
};

/// Checks a point against the whole problem, the box included.
///
/// Every strict inequality must hold with the room asked. Equations, and
/// non-strict rows without room, are taken as equations: the point is moved onto
/// all of them by least squares, and everything else must hold for every point
/// within the proven distance to an exact solution. A non-strict matrix
/// inequality without room must be positive definite after exact null vectors
/// common to its coefficients are split off.
/// Cost: the terms of the problem; with equations the cube of their number.
FeasibleCheck check_point(const Problem& problem, std::vector<double> point,
                          RoomAsked asked = RoomAsked::kForVerdict);

}  // namespace sdpsol
