// A grasp as people know it: points of contact on an object, with normals,
// friction and limits of force.
#pragma once

#include <Eigen/Core>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace grasp {

using Vector = Eigen::Vector3d;

enum class ContactType {
  kFrictionless,  ///< one force component, along the normal
  kFriction,      ///< three: two tangential ones, then the normal one
};

/// Right-handed and orthonormal, in world coordinates.
struct Frame {
  Vector tangential_1;
  Vector tangential_2;
  Vector normal;  ///< into the object
};

/// Of a force component, in newtons.
struct Bounds {
  double lower = 0;
  double upper = 0;
};

struct Contact {
  /// As the file has it; empty if it has none.
  std::string name;
  Vector point;  ///< in metres, world coordinates
  Frame frame;
  ContactType type = ContactType::kFriction;
  /// Coulomb's coefficient; 0 where the contact is frictionless.
  double friction = 0;
  /// One per force component, in their order.
  std::vector<Bounds> bounds;

  /// How many force components the contact has: 1 or 3.
  [[nodiscard]] std::size_t components() const { return type == ContactType::kFriction ? 3 : 1; }
};

/// The object is the convex hull of these points, in metres.
struct PointHull {
  std::vector<Vector> points;
};

/// The object is a ball; lengths in metres.
struct BallHull {
  Vector centre;
  double radius = 0;
};

struct Grasp {
  std::string name;
  /// At least one. Numbered from 0.
  std::vector<Contact> contacts;
  /// Torques are taken about this point: the object's centre, or the centroid of
  /// the contacts where none is given.
  Vector centre;
  /// For pictures only.
  std::optional<std::variant<PointHull, BallHull>> hull;

  /// Of all contacts together.
  [[nodiscard]] std::size_t components() const;

  /// How people address a contact: its name, or its number where it has none.
  [[nodiscard]] std::string label(std::size_t contact) const;
};

}  // namespace grasp
