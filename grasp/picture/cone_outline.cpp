#include "grasp/picture/cone_outline.h"

#include <cmath>
#include <numbers>

namespace grasp::picture {

// In the view let e be the direction of the projected axis, of length s = sin(theta),
// theta between the axis and the line of sight. The rim's centre is at d = h s along e, h the
// cone's height; its ellipse has the half axes b = r |cos(theta)| along e and r across. The
// polar of the apex at -d is the line x = -b^2 / d: it meets the ellipse where the tangents
// touch.
ConeOutline outline(const Projection& projection, const Vector& apex, const Vector& axis,
                    double friction, double slant) {
  const double half_angle = std::atan(friction);
  const double height = slant * std::cos(half_angle);
  const double radius = slant * std::sin(half_angle);
  const double depth = projection.towards_viewer(axis);

  ConeOutline cone;
  cone.apex = projection.at(apex);
  const Spot flat = projection.along(axis);
  const double sine = flat.norm();
  const Spot e = sine > 1e-9 ? Spot(flat / sine) : Spot(1, 0);
  const Spot across(-e.y(), e.x());
  const double distance = height * sine;
  cone.centre = cone.apex + distance * e;
  cone.major = radius;
  cone.minor = radius * std::abs(depth);
  cone.turn = std::atan2(e.y(), e.x()) * 180 / std::numbers::pi;
  cone.open_to_viewer = depth > 0;
  cone.tangents = distance > cone.minor * (1 + 1e-9) && distance > 1e-9;
  if (cone.tangents) {
    const double ratio = cone.minor / distance;
    const double back = cone.minor * ratio;
    const double aside = radius * std::sqrt(1 - ratio * ratio);
    cone.left = cone.centre - back * e - aside * across;
    cone.right = cone.centre - back * e + aside * across;
  }
  return cone;
}

}  // namespace grasp::picture
