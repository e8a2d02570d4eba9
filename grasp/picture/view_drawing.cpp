#include "grasp/picture/view_drawing.h"

#include <algorithm>
#include <numeric>

#include "grasp/picture/drawable_text.h"
#include "grasp/picture/marks.h"
#include "grasp/picture/quantities.h"

namespace grasp::picture {
namespace {

/// What it costs a label to be on a line of the drawing, by the line's weight.
constexpr double kOnForce = 15;
constexpr double kOnNormal = 2;
constexpr double kOnCone = 0.7;
constexpr double kOnHull = 0.25;

constexpr Font kNameFont{.size = 11, .bold = true};
constexpr Font kForceFont{.size = 10};
constexpr double kTitleHeight = 20;

/// Of a label: a name, and below it how large the force is.
constexpr double kNameHeight = 13;
constexpr double kForceHeight = 12;

class ViewDrawing {
 public:
  ViewDrawing(Canvas& canvas, const Scene& scene, const View& view, const Box& panel)
      : canvas_(canvas),
        scene_(scene),
        panel_(panel),
        projection_(view, scene.fit, Spot(panel.left + kMargin, panel.bottom - kMargin)),
        placer_({panel.left + 3, panel.top + 3, panel.right - 3, panel.bottom - 3}),
        order_(scene.grasp.contacts.size()) {
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    // What is nearer to the viewer is drawn later.
    std::stable_sort(order_.begin(), order_.end(), [&](std::size_t a, std::size_t b) {
      return projection_.towards_viewer(scene.grasp.contacts[a].point -
                                        scene.grasp.contacts[b].point) < 0;
    });
  }

  void draw() {
    draw_frame();
    draw_hull();
    draw_cones();
    draw_normals();
    draw_centre(canvas_, projection_.at(scene_.grasp.centre));
    placer_.avoid(around(projection_.at(scene_.grasp.centre), 5));
    draw_contacts();
    draw_labels();
  }

 private:
  static Box around(const Spot& spot, double half) {
    return {spot.x() - half, spot.y() - half, spot.x() + half, spot.y() + half};
  }
  [[nodiscard]] const Contact& contact(std::size_t k) const { return scene_.grasp.contacts[k]; }
  [[nodiscard]] Spot spot(std::size_t k) const { return projection_.at(contact(k).point); }
  [[nodiscard]] Spot arrow(std::size_t k) const { return projection_.along(scene_.arrow(k)); }
  /// Empty where there are no forces.
  [[nodiscard]] std::u32string force_text(std::size_t k) const {
    if (!scene_.has_forces()) return {};
    return drawable(force_in_words(scene_.forces[k].norm(), scene_.largest_force));
  }

  void draw_frame();
  void draw_hull();
  void draw_outline(const std::vector<Spot>& spots);
  void draw_cones();
  void draw_normals();
  void draw_contacts();
  void draw_labels();
  void draw_label(std::size_t k, const Place& place);

