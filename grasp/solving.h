// Which base of the nullspace the solver is asked with.
#pragma once

#include <Eigen/Core>
#include <optional>

#include "grasp/nullspace.h"
#include "grasp/reason.h"
#include "grasp/squeezes.h"
#include "grasp/unit_road.h"

namespace grasp {

/// What the solver said, and which base it was given.
struct Solved {
  Eigen::MatrixXd base;
  UnitAnswer found;
  Heading heading;
  /// The contacts that a second base was made for, where the first one proved nothing.
  std::optional<Squeeze> squeeze;
};

/// @param space of the grasp's map, not of nullity 0. @throws AskError.
Solved solve(UnitRoad& road, const Grasp& grasp, const Inquiry& inquiry, const Nullspace& space);

}  // namespace grasp
