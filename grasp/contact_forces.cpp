#include "grasp/contact_forces.h"

#include <algorithm>
#include <limits>

#include "grasp/geometry.h"

namespace grasp {
namespace {

double cone_margin(const Contact& contact, const Vector& local) {
  switch (contact.type) {
    case ContactType::kFriction:
      return contact.friction * local.z() - local.head<2>().norm();
    case ContactType::kFrictionless:
      return local.z();
  }
  return 0;
}

double bound_margin(const Contact& contact, const Eigen::VectorXd& components) {
  double margin = std::numeric_limits<double>::infinity();
  Eigen::Index k = 0;
  for (const Bounds& bounds : contact.bounds) {
    margin = std::min({margin, components[k] - bounds.lower, bounds.upper - components[k]});
    ++k;
  }
  return margin;
}

}  // namespace

std::vector<ContactForce> contact_forces(const Grasp& grasp, const Eigen::VectorXd& forces) {
  std::vector<ContactForce> result;
  Eigen::Index first = 0;
  for (const Contact& contact : grasp.contacts) {
    const auto count = static_cast<Eigen::Index>(contact.components());
    const Eigen::VectorXd components = forces.segment(first, count);
    ContactForce force;
    force.local = Vector::Zero();
    force.local.tail(count) = components;
    force.world = directions(contact) * components;
    force.cone_margin = cone_margin(contact, force.local);
    force.bound_margin = bound_margin(contact, components);
    result.push_back(force);
    first += count;
  }
  return result;
}

}  // namespace grasp