  Canvas& canvas_;
  const Scene& scene_;
  Box panel_;
  Projection projection_;
  LabelPlacer placer_;
  std::vector<std::size_t> order_;
};

void ViewDrawing::draw_frame() {
  canvas_.open(R"(fill="none" stroke="#ccc" stroke-width="0.8")");
  canvas_.polygon({{panel_.left, panel_.top},
                   {panel_.right, panel_.top},
                   {panel_.right, panel_.bottom},
                   {panel_.left, panel_.bottom}});
  canvas_.close();
  const double line = panel_.top + 14;
  canvas_.open(kTextStyle);
  canvas_.text({panel_.left + 7, line}, drawable(projection_.view().name), kNameFont);
  canvas_.text({panel_.right - 7, line}, drawable(projection_.view().sight), kForceFont,
               Align::kRight);
  canvas_.close();
  placer_.keep_free({panel_.left, panel_.top, panel_.right, panel_.top + kTitleHeight});

  const Spot origin(panel_.left + 10, panel_.bottom - 10);
  draw_axes(canvas_, origin, projection_.view());
  placer_.keep_free(
      {panel_.left, origin.y() - kAxisLength - 15, origin.x() + kAxisLength + 13, panel_.bottom});
}

void ViewDrawing::draw_outline(const std::vector<Spot>& spots) {
  const std::vector<Spot> corners = convex_hull(spots);
  canvas_.polygon(corners);
  for (std::size_t k = 0; k < corners.size(); ++k) {
    placer_.avoid({.from = corners[k], .to = corners[(k + 1) % corners.size()]}, kOnHull);
  }
}

void ViewDrawing::draw_hull() {
  if (!scene_.grasp.hull) return;
  if (const auto* ball = std::get_if<BallHull>(&*scene_.grasp.hull)) {
    canvas_.open(kHullStyle);
    canvas_.circle(projection_.at(ball->centre), ball->radius * projection_.scale());
    canvas_.close();
    return;
  }
  const std::vector<Vector>& points = std::get<PointHull>(*scene_.grasp.hull).points;
  std::vector<Spot> spots;
  spots.reserve(points.size());
  for (const Vector& point : points) spots.push_back(projection_.at(point));
  canvas_.open(kHullStyle);
  draw_outline(spots);
  canvas_.close();
  const auto is_visible = [&](const Edge& edge) {
    return std::any_of(edge.normals.begin(), edge.normals.end(), [&](const Vector& normal) {
      return projection_.towards_viewer(normal) > 1e-6;
    });
  };
  for (const bool visible : {false, true}) {
    canvas_.open(visible ? kEdgeStyle : kHiddenEdgeStyle);
    for (const Edge& edge : scene_.edges) {
      if (is_visible(edge) == visible) canvas_.line(spots[edge.from], spots[edge.to]);
    }
    canvas_.close();
  }
}

void ViewDrawing::draw_cones() {
  for (const std::size_t k : order_) {
    if (!(contact(k).friction > 0)) continue;
    const ConeOutline cone = outline(projection_, contact(k).point, contact(k).frame.normal,
                                     contact(k).friction, kSlant);
    draw_cone(canvas_, cone);
    if (!cone.tangents) continue;
    placer_.avoid({.from = cone.apex, .to = cone.left}, kOnCone);
    placer_.avoid({.from = cone.apex, .to = cone.right}, kOnCone);
    placer_.avoid({.from = cone.left, .to = cone.right}, kOnCone);
  }
}

void ViewDrawing::draw_normals() {
  for (const std::size_t k : order_) {
    const Spot normal = projection_.along(kNormalLength * contact(k).frame.normal);
    if (normal.norm() < 3) continue;
    draw_normal(canvas_, spot(k), spot(k) + normal);
    placer_.avoid({.from = spot(k), .to = spot(k) + normal}, kOnNormal);
  }
}

void ViewDrawing::draw_contacts() {
  for (const std::size_t k : order_) {
    if (scene_.has_forces() && scene_.arrow(k).norm() >= 1) {
      if (is_end_on(scene_, projection_.view(), k)) {
        const bool to_viewer = projection_.towards_viewer(scene_.arrow(k)) > 0;
        draw_force_end_on(canvas_, spot(k), to_viewer);
        placer_.avoid(around(spot(k), to_viewer ? 6 : 10));
      } else {
        draw_force(canvas_, spot(k), spot(k) + arrow(k));
        placer_.avoid({.from = spot(k), .to = spot(k) + arrow(k)}, kOnForce);
      }
    }
  }
  for (const std::size_t k : order_) {
    const bool behind = is_behind(scene_, projection_.view(), k);
    draw_contact(canvas_, spot(k), behind);
    placer_.avoid(around(spot(k), kContactRadius));
  }
}

void ViewDrawing::draw_labels() {
  if (order_.size() > kMaxLabels) return;
  std::vector<Wish> wishes;
  for (std::size_t k = 0; k < order_.size(); ++k) {
    const double name = text_width(scene_.labels[k], true) * kNameFont.size;
    const double force = text_width(force_text(k), false) * kForceFont.size;
    // Outside of the object, behind the contact.
    Vector inward = kNormalLength * contact(k).frame.normal;
    if (scene_.has_forces()) inward += scene_.arrow(k);
    wishes.push_back({.anchor = spot(k),
                      .width = std::max(name, force) + 3,
                      .height = kNameHeight + (scene_.has_forces() ? kForceHeight : 0) + 1,
                      .side = -projection_.along(inward)});
  }
  const std::vector<std::optional<Place>> places = placer_.place(wishes);
  canvas_.open(kLeaderStyle);
  for (const std::optional<Place>& place : places) {
    if (!place || !place->leader) continue;
    const auto& [from, to] = *place->leader;
    canvas_.line(from + kContactRadius * (to - from).normalized(), to);
  }
  canvas_.close();
  canvas_.open(kLabelStyle);
  for (std::size_t k = 0; k < order_.size(); ++k) {
    if (places[k]) draw_label(k, *places[k]);
  }
  canvas_.close();
}

void ViewDrawing::draw_label(std::size_t k, const Place& place) {
  // A label is read from its contact on: it stands on the side of the box that is there.
  const Box& box = place.box;
  Align align = Align::kMiddle;
  double x = box.centre().x();
  if (box.left > spot(k).x()) {
    align = Align::kLeft;
    x = box.left + 1.5;
  } else if (box.right < spot(k).x()) {
    align = Align::kRight;
    x = box.right - 1.5;
  }
  const double name = box.top + kNameHeight - 3;
  canvas_.text({x, name}, scene_.labels[k], kNameFont, align);
  if (scene_.has_forces()) {
    canvas_.text({x, name + kForceHeight}, force_text(k), kForceFont, align);
  }
}

}  // namespace

void draw_view(Canvas& canvas, const Scene& scene, const View& view, const Box& panel) {
  ViewDrawing(canvas, scene, view, panel).draw();
}

}  // namespace grasp::picture
