// A grasp in the form in which the unit's methods take it.
#pragma once

#include <Eigen/Core>
#include <cstdint>
#include <vector>

#include "grasp/grasp.h"

namespace grasp {

/// Numbers in single precision, as the host's ports hold them.
struct UnitInputs {
  std::vector<float> base;          ///< k x nullity, row after row
  std::vector<float> friction;      ///< one per contact; 0 of a frictionless one
  std::vector<float> bounds;        ///< lower and upper of each force component in turn
  std::vector<std::int32_t> types;  ///< one per contact: 1 frictionless, 3 with friction
};

/// Bounds and friction are rounded outwards to the six digits that the unit's texts carry,
/// so that what is proven impossible for them is impossible for the grasp. Forces that only
/// the rounding allows are for contact_forces() to tell.
/// @param base as nullspace() gives it.
UnitInputs unit_inputs(const Grasp& grasp, const Eigen::MatrixXd& base);

}  // namespace grasp
