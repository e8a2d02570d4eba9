// What the signs of a picture mean, and its scales.
#pragma once

#include "grasp/picture/canvas.h"
#include "grasp/picture/scene.h"

namespace grasp::picture {

/// Only what the picture shows.
/// @return how high the legend is.
double draw_legend(Canvas& canvas, const Scene& scene, const Spot& corner, double width);

}  // namespace grasp::picture
