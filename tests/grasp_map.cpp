#include "tests/grasp_map.h"

#include <algorithm>
#include <cmath>

namespace grasp_map {
namespace {

Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Vector& a, const Vector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

}  // namespace

std::array<double, 6> wrench(const std::vector<Contact>& contacts,
                             const std::vector<double>& forces) {
  std::array<double, 6> sum = {};
  auto component = forces.begin();
  const auto add = [&](const Contact& contact, const Vector& direction) {
    const Vector torque = cross(contact.point, direction);
    for (std::size_t i = 0; i < 3; ++i) {
      sum[i] += *component * direction[i];
      sum[i + 3] += *component * torque[i];
    }
    ++component;
  };
  for (const Contact& contact : contacts) {
    if (contact.type == 3) {
      add(contact, contact.tangential_1);
      add(contact, contact.tangential_2);
    }
    add(contact, contact.normal);
  }
  return sum;
}

double frame_error(const Contact& contact) {
  const Vector third = cross(contact.tangential_1, contact.tangential_2);
  double error = std::max(std::abs(dot(contact.tangential_1, contact.tangential_1) - 1),
                          std::abs(dot(contact.tangential_2, contact.tangential_2) - 1));
  for (std::size_t i = 0; i < 3; ++i)
    error = std::max(error, std::abs(third[i] - contact.normal[i]));
  return error;
}

}  // namespace grasp_map
