#include "grasp/picture/labels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace grasp::picture {
namespace {

constexpr int kDirections = 24;
/// From the anchor to the box.
constexpr std::array<double, 8> kDistances = {6, 9, 13, 18, 25, 34, 46, 60};
/// Farther away than this a label needs a line to its anchor.
constexpr double kBeside = 11;
constexpr double kMarkWeight = 80;
constexpr double kLeaderWeight = 3;
constexpr double kCrossedLabelWeight = 5;
/// Of a place that is beside another label's anchor, and not farther from it than from its own.
constexpr double kOthersWeight = 12;
/// Of the wrong side altogether.
constexpr double kSideWeight = 9;
/// Between the places that are searched when nothing near is free.
constexpr double kStep = 3;
/// A line that passes so close to a label is on it.
constexpr double kClearance = 2;

Box box_at(const Spot& centre, const Wish& wish) {
  return {centre.x() - wish.width / 2, centre.y() - wish.height / 2, centre.x() + wish.width / 2,
          centre.y() + wish.height / 2};
}

/// The box in this direction whose distance to the anchor is about the given one.
Box box_towards(const Spot& direction, double distance, const Wish& wish) {
  // Off an axis by so little that the box still stands on it: centred there, not at a corner.
  const auto side = [](double part) { return std::clamp(part * 1.6, -1.0, 1.0); };
  const Spot half(side(direction.x()) * wish.width / 2, side(direction.y()) * wish.height / 2);
  return box_at(wish.anchor + distance * direction + half, wish);
}

std::vector<Box> boxes_near(const Wish& wish) {
  std::vector<Box> boxes;
  for (const double distance : kDistances) {
    for (int k = 0; k < kDirections; ++k) {
      const double angle = 2 * std::numbers::pi * k / kDirections;
      boxes.push_back(box_towards({std::cos(angle), std::sin(angle)}, distance, wish));
    }
  }
  return boxes;
}

/// Boxes of this size in the area, at distances of the given steps.
std::vector<Box> boxes_in(const Box& area, double width, double height, double right, double down) {
  std::vector<Box> boxes;
  for (double y = area.top; y + height <= area.bottom; y += down) {
    for (double x = area.left; x + width <= area.right; x += right) {
      boxes.push_back({x, y, x + width, y + height});
    }
  }
  return boxes;
}

std::ptrdiff_t placed(const std::vector<std::optional<Place>>& places) {
  return std::count_if(places.begin(), places.end(),
                       [](const std::optional<Place>& place) { return place.has_value(); });
}

}  // namespace

Spot Box::nearest(const Spot& spot) const {
  return {std::clamp(spot.x(), left, right), std::clamp(spot.y(), top, bottom)};
}

double length_within(const Segment& segment, const Box& box) {
  double first = 0;
  double last = 1;
  const Spot along = segment.to - segment.from;
  const auto clip = [&](double start, double step, double low, double high) {
    if (step == 0) {
      if (start <= low || start >= high) last = -1;
      return;
    }
    const double at_low = (low - start) / step;
    const double at_high = (high - start) / step;
    first = std::max(first, std::min(at_low, at_high));
    last = std::min(last, std::max(at_low, at_high));
  };
  clip(segment.from.x(), along.x(), box.left, box.right);
  clip(segment.from.y(), along.y(), box.top, box.bottom);
  return last > first ? (last - first) * along.norm() : 0;
}

bool LabelPlacer::is_free(const Box& box) const {
  return area_.contains(box) &&
         std::none_of(taken_.begin(), taken_.end(), [&](const Box& b) { return b.overlaps(box); });
}

double LabelPlacer::cost(const Box& box, const Wish& wish) const {
  const Spot end = box.nearest(wish.anchor);
  const double distance = (end - wish.anchor).norm();
  const Box wide{.left = box.left - kClearance,
                 .top = box.top - kClearance,
                 .right = box.right + kClearance,
                 .bottom = box.bottom + kClearance};
  double sum = std::max(distance, kDistances.front());
  for (const Line& line : lines_) sum += line.weight * length_within(line.segment, wide);
  for (const Box& mark : marks_) {
    if (mark.overlaps(box)) sum += kMarkWeight;
  }
  const Spot towards = box.centre() - wish.anchor;
  const double lengths = towards.norm() * wish.side.norm();
  if (lengths > 0) sum += kSideWeight * (1 - towards.dot(wish.side) / lengths) / 2;
  for (const Spot& other : anchors_) {
    const bool same = (other - wish.anchor).norm() < 1;
    if (!same && (box.nearest(other) - other).norm() < std::max(distance, kBeside)) {
      sum += kOthersWeight;
    }
  }
  if (distance > kBeside) {
    for (const Box& label : taken_) {
      sum += kCrossedLabelWeight * length_within({.from = wish.anchor, .to = end}, label);
    }
  }
  return sum;
}

std::optional<Place> LabelPlacer::take(const Wish& wish, const std::vector<Box>& candidates) {
  const Box* best = nullptr;
  double least = std::numeric_limits<double>::infinity();
  for (const Box& box : candidates) {
    if (!is_free(box)) continue;
    const double sum = cost(box, wish);
    // Two places that only rounding tells apart must not depend on it.
    if (sum > least - 1e-6) continue;
    least = sum;
    best = &box;
  }
  if (best == nullptr) return std::nullopt;
  taken_.push_back(*best);
  Place place{.box = *best, .leader = std::nullopt};
  const Spot end = best->nearest(wish.anchor);
  if ((end - wish.anchor).norm() > kBeside) {
    place.leader = Segment{.from = wish.anchor, .to = end};
    avoid(*place.leader, kLeaderWeight);
  }
  return place;
}

std::vector<std::optional<Place>> LabelPlacer::place_near(const std::vector<Wish>& wishes) const {
  LabelPlacer placer = *this;
  for (const Wish& wish : wishes) placer.anchors_.push_back(wish.anchor);
  std::vector<std::optional<Place>> places;
  for (const Wish& wish : wishes) {
    std::optional<Place> place = placer.take(wish, boxes_near(wish));
    if (!place) {
      place = placer.take(wish, boxes_in(area_, wish.width, wish.height, kStep, kStep));
    }
    places.push_back(place);
  }
  return places;
}

std::vector<std::optional<Place>> LabelPlacer::place_in_raster(
    const std::vector<Wish>& wishes) const {
  double width = 1;
  double height = 1;
  for (const Wish& wish : wishes) {
    width = std::max(width, wish.width);
    height = std::max(height, wish.height);
  }
  const std::vector<Box> raster = boxes_in(area_, width, height, width, height);
  LabelPlacer placer = *this;
  for (const Wish& wish : wishes) placer.anchors_.push_back(wish.anchor);
  std::vector<std::optional<Place>> places;
  for (const Wish& wish : wishes) {
    std::vector<Box> candidates;
    candidates.reserve(raster.size());
    for (const Box& cell : raster) candidates.push_back(box_at(cell.centre(), wish));
    places.push_back(placer.take(wish, candidates));
  }
  return places;
}

std::vector<std::optional<Place>> LabelPlacer::place(const std::vector<Wish>& wishes) const {
  std::vector<std::optional<Place>> near = place_near(wishes);
  if (placed(near) == static_cast<std::ptrdiff_t>(wishes.size())) return near;
  std::vector<std::optional<Place>> raster = place_in_raster(wishes);
  return placed(raster) > placed(near) ? raster : near;
}

}  // namespace grasp::picture
