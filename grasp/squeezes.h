// What two contacts can do alone.
#pragma once

#include <Eigen/Core>
#include <vector>

#include "grasp/grasp.h"

namespace grasp {

/// A force along the line between two contacts, inside both cones.
struct Squeeze {
  std::size_t first;
  std::size_t second;
  /// One per force component of the grasp, of length 1, exactly 0 at all other contacts.
  /// Its normal forces are positive.
  Eigen::VectorXd forces;
};

/// All pairs of contacts with friction that can squeeze the object between them,
/// whatever their bounds. In the order of the contacts.
std::vector<Squeeze> squeezes(const Grasp& grasp);

}  // namespace grasp
