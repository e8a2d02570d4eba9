// The grasp in two or three orthographic views.
#pragma once

#include <string>

#include "grasp/answer.h"

namespace grasp {

/// A whole SVG file.
std::string draw_svg(const Grasp& grasp, const Answer& answer);

}  // namespace grasp
