// The grasp in 3D: one page that needs nothing else.
#pragma once

#include <string>

#include "grasp/answer.h"

namespace grasp {

/// A whole HTML file, with the library that draws it.
std::string draw_html(const Grasp& grasp, const Answer& answer);

}  // namespace grasp
