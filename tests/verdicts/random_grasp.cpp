#include "tests/verdicts/random_grasp.h"

#include <Eigen/Geometry>
#include <Eigen/QR>
#include <cmath>

namespace sdpsol::testing {
namespace {

using Eigen::MatrixXd;
using Eigen::Vector3d;

double uniform(std::mt19937& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

Vector3d direction(std::mt19937& random) {
  std::normal_distribution<double> normal;
  return Vector3d(normal(random), normal(random), normal(random)).normalized();
}

/// A unit vector at `angle` from the direction of `axis`.
Vector3d tilted(std::mt19937& random, const Vector3d& axis, double angle) {
  const Vector3d unit = axis.normalized();
  const Vector3d across = unit.cross(direction(random)).normalized();
  return std::cos(angle) * unit + std::sin(angle) * across;
}

/// Force components to wrench, 6 x k; tangential components first.
MatrixXd grasp_map(std::mt19937& random, const std::vector<GraspContact>& contacts, double length) {
  Eigen::Index components = 0;
  for (const GraspContact& c : contacts) components += c.type;
  MatrixXd map(6, components);
  Eigen::Index at = 0;
  auto put = [&](const Vector3d& point, const Vector3d& axis) {
    map.col(at++) << axis, length * point.cross(axis);
  };
  for (const GraspContact& c : contacts) {
    if (c.type == 3) {
      const Vector3d first = c.normal.cross(direction(random)).normalized();
      put(c.point, first);
      put(c.point, c.normal.cross(first));
    }
    put(c.point, c.normal);
  }
  return map;
}

/// Orthonormal; entries at rounding level are zeros, as any careful tool makes them.
MatrixXd nullspace(const MatrixXd& map) {
  // The last columns of Q in map' = Q R P' are orthogonal to every row of the map.
  Eigen::ColPivHouseholderQR<MatrixXd> qr(map.transpose());
  qr.setThreshold(1e-9);
  const MatrixXd q = qr.householderQ();
  const MatrixXd base = q.rightCols(map.cols() - qr.rank());
  return (base.array().abs() < 1e-12).select(0.0, base);
}

/// Forces at the points with zero sum and zero moment.
std::vector<Vector3d> balanced_forces(std::mt19937& random,
                                      const std::vector<GraspContact>& contacts) {
  const auto count = static_cast<Eigen::Index>(contacts.size());
  MatrixXd map(6, 3 * count);
  for (Eigen::Index i = 0; i < count; ++i) {
    for (Eigen::Index axis = 0; axis < 3; ++axis) {
      const Vector3d unit = Vector3d::Unit(axis);
      map.col(3 * i + axis) << unit, contacts[static_cast<std::size_t>(i)].point.cross(unit);
    }
  }
  const MatrixXd base = nullspace(map);
  const Eigen::VectorXd weights =
      Eigen::VectorXd::NullaryExpr(base.cols(), [&] { return uniform(random, -1, 1); });
  const Eigen::VectorXd all = base * weights;
  std::vector<Vector3d> forces;
  for (Eigen::Index i = 0; i < count; ++i) forces.emplace_back(all.segment<3>(3 * i));
  return forces;
}

}  // namespace

RandomGrasp grasp_of(std::mt19937& random, const std::vector<GraspContact>& contacts,
                     const GraspSize& size) {
  const MatrixXd base = nullspace(grasp_map(random, contacts, size.length));
  RandomGrasp grasp;
  grasp.columns = static_cast<int>(base.cols());
  for (Eigen::Index row = 0; row < base.rows(); ++row) {
    for (Eigen::Index column = 0; column < base.cols(); ++column) {
      grasp.base.push_back(base(row, column));
    }
  }
  for (const GraspContact& c : contacts) {
    grasp.types.push_back(c.type);
    grasp.friction.push_back(c.friction);
    for (int component = 0; component < c.type; ++component) {
      const bool is_normal = component + 1 == c.type;
      grasp.bounds.push_back(is_normal ? 0 : -size.largest_force);
      grasp.bounds.push_back(size.largest_force);
    }
  }
  return grasp;
}

RandomGrasp grasp_with_internal_force(std::mt19937& random, const GraspSize& size) {
  std::vector<GraspContact> contacts(static_cast<std::size_t>(size.contacts));
  std::vector<Vector3d> forces;
  double weakest = 0;
  do {  // a contact with next to no force would leave next to no room
    for (GraspContact& c : contacts) c.point = direction(random);
    forces = balanced_forces(random, contacts);
    weakest = 1e300;
    double strongest = 0;
    for (const Vector3d& f : forces) {
      weakest = std::min(weakest, f.norm());
      strongest = std::max(strongest, f.norm());
    }
    weakest /= strongest;
  } while (!(weakest > 0.05));
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    GraspContact& c = contacts[i];
    // A frictionless contact carries its force along the normal and nothing else.
    c.type = size.frictionless_too && uniform(random, 0, 1) < 0.2 ? 1 : 3;
    c.friction = uniform(random, 0.2, 1);
    const double angle = c.type == 1 ? 0 : uniform(random, 0, 0.8) * std::atan(c.friction);
    c.normal = tilted(random, forces[i], angle);
  }
  return grasp_of(random, contacts, size);
}

RandomGrasp grasp_without_internal_force(std::mt19937& random, const GraspSize& size) {
  for (;;) {
    const Vector3d velocity = direction(random);
    const Vector3d rotation = uniform(random, 0, 1) * direction(random);
    std::vector<GraspContact> contacts(static_cast<std::size_t>(size.contacts));
    for (GraspContact& c : contacts) {
      c.point = direction(random);
      c.type = size.frictionless_too && uniform(random, 0, 1) < 0.2 ? 1 : 3;
      c.friction = uniform(random, 0.2, 1);
      const double cone = c.type == 1 ? 0 : std::atan(c.friction);
      const double widest = std::acos(0.0) - cone;
      c.normal =
          tilted(random, velocity + rotation.cross(c.point), uniform(random, 0, 0.8) * widest);
    }
    RandomGrasp grasp = grasp_of(random, contacts, size);
    if (grasp.columns > 0) return grasp;  // else there is nothing to ask
  }
}

}  // namespace sdpsol::testing
