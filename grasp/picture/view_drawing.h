// One view of a grasp.
#pragma once

#include "grasp/picture/canvas.h"
#include "grasp/picture/scene.h"

namespace grasp::picture {

/// Around the area in which things are to scale: labels go there too.
constexpr double kMargin = 54;

/// @param panel of the view; the area that scene.fit gives, and kMargin on all sides.
void draw_view(Canvas& canvas, const Scene& scene, const View& view, const Box& panel);

}  // namespace grasp::picture
