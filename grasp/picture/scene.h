// What all views of one grasp share.
#pragma once

#include <string>
#include <vector>

#include "grasp/answer.h"
#include "grasp/picture/hull.h"
#include "grasp/picture/views.h"

namespace grasp::picture {

/// In space, in pixels.
constexpr double kSlant = 46;
constexpr double kNormalLength = 58;
constexpr double kLongestArrow = 84;

/// Up to so many contacts have their names in the views, unless those would look alike
/// when they are cut, and labels for all of them; more have their numbers, and labels as
/// long as there is room.
constexpr std::size_t kMaxNames = 8;
/// More contacts than this have no labels: nothing would tell whose they are.
constexpr std::size_t kMaxLabels = 60;

struct Scene {
  const Grasp& grasp;
  /// One per contact, on the object; empty where there are none.
  std::vector<Vector> forces = {};
  double largest_force = 0;
  double pixels_per_newton = 0;
  /// What contacts are called in the views: their names or their numbers, all of them.
  std::vector<std::u32string> labels = {};
  bool has_numbers = false;
  /// Of a hull of points.
  std::vector<Edge> edges = {};
  Fit fit = {};

  [[nodiscard]] bool has_forces() const { return !forces.empty(); }
  [[nodiscard]] Vector arrow(std::size_t contact) const {
    return forces[contact] * pixels_per_newton;
  }
};

/// Whether the object hides the contact from the viewer.
bool is_behind(const Scene& scene, const View& view, std::size_t contact);

/// Whether the contact has a force whose arrow is not seen as one, being along the view.
bool is_end_on(const Scene& scene, const View& view, std::size_t contact);

/// @param grasp has to live as long as the scene.
Scene make_scene(const Grasp& grasp, const Answer& answer);

}  // namespace grasp::picture
