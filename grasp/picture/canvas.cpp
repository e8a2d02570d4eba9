#include "grasp/picture/canvas.h"

#include <array>
#include <charconv>
#include <cmath>

#include "grasp/picture/drawable_text.h"

namespace grasp::picture {
namespace {

std::string pair(const Spot& spot) {
  return number(spot.x()) + "," + number(spot.y());
}

std::string attribute(std::string_view name, double value) {
  std::string text(" ");
  text += name;
  text += "=\"" + number(value) + "\"";
  return text;
}

}  // namespace

std::string number(double value) {
  // What is that far away is not on any sheet.
  if (!std::isfinite(value) || std::abs(value) > 1e9 || std::abs(value) < 0.005) return "0";
  std::array<char, 32> digits{};
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                     std::chars_format::fixed, 2);
  std::string text(digits.data(), written.ptr);
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  return text;
}

void Canvas::open(std::string_view attributes) {
  svg_ += "<g ";
  svg_ += attributes;
  svg_ += ">\n";
}

void Canvas::close() {
  svg_ += "</g>\n";
}

void Canvas::line(const Spot& from, const Spot& to) {
  svg_ += "<line" + attribute("x1", from.x()) + attribute("y1", from.y()) +
          attribute("x2", to.x()) + attribute("y2", to.y()) + "/>\n";
}

void Canvas::spots(std::string_view element, const std::vector<Spot>& spots) {
  svg_ += "<";
  svg_ += element;
  svg_ += " points=\"";
  for (std::size_t k = 0; k < spots.size(); ++k) svg_ += (k > 0 ? " " : "") + pair(spots[k]);
  svg_ += "\"/>\n";
}

void Canvas::polygon(const std::vector<Spot>& corners) {
  spots("polygon", corners);
}

void Canvas::polyline(const std::vector<Spot>& corners) {
  spots("polyline", corners);
}

void Canvas::circle(const Spot& centre, double radius) {
  svg_ += "<circle" + attribute("cx", centre.x()) + attribute("cy", centre.y()) +
          attribute("r", radius) + "/>\n";
}

void Canvas::ellipse(const ConeOutline& cone) {
  svg_ += "<ellipse" + attribute("rx", cone.minor) + attribute("ry", cone.major);
  svg_ +=
      " transform=\"translate(" + pair(cone.centre) + ") rotate(" + number(cone.turn) + ")\"/>\n";
}

void Canvas::outline(const ConeOutline& cone) {
  if (!cone.tangents) {
    ellipse(cone);
    return;
  }
  // The tangents touch on the apex's side of the rim, so the larger arc closes the outline.
  svg_ += "<path d=\"M" + pair(cone.apex) + " L" + pair(cone.left);
  if (cone.minor < 0.01) {
    svg_ += " L" + pair(cone.right);
  } else {
    svg_ += " A" + number(cone.minor) + "," + number(cone.major) + " " + number(cone.turn) +
            " 1 1 " + pair(cone.right);
  }
  svg_ += " Z\"/>\n";
}

void Canvas::text(const Spot& at, const std::u32string& text, const Font& font, Align align) {
  svg_ +=
      "<text" + attribute("x", at.x()) + attribute("y", at.y()) + attribute("font-size", font.size);
  if (font.bold) svg_ += " font-weight=\"bold\"";
  switch (align) {
    case Align::kLeft:
      break;
    case Align::kMiddle:
      svg_ += " text-anchor=\"middle\"";
      break;
    case Align::kRight:
      svg_ += " text-anchor=\"end\"";
      break;
  }
  svg_ += ">" + xml_text(text) + "</text>\n";
}

std::string Canvas::file(double width, double height, const std::u32string& title) const {
  std::string whole = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  whole += "<svg xmlns=\"http://www.w3.org/2000/svg\"";
  whole += attribute("width", width) + attribute("height", height);
  whole += " viewBox=\"0 0 " + number(width) + " " + number(height) + "\"";
  whole += " font-family=\"Helvetica, Arial, 'Liberation Sans', 'DejaVu Sans', sans-serif\">\n";
  whole += "<title>" + xml_text(title) + "</title>\n";
  whole += "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n";
  return whole + svg_ + "</svg>\n";
}

}  // namespace grasp::picture
