// Frames at contacts, and the grasp map.
#pragma once

#include <Eigen/Core>
#include <optional>
#include <vector>

#include "grasp/grasp.h"

namespace grasp {

/// The frame of a contact.
/// @param normal not zero, any length.
/// @param tangent not along the normal, any length; its part along the normal is taken
/// away. None: the world axis that the normal leans on least, the first of several,
/// gives tangential 1.
Frame make_frame(const Vector& normal, const std::optional<Vector>& tangent);

/// The directions of the force components of a contact, in their order, as columns:
/// 3 x 3, or 3 x 1 (the normal) of a frictionless one.
Eigen::Matrix3Xd directions(const Contact& contact);

/// Force above torque; a column for each force component.
using GraspMap = Eigen::Matrix<double, 6, Eigen::Dynamic>;

/// The grasp map G, 6 x k, in world coordinates: G f is the wrench on the object that
/// the forces f of all k components exert, force above torque about grasp.centre.
/// Contact i at p_i gives the columns (d; (p_i - centre) x d), one for each of its
/// directions d.
/// Sources: R. Murray, Z. Li, S. Sastry, A Mathematical Introduction to Robotic
/// Manipulation, ch. 5, on grasp statics, where torques are about the origin of the
/// object's frame; D. Prattichizzio, J. Trinkle, Grasping, Springer Handbook of
/// Robotics, whose contact frames have the normal first: here it is last.
GraspMap grasp_map(const Grasp& grasp);

/// Another map with the same nullspace, as its rank is judged: torques are about the
/// centroid of the contacts and divided by the size of the grasp, the largest distance of
/// a contact from there. So it does not depend on units of length or on grasp.centre.
GraspMap weighed_grasp_map(const Grasp& grasp);

/// Of the points of contact.
Vector centroid(const std::vector<Contact>& contacts);

}  // namespace grasp
