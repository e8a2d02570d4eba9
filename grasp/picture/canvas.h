// SVG, as text.
//
// What looks alike is in one group, whose attributes say how it looks: no style sheet,
// which not every program that reads SVG understands, and which would reach into a page
// that has several pictures in it. Numbers have two digits behind the point and no locale.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "grasp/picture/cone_outline.h"
#include "grasp/picture/labels.h"

namespace grasp::picture {

/// Two digits behind the point, without zeros at the end; what is not finite is 0.
std::string number(double value);

enum class Align { kLeft, kMiddle, kRight };

/// How a text looks, of a size in pixels.
struct Font {
  double size = 0;
  bool bold = false;
};

class Canvas {
 public:
  /// @param attributes of all that comes until close().
  void open(std::string_view attributes);
  void close();

  void line(const Spot& from, const Spot& to);
  void polygon(const std::vector<Spot>& spots);
  void polyline(const std::vector<Spot>& spots);
  void circle(const Spot& centre, double radius);
  void ellipse(const ConeOutline& cone);
  /// The outline of a cone, tangents and the part of the rim that closes it.
  void outline(const ConeOutline& cone);
  /// @param at left, middle or right end of the line that the letters stand on.
  void text(const Spot& at, const std::u32string& text, const Font& font,
            Align align = Align::kLeft);

  void append(const Canvas& other) { svg_ += other.svg_; }

  /// The whole file; all groups have to be closed.
  /// @param title what programs say that do not show pictures.
  [[nodiscard]] std::string file(double width, double height, const std::u32string& title) const;

 private:
  void spots(std::string_view element, const std::vector<Spot>& spots);

  std::string svg_;
};

}  // namespace grasp::picture
