#include "grasp/picture/views.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace grasp::picture {
namespace {

struct Range {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();

  [[nodiscard]] double size() const { return high - low; }
  void take(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
};

Range range_at(double scale, const std::vector<Item>& items, const Vector& middle, int axis) {
  Range range;
  for (const Item& item : items) {
    range.take(scale * (item.point[axis] - middle[axis]) + item.offset[axis]);
  }
  return range;
}

/// The size at a scale is convex in it (a largest sum minus a smallest one), and fits at
/// scale 0: so the scales that fit are an interval from 0 on, whose end is found by halving.
double largest_scale(const std::vector<Item>& items, const Vector& middle, int axis, double extent,
                     double largest) {
  double fits = 0;
  double fails = 1.001 * largest / extent;
  for (int step = 0; step < 60; ++step) {
    const double scale = fits + (fails - fits) / 2;
    (range_at(scale, items, middle, axis).size() <= largest ? fits : fails) = scale;
  }
  return fits;
}

}  // namespace

const std::array<View, 3>& views() {
  static const std::array<View, 3> kViews = {{
      {.name = "Front",
       .sight = "seen along +y",
       .right = 0,
       .up = 2,
       .to_viewer = -Vector::UnitY()},
      {.name = "Top",
       .sight = "seen along \u2212z",
       .right = 0,
       .up = 1,
       .to_viewer = Vector::UnitZ()},
      {.name = "Right side",
       .sight = "seen along \u2212x",
       .right = 1,
       .up = 2,
       .to_viewer = Vector::UnitX()},
  }};
  return kViews;
}

Fit fit(const std::vector<Item>& items, double largest, double smallest) {
  Fit fit;
  Vector extent;
  for (int axis = 0; axis < 3; ++axis) {
    Range range;
    for (const Item& item : items) range.take(item.point[axis]);
    fit.middle[axis] = range.low / 2 + range.high / 2;
    // Coordinates that differ by rounding only are one.
    const double size = std::max(std::abs(range.low), std::abs(range.high));
    extent[axis] = range.size() > 1e-12 * size && range.size() > 1e-150 ? range.size() : 0;
  }
  double scale = std::numeric_limits<double>::infinity();
  for (int axis = 0; axis < 3; ++axis) {
    if (extent[axis] > 0) {
      scale = std::min(scale, largest_scale(items, fit.middle, axis, extent[axis], largest));
    }
  }
  fit.has_scale = std::isfinite(scale) && scale > 0;
  fit.scale = fit.has_scale ? scale : 0;
  for (int axis = 0; axis < 3; ++axis) {
    const Range range = range_at(fit.scale, items, fit.middle, axis);
    fit.size[axis] = std::max(range.size(), smallest);
    fit.shift[axis] = (fit.size[axis] - range.low - range.high) / 2;
  }
  return fit;
}

Spot Projection::at(const Vector& metres) const {
  const Vector pixels = fit_.scale * (metres - fit_.middle) + fit_.shift;
  return corner_ + along(pixels);
}

}  // namespace grasp::picture
