// A friction cone, seen in one view.
#pragma once

#include "grasp/picture/views.h"

namespace grasp::picture {

/// The parallel projection of a cone: its rim is an ellipse; where the apex lies outside
/// of it, the two tangents from the apex complete the outline.
struct ConeOutline {
  Spot apex;
  Spot centre;            ///< of the ellipse
  double major = 0;       ///< half axis, across the cone's axis
  double minor = 0;       ///< half axis, along it; 0 where the cone is seen from the side
  double turn = 0;        ///< of the minor half axis from the sheet's right, clockwise, in degrees
  bool tangents = false;  ///< whether the apex lies outside of the ellipse
  Spot left;              ///< where the tangents touch, only with tangents
  Spot right;
  bool open_to_viewer = false;  ///< whether one looks into it
};

/// The cone around axis with half angle atan(friction), whose lines from the apex to the
/// rim are all of one length in space.
/// @param slant that length, in pixels.  @param axis of length 1.
ConeOutline outline(const Projection& projection, const Vector& apex, const Vector& axis,
                    double friction, double slant);

}  // namespace grasp::picture
