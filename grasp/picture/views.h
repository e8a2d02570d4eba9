// Three orthographic views, and the scale that all of them share.
//
// Third-angle projection: every view stands on the side from which it is seen. The
// world's z points up, the front is seen along +y:
//
//   top, x right and y up       (the legend's place)
//   front, x right and z up     right side, y right and z up
//
// so that one x is in one vertical line of the sheet, and one z in one horizontal line.
// What is drawn has a length in metres (points) or a length on the sheet (arrows,
// cones). Lengths on the sheet are lengths in space too: turned away from the view
// plane they look shorter, as all that is projected does.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "grasp/grasp.h"

namespace grasp::picture {

/// On the sheet, in pixels: right and down.
using Spot = Eigen::Vector2d;

struct View {
  std::string_view name;
  std::string_view sight;
  int right = 0;  ///< the world axis that points right
  int up = 0;     ///< the one that points up
  Vector to_viewer;
};

enum ViewNumber { kFront, kTop, kSide };
const std::array<View, 3>& views();

/// Something that has to be in the picture.
struct Item {
  Vector point;   ///< in metres
  Vector offset;  ///< from there, in pixels in space
};

/// Along each world axis: pixels = scale * metres + shift, from 0 to size.
struct Fit {
  double scale = 1;  ///< pixels per metre
  /// False where all points are one: then the scale says nothing.
  bool has_scale = false;
  Vector middle = Vector::Zero();  ///< in metres; taken away before anything is scaled
  Vector shift = Vector::Zero();
  Vector size = Vector::Zero();  ///< in pixels
};

/// The largest scale at which all items fit.
/// @param largest,smallest of the sizes, in pixels. Offsets alone must fit into largest.
Fit fit(const std::vector<Item>& items, double largest, double smallest);

/// Where things are in one view.
class Projection {
 public:
  /// @param corner lower left corner of the view's area on the sheet.
  Projection(const View& view, const Fit& fit, const Spot& corner)
      : view_(view), fit_(fit), corner_(corner) {}

  [[nodiscard]] Spot at(const Vector& metres) const;
  /// Of a vector in pixels in space.
  [[nodiscard]] Spot along(const Vector& pixels) const {
    return {pixels[view_.right], -pixels[view_.up]};
  }
  /// Positive towards the viewer.
  [[nodiscard]] double towards_viewer(const Vector& vector) const {
    return vector.dot(view_.to_viewer);
  }
  [[nodiscard]] double scale() const { return fit_.scale; }
  [[nodiscard]] const View& view() const { return view_; }

 private:
  View view_;
  Fit fit_;
  Spot corner_;
};

}  // namespace grasp::picture
