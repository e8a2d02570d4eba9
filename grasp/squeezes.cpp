#include "grasp/squeezes.h"

#include <optional>

#include "grasp/geometry.h"

namespace grasp {
namespace {

// A force of length 1 in the contact's frame; none if it is not inside its cone.
std::optional<Vector> inside(const Contact& contact, const Vector& force) {
  if (contact.type != ContactType::kFriction) return {};
  const Vector local = directions(contact).transpose() * force;
  if (!(contact.friction * local.z() > local.head<2>().norm())) return {};
  return local;
}

}  // namespace

std::vector<Squeeze> squeezes(const Grasp& grasp) {
  std::vector<Eigen::Index> starts;
  Eigen::Index components = 0;
  for (const Contact& contact : grasp.contacts) {
    starts.push_back(components);
    components += static_cast<Eigen::Index>(contact.components());
  }
  std::vector<Squeeze> found;
  for (std::size_t i = 0; i < grasp.contacts.size(); ++i) {
    for (std::size_t j = i + 1; j < grasp.contacts.size(); ++j) {
      const Contact& first = grasp.contacts[i];
      const Contact& second = grasp.contacts[j];
      const Vector along = (second.point - first.point).stableNormalized();
      const auto at_first = inside(first, along);
      const auto at_second = inside(second, -along);
      if (!at_first || !at_second) continue;
      Eigen::VectorXd forces = Eigen::VectorXd::Zero(components);
      forces.segment<3>(starts[i]) = *at_first;
      forces.segment<3>(starts[j]) = *at_second;
      found.push_back({i, j, forces.normalized()});
    }
  }
  return found;
}

}  // namespace grasp
