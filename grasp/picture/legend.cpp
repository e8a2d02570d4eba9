#include "grasp/picture/legend.h"

#include <algorithm>

#include "grasp/picture/drawable_text.h"
#include "grasp/picture/marks.h"
#include "grasp/picture/quantities.h"

namespace grasp::picture {
namespace {

constexpr double kSignWidth = 78;
constexpr double kRowHeight = 20;
constexpr double kLineHeight = 12;
constexpr double kLongestScale = 70;
constexpr Font kFont{.size = 10};

class Legend {
 public:
  Legend(Canvas& canvas, const Spot& corner, double width)
      : canvas_(canvas), corner_(corner), width_(width) {}

  /// The middle of the next sign.
  [[nodiscard]] Spot sign() const {
    return corner_ + Spot(kSignWidth / 2, height_ + kRowHeight / 2);
  }

  /// Beside the sign just drawn; goes on to the next row.
  void explain(std::string_view text) {
    const double room = (width_ - kSignWidth - 6) / kFont.size;
    const std::vector<std::u32string> lines = wrap(drawable(text), room, 4);
    double y = height_ + kRowHeight / 2 + 3.5;
    canvas_.open(kTextStyle);
    for (const std::u32string& line : lines) {
      canvas_.text(corner_ + Spot(kSignWidth + 6, y), line, kFont);
      y += kLineHeight;
    }
    canvas_.close();
    height_ += kRowHeight + kLineHeight * static_cast<double>(lines.size() - 1);
  }

  [[nodiscard]] double height() const { return height_; }

 private:
  Canvas& canvas_;
  Spot corner_;
  double width_;
  double height_ = 0;
};

/// "0.3" or "0.2 to 0.5", of the contacts with friction.
std::string frictions(const Grasp& grasp) {
  double least = 0;
  double most = 0;
  bool any = false;
  for (const Contact& contact : grasp.contacts) {
    if (!(contact.friction > 0)) continue;
    least = any ? std::min(least, contact.friction) : contact.friction;
    most = any ? std::max(most, contact.friction) : contact.friction;
    any = true;
  }
  const std::string low = three_digits(least);
  const std::string high = three_digits(most);
  return low == high ? low : low + " to " + high;
}

/// Whether the picture shows a contact, in any view, of which this is true.
bool is_anywhere(const Scene& scene, bool (*is)(const Scene&, const View&, std::size_t)) {
  for (const View& view : views()) {
    for (std::size_t k = 0; k < scene.grasp.contacts.size(); ++k) {
      if (is(scene, view, k)) return true;
    }
  }
  return false;
}

void explain_contacts(Canvas& canvas, Legend& legend, const Scene& scene) {
  const Grasp& grasp = scene.grasp;
  const bool behind = is_anywhere(scene, is_behind);
  draw_contact(canvas, legend.sign(), false);
  legend.explain(behind ? "contact in sight or on the outline" : "contact");
  if (behind) {
    draw_contact(canvas, legend.sign(), true);
    legend.explain("contact behind the object");
  }
  draw_normal(canvas, legend.sign() - Spot(29, 0), legend.sign() + Spot(29, 0));
  legend.explain("inward normal");
  const bool friction = std::any_of(grasp.contacts.begin(), grasp.contacts.end(),
                                    [](const Contact& contact) { return contact.friction > 0; });
  if (!friction) return;
  ConeOutline cone;
  cone.apex = legend.sign() - Spot(23, 0);
  cone.centre = cone.apex + Spot(43, 0);
  cone.major = 9;
  cone.tangents = true;
  cone.left = cone.centre - Spot(0, cone.major);
  cone.right = cone.centre + Spot(0, cone.major);
  draw_cone(canvas, cone);
  legend.explain("friction cone to scale: half angle atan\u00a0\u03bc, \u03bc\u00a0=\u00a0" +
                 frictions(grasp) + "; one slant length for all");
}

void explain_forces(Canvas& canvas, Legend& legend, const Scene& scene) {
  if (!(scene.largest_force > 0)) return;
  const double step = round_step(kLongestScale / scene.pixels_per_newton);
  const Spot half(step * scene.pixels_per_newton / 2, 0);
  draw_force(canvas, legend.sign() - half, legend.sign() + half);
  legend.explain("force on the object, here " + force_in_words(step, scene.largest_force));
  if (!is_anywhere(scene, is_end_on)) return;
  draw_force_end_on(canvas, legend.sign() - Spot(14, 0), true);
  draw_contact(canvas, legend.sign() - Spot(14, 0), true);
  draw_force_end_on(canvas, legend.sign() + Spot(14, 0), false);
  draw_contact(canvas, legend.sign() + Spot(14, 0), false);
  legend.explain("force towards and away from the viewer");
}

void explain_hull(Canvas& canvas, Legend& legend, const Scene& scene) {
  if (!scene.grasp.hull) return;
  canvas.open(kHullStyle);
  if (std::holds_alternative<BallHull>(*scene.grasp.hull)) {
    canvas.circle(legend.sign(), 8);
  } else {
    const auto corner = [&](double x, double y) { return Spot(legend.sign() + Spot(x, y)); };
    canvas.polygon({corner(-16, -7), corner(16, -7), corner(16, 7), corner(-16, 7)});
  }
  canvas.close();
  legend.explain(scene.edges.empty() ? "object" : "object; hidden edges dashed");
}

void explain_scale(Canvas& canvas, Legend& legend, const Scene& scene) {
  if (!scene.fit.has_scale) return;
  const double step = round_step(kLongestScale / scene.fit.scale);
  if (!(step > 0)) return;
  const Spot half(step * scene.fit.scale / 2, 0);
  const Spot tick(0, 4);
  canvas.open(R"(fill="none" stroke="#000" stroke-width="1.4")");
  canvas.line(legend.sign() - half, legend.sign() + half);
  canvas.line(legend.sign() - half - tick, legend.sign() - half + tick);
  canvas.line(legend.sign() + half - tick, legend.sign() + half + tick);
  canvas.close();
  legend.explain(length_in_words(step) + ", in all views");
}

}  // namespace

double draw_legend(Canvas& canvas, const Scene& scene, const Spot& corner, double width) {
  Legend legend(canvas, corner, width);
  explain_scale(canvas, legend, scene);
  explain_contacts(canvas, legend, scene);
  explain_forces(canvas, legend, scene);
  draw_centre(canvas, legend.sign());
  legend.explain("centre, torques are about it");
  explain_hull(canvas, legend, scene);
  return legend.height();
}

}  // namespace grasp::picture
