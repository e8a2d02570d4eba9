#include "grasp/geometry.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

namespace grasp {
namespace {

// How much longer than another component one must be to count as longer: a normal
// like (1, 1, 0) / sqrt(2) does not lean on one of two axes for its last digit's sake.
constexpr double kTie = 1e-9;

// The world axis that the normal leans on least, the first of several.
Vector least_axis(const Vector& normal) {
  Eigen::Index axis = 0;
  for (Eigen::Index i = 1; i < 3; ++i)
    if (std::abs(normal[i]) < std::abs(normal[axis]) - kTie) axis = i;
  return Vector::Unit(axis);
}

GraspMap map_about(const Grasp& grasp, const Vector& centre) {
  GraspMap map(6, static_cast<Eigen::Index>(grasp.components()));
  Eigen::Index column = 0;
  for (const Contact& contact : grasp.contacts) {
    const Vector arm = contact.point - centre;
    const Eigen::Matrix3Xd along = directions(contact);
    for (Eigen::Index k = 0; k < along.cols(); ++k, ++column) {
      map.col(column).head<3>() = along.col(k);
      map.col(column).tail<3>() = arm.cross(Vector(along.col(k)));
    }
  }
  return map;
}

}  // namespace

Frame make_frame(const Vector& normal, const std::optional<Vector>& tangent) {
  Frame frame;
  frame.normal = normal.stableNormalized();
  const Vector towards = (tangent ? *tangent : least_axis(frame.normal)).stableNormalized();
  // Twice: the rounding of the first time is what is left of the normal.
  frame.tangential_1 = towards - towards.dot(frame.normal) * frame.normal;
  frame.tangential_1.stableNormalize();
  frame.tangential_1 -= frame.tangential_1.dot(frame.normal) * frame.normal;
  frame.tangential_1.normalize();
  frame.tangential_2 = frame.normal.cross(frame.tangential_1);
  return frame;
}

Eigen::Matrix3Xd directions(const Contact& contact) {
  Eigen::Matrix3Xd columns(3, static_cast<Eigen::Index>(contact.components()));
  switch (contact.type) {
    case ContactType::kFriction:
      columns << contact.frame.tangential_1, contact.frame.tangential_2, contact.frame.normal;
      break;
    case ContactType::kFrictionless:
      columns << contact.frame.normal;
      break;
  }
  return columns;
}

GraspMap grasp_map(const Grasp& grasp) {
  return map_about(grasp, grasp.centre);
}

GraspMap weighed_grasp_map(const Grasp& grasp) {
  const Vector middle = centroid(grasp.contacts);
  GraspMap map = map_about(grasp, middle);
  double size = 0;
  for (const Contact& contact : grasp.contacts)
    size = std::max(size, (contact.point - middle).norm());
  if (size > 0) map.bottomRows<3>() /= size;
  return map;
}

Vector centroid(const std::vector<Contact>& contacts) {
  Vector sum = Vector::Zero();
  for (const Contact& contact : contacts) sum += contact.point;
  return sum / static_cast<double>(contacts.size());
}

}  // namespace grasp
