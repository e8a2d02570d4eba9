#include "grasp/picture/scene.h"

#include <algorithm>
#include <cmath>

#include "grasp/picture/drawable_text.h"

namespace grasp::picture {
namespace {

/// Of what is drawn to scale in a view, in pixels.
constexpr double kLargestArea = 270;
constexpr double kSmallestArea = 130;
/// A projected arrow that is shorter looks like its head at best.
constexpr double kEndOn = 9;
/// Of a name, in units of the font's size.
constexpr double kLongestName = 8;

/// How far a circle around an axis reaches along each world axis.
Vector reach_of_circle(const Vector& axis, double radius) {
  return radius * (Vector::Ones() - axis.cwiseAbs2()).cwiseMax(0).cwiseSqrt();
}

std::vector<std::u32string> names_of(const Grasp& grasp) {
  std::vector<std::u32string> names;
  for (std::size_t k = 0; k < grasp.contacts.size(); ++k)
    names.push_back(cut(drawable(grasp.label(k)), kLongestName, true));
  return names;
}

std::vector<std::u32string> numbers_of(const Grasp& grasp) {
  std::vector<std::u32string> numbers;
  for (std::size_t k = 0; k < grasp.contacts.size(); ++k)
    numbers.push_back(drawable(std::to_string(k)));
  return numbers;
}

bool are_apart(std::vector<std::u32string> names) {
  std::sort(names.begin(), names.end());
  return std::adjacent_find(names.begin(), names.end()) == names.end();
}

std::vector<Item> items(const Scene& scene) {
  std::vector<Item> items;
  const auto add = [&](const Vector& point, const Vector& offset) {
    items.push_back({.point = point, .offset = offset});
  };
  const Grasp& grasp = scene.grasp;
  for (std::size_t k = 0; k < grasp.contacts.size(); ++k) {
    const Contact& contact = grasp.contacts[k];
    const Vector& normal = contact.frame.normal;
    add(contact.point, Vector::Zero());
    add(contact.point, kNormalLength * normal);
    if (contact.friction > 0) {
      const double half_angle = std::atan(contact.friction);
      const Vector rim = kSlant * std::cos(half_angle) * normal;
      const Vector reach = reach_of_circle(normal, kSlant * std::sin(half_angle));
      add(contact.point, rim + reach);
      add(contact.point, rim - reach);
    }
    if (scene.has_forces()) add(contact.point, scene.arrow(k));
  }
  add(grasp.centre, Vector::Zero());
  if (!grasp.hull) return items;
  if (const auto* ball = std::get_if<BallHull>(&*grasp.hull)) {
    add(ball->centre + Vector::Constant(ball->radius), Vector::Zero());
    add(ball->centre - Vector::Constant(ball->radius), Vector::Zero());
  } else {
    for (const Vector& point : std::get<PointHull>(*grasp.hull).points) add(point, Vector::Zero());
  }
  return items;
}

}  // namespace

bool is_behind(const Scene& scene, const View& view, std::size_t contact) {
  return scene.grasp.contacts[contact].frame.normal.dot(view.to_viewer) > 0.02;
}

bool is_end_on(const Scene& scene, const View& view, std::size_t contact) {
  if (!scene.has_forces()) return false;
  const Vector arrow = scene.arrow(contact);
  return arrow.norm() >= kEndOn && std::hypot(arrow[view.right], arrow[view.up]) < kEndOn;
}

Scene make_scene(const Grasp& grasp, const Answer& answer) {
  Scene scene{.grasp = grasp};
  const std::size_t count = grasp.contacts.size();
  if (answer.forces.size() == count) {
    for (const ContactForce& force : answer.forces) {
      scene.forces.push_back(force.world);
      scene.largest_force = std::max(scene.largest_force, force.world.norm());
    }
  }
  if (scene.largest_force > 0) scene.pixels_per_newton = kLongestArrow / scene.largest_force;
  // Names that were cut may be left alike, and then they name nothing.
  if (count <= kMaxNames) scene.labels = names_of(grasp);
  scene.has_numbers = count > kMaxNames || !are_apart(scene.labels);
  if (scene.has_numbers) scene.labels = numbers_of(grasp);
  if (grasp.hull) {
    if (const auto* hull = std::get_if<PointHull>(&*grasp.hull))
      scene.edges = hull_edges(hull->points);
  }
  scene.fit = fit(items(scene), kLargestArea, kSmallestArea);
  return scene;
}

}  // namespace grasp::picture
