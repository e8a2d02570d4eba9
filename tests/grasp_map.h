// The grasp map from the geometry of the contacts: the tests' own way to the
// balance of forces, beside the bases that the example files carry.
#pragma once

#include <array>
#include <vector>

namespace grasp_map {

using Vector = std::array<double, 3>;

/// A contact in world coordinates. The frame (tangential 1, tangential 2,
/// inward normal) is right-handed and orthonormal.
struct Contact {
  Vector point;
  Vector normal;
  Vector tangential_1;
  Vector tangential_2;
  /// 1 = frictionless: its only force component is the normal one.
  int type = 3;
};

/// Force and torque about the origin (6 numbers) of contact forces in their frames.
/// @param forces one per force component, in the order of the contacts.
std::array<double, 6> wrench(const std::vector<Contact>& contacts,
                             const std::vector<double>& forces);

/// Largest deviation of a frame from a right-handed orthonormal one.
double frame_error(const Contact& contact);

}  // namespace grasp_map
