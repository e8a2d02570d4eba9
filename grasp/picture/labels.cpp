#include "grasp/picture/labels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace grasp::picture {
namespace {

constexpr int kDirections = 24;
/// From the anchor to the box.
constexpr std::array<double, 8> kDistances = {6, 9, 13, 18, 25, 34, 46, 60};
/// Farther away than this a label needs a line to its anchor.
constexpr double kBeside = 11;
constexpr double kMarkWeight = 40;
constexpr double kLeaderWeight = 3;
constexpr double kCrossedLabelWeight = 5;
/// Of the wrong side altogether.
constexpr double kSideWeight = 9;
/// Of an anchor that is not the first one.
constexpr double kAnchorWeight = 3;
/// Of the raster that is searched when nothing near is free.
constexpr double kStep = 3;

Box box_at(const Spot& centre, const Wish& wish) {
  return {centre.x() - wish.width / 2, centre.y() - wish.height / 2, centre.x() + wish.width / 2,
          centre.y() + wish.height / 2};
}

/// The box in this direction whose distance to the anchor is the given one.
Box box_towards(const Spot& direction, double distance, const Spot& anchor, const Wish& wish) {
  // Off an axis by so little that the box still stands on it: centred there, not at a corner.
  const auto side = [](double part) { return std::clamp(part * 1.6, -1.0, 1.0); };
  const Spot half(side(direction.x()) * wish.width / 2, side(direction.y()) * wish.height / 2);
  return box_at(anchor + distance * direction + half, wish);
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
    const auto [enter, leave] = std::minmax((low - start) / step, (high - start) / step);
    first = std::max(first, enter);
    last = std::min(last, leave);
  };
  clip(segment.from.x(), along.x(), box.left, box.right);
  clip(segment.from.y(), along.y(), box.top, box.bottom);
  return last > first ? (last - first) * along.norm() : 0;
}

bool LabelPlacer::is_free(const Box& box) const {
  return area_.contains(box) &&
         std::none_of(taken_.begin(), taken_.end(), [&](const Box& b) { return b.overlaps(box); });
}

double LabelPlacer::cost(const Box& box, const Spot& anchor, const Spot& side) const {
  const Spot end = box.nearest(anchor);
  const double distance = (end - anchor).norm();
  double sum = distance;
  for (const Line& line : lines_) sum += line.weight * length_within(line.segment, box);
  for (const Box& mark : marks_) {
    if (mark.overlaps(box)) sum += kMarkWeight;
  }
  const Spot towards = box.centre() - anchor;
  if (side.norm() > 0 && towards.norm() > 0) {
    sum += kSideWeight * (1 - towards.dot(side) / (towards.norm() * side.norm())) / 2;
  }
  if (distance > kBeside) {
    for (const Box& label : taken_) {
      sum += kCrossedLabelWeight * length_within({anchor, end}, label);
    }
  }
  return sum;
}

std::optional<Place> LabelPlacer::place(const Wish& wish) {
  std::optional<Box> best;
  Spot best_anchor = wish.anchors.front();
  double least = std::numeric_limits<double>::infinity();
  const auto consider = [&](const Box& box, const Spot& anchor, double more) {
    if (!is_free(box)) return;
    const double sum = cost(box, anchor, wish.side) + more;
    // Two places that only rounding tells apart must not depend on it.
    if (sum > least - 1e-6) return;
    least = sum;
    best = box;
    best_anchor = anchor;
  };
  double more = 0;
  for (const Spot& anchor : wish.anchors) {
    for (const double distance : kDistances) {
      for (int k = 0; k < kDirections; ++k) {
        const double angle = 2 * std::numbers::pi * k / kDirections;
        const Spot direction(std::cos(angle), std::sin(angle));
        consider(box_towards(direction, distance, anchor, wish), anchor, more);
      }
    }
    more += kAnchorWeight;
  }
  if (!best) {
    for (double y = area_.top; y + wish.height <= area_.bottom; y += kStep) {
      for (double x = area_.left; x + wish.width <= area_.right; x += kStep) {
        consider({x, y, x + wish.width, y + wish.height}, wish.anchors.front(), 0);
      }
    }
  }
  if (!best) return std::nullopt;

  taken_.push_back(*best);
  Place place{.box = *best, .leader = std::nullopt};
  const Spot end = best->nearest(best_anchor);
  if ((end - best_anchor).norm() > kBeside) {
    place.leader = Segment{.from = best_anchor, .to = end};
    avoid(*place.leader, kLeaderWeight);
  }
  return place;
}

}  // namespace grasp::picture
