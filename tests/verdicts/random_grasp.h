// Random grasps whose answer is known before any solver is asked.
#pragma once

#include <Eigen/Core>
#include <random>
#include <vector>

namespace sdpsol::testing {

/// A grasp in the form in which the unit's problem builders take it.
struct RandomGrasp {
  std::vector<double> base;      ///< nullspace base, row after row
  std::vector<int> types;        ///< 1 or 3
  std::vector<double> friction;  ///< one per contact
  std::vector<double> bounds;    ///< lower, upper per force component
  int columns = 0;               ///< n_z
};

struct GraspSize {
  int contacts = 4;
  double largest_force = 10;  ///< normal 0..F, tangential -F..F
  double length = 1;          ///< the unit of length: 1 for metres, 1000 for millimetres
  bool frictionless_too = true;
};

struct GraspContact {
  Eigen::Vector3d point;
  Eigen::Vector3d normal;  ///< of length 1, into the object
  double friction = 0;
  int type = 3;
};

/// The grasp of given contacts; the directions of their tangents are drawn.
RandomGrasp grasp_of(std::mt19937& random, const std::vector<GraspContact>& contacts,
                     const GraspSize& size);

/// A grasp with a planted internal force: forces that balance are drawn first,
/// then every normal is tilted away from its force by less than the friction
/// angle, so that the force lies inside every cone.
RandomGrasp grasp_with_internal_force(std::mt19937& random, const GraspSize& size);

/// A grasp without internal force: all contacts push a common twist forward. For
/// a twist (v, w) every normal is drawn around the velocity v + w x p of its
/// point, so closely that every force of the cone has positive power on it; the
/// power of balanced forces is 0, so only the zero force is left.
RandomGrasp grasp_without_internal_force(std::mt19937& random, const GraspSize& size);

}  // namespace sdpsol::testing
