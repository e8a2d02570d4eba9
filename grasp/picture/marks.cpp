#include "grasp/picture/marks.h"

#include <algorithm>

#include "grasp/picture/drawable_text.h"

namespace grasp::picture {
namespace {

constexpr double kHeadLength = 10;
constexpr double kHeadHalfWidth = 4;

struct Arrow {
  Spot tip;
  Spot base;  ///< of the head, on the shaft
  Spot left;
  Spot right;
};

Arrow arrow(const Spot& from, const Spot& to, double head, double half_width) {
  const Spot along = to - from;
  const double length = along.norm();
  const Spot direction = length > 0 ? Spot(along / length) : Spot(1, 0);
  const Spot across(-direction.y(), direction.x());
  const double shrink = std::min(1.0, 0.7 * length / head);
  const Spot base = to - shrink * head * direction;
  return {.tip = to,
          .base = base,
          .left = base - shrink * half_width * across,
          .right = base + shrink * half_width * across};
}

}  // namespace

void draw_force(Canvas& canvas, const Spot& from, const Spot& to) {
  const Arrow head = arrow(from, to, kHeadLength, kHeadHalfWidth);
  canvas.open(kForceStyle);
  canvas.line(from, head.base);
  canvas.open("stroke-width=\"0.5\"");
  canvas.polygon({head.tip, head.left, head.right});
  canvas.close();
  canvas.close();
}

void draw_force_end_on(Canvas& canvas, const Spot& at, bool to_viewer) {
  canvas.open(R"(fill="none" stroke="#a31515" stroke-width="2")");
  if (to_viewer) {
    canvas.circle(at, 6);
  } else {
    const double arm = 10 * 0.7071;
    canvas.circle(at, 10);
    canvas.line(at + Spot(-arm, -arm), at + Spot(arm, arm));
    canvas.line(at + Spot(-arm, arm), at + Spot(arm, -arm));
  }
  canvas.close();
}

void draw_normal(Canvas& canvas, const Spot& from, const Spot& to) {
  const Arrow head = arrow(from, to, 6, 3.2);
  canvas.open(kNormalStyle);
  canvas.open("stroke-dasharray=\"7 2 1.5 2\"");
  canvas.line(from, to);
  canvas.close();
  canvas.polyline({head.left, head.tip, head.right});
  canvas.close();
}

void draw_contact(Canvas& canvas, const Spot& at, bool behind) {
  canvas.open(behind ? R"(fill="#fff" stroke="#000" stroke-width="1.4")"
                     : R"(fill="#000" stroke="#fff" stroke-width="0.8")");
  canvas.circle(at, behind ? kContactRadius - 0.7 : kContactRadius);
  canvas.close();
}

void draw_centre(Canvas& canvas, const Spot& at) {
  canvas.open(R"(stroke="#000" stroke-width="1.2")");
  canvas.line(at + Spot(-6, 0), at + Spot(6, 0));
  canvas.line(at + Spot(0, -6), at + Spot(0, 6));
  canvas.close();
}

void draw_cone(Canvas& canvas, const ConeOutline& cone) {
  canvas.open(kConeStyle);
  canvas.outline(cone);
  canvas.close();
  if (!cone.tangents || cone.minor < 0.5) return;
  // The rim's near half is hidden where one looks at the cone from behind its apex.
  canvas.open(kRimStyle);
  if (!cone.open_to_viewer) canvas.open("stroke-dasharray=\"2 2\"");
  canvas.ellipse(cone);
  if (!cone.open_to_viewer) canvas.close();
  canvas.close();
}

void draw_axes(Canvas& canvas, const Spot& origin, const View& view) {
  constexpr std::u32string_view kNames = U"xyz";
  const auto name = [&](int axis) {
    return std::u32string(1, kNames[static_cast<std::size_t>(axis)]);
  };
  canvas.open(kAxisStyle);
  for (const Spot& direction : {Spot(1, 0), Spot(0, -1)}) {
    const Spot tip = origin + kAxisLength * direction;
    const Arrow head = arrow(origin, tip, 6, 2.2);
    canvas.line(origin, head.base);
    canvas.open("stroke=\"none\"");
    canvas.polygon({head.tip, head.left, head.right});
    canvas.close();
  }
  canvas.close();
  canvas.open(kTextStyle);
  const Font font{.size = 11};
  canvas.text(origin + Spot(kAxisLength + 4, 4), name(view.right), font);
  canvas.text(origin + Spot(0, -kAxisLength - 4), name(view.up), font, Align::kMiddle);
  canvas.close();
}

}  // namespace grasp::picture
