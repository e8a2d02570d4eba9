// What forces mean at the contacts: in world coordinates, inside cones and bounds.
#pragma once

#include <Eigen/Core>
#include <vector>

#include "grasp/answer.h"
#include "grasp/grasp.h"

namespace grasp {

/// @param forces one per force component of the grasp, in newtons.
/// @return one per contact, without epsilons.
std::vector<ContactForce> contact_forces(const Grasp& grasp, const Eigen::VectorXd& forces);

}  // namespace grasp
