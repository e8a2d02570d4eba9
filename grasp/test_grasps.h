// Grasps that the tests of this folder share.
#pragma once

#include <initializer_list>
#include <random>
#include <string>

#include "grasp/geometry.h"
#include "grasp/grasp.h"

namespace grasp {

inline Contact contact_at(const Vector& point, const Vector& normal,
                          ContactType type = ContactType::kFriction) {
  Contact contact;
  contact.point = point;
  contact.frame = make_frame(normal, std::nullopt);
  contact.type = type;
  contact.friction = type == ContactType::kFriction ? 0.5 : 0;
  contact.bounds.assign(contact.components(), {-10, 10});
  contact.bounds.back().lower = 0;
  return contact;
}

inline Grasp grasp_of(std::initializer_list<Contact> contacts) {
  Grasp grasp;
  grasp.contacts = contacts;
  grasp.centre = Vector::Zero();
  return grasp;
}

inline Contact named(Contact contact, const std::string& name) {
  contact.name = name;
  return contact;
}

/// Thumb and index face each other along x, 40 mm apart.
inline Grasp pinch() {
  return grasp_of({named(contact_at({-0.02, 0, 0}, {1, 0, 0}), "thumb"),
                   named(contact_at({0.02, 0, 0}, {-1, 0, 0}), "index")});
}

/// Every third contact is frictionless.
inline Grasp random_grasp(std::mt19937& random, int contacts, double size) {
  std::uniform_real_distribution<double> number(-1, 1);
  const auto vector = [&] { return Vector(number(random), number(random), number(random)); };
  Grasp grasp;
  for (int i = 0; i < contacts; ++i)
    grasp.contacts.push_back(
        contact_at(size * vector(), vector(),
                   i % 3 == 2 ? ContactType::kFrictionless : ContactType::kFriction));
  grasp.centre = size * vector();
  return grasp;
}

}  // namespace grasp
