// Labels beside what they name, none on top of another.
//
// Placing labels best is hard (NP-complete already for four places per label), and a
// handful of them needs no more than this: one after the other, each at the best of the
// places around its anchors: near, on the wished side, off lines and marks. What has been
// placed stays. Where nothing near is free, the label goes to the nearest free place in
// the area, with a line that leads to its anchor. Labels that were placed well for
// themselves may leave no room for the last ones although there is room for all: then
// all of them go into a raster of places.
#pragma once

#include <optional>
#include <vector>

#include "grasp/picture/views.h"

namespace grasp::picture {

struct Box {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;

  [[nodiscard]] bool overlaps(const Box& other) const {
    return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
  }
  [[nodiscard]] bool contains(const Box& other) const {
    return left <= other.left && other.right <= right && top <= other.top && other.bottom <= bottom;
  }
  [[nodiscard]] Spot centre() const { return {(left + right) / 2, (top + bottom) / 2}; }
  /// Of the box, the spot nearest to the given one.
  [[nodiscard]] Spot nearest(const Spot& spot) const;
};

struct Segment {
  Spot from;
  Spot to;
};

/// How much of the segment is within the box.
double length_within(const Segment& segment, const Box& box);

struct Wish {
  Spot anchor = Spot::Zero();
  double width = 0;
  double height = 0;
  /// Where the label should be, seen from the anchor; any length.
  Spot side = Spot::Zero();
};

struct Place {
  Box box;
  /// From the anchor to the box, where the label is not right beside it.
  std::optional<Segment> leader;
};

class LabelPlacer {
 public:
  explicit LabelPlacer(const Box& area) : area_(area) {}

  /// No label will be there.
  void keep_free(const Box& box) { taken_.push_back(box); }
  /// Labels and leaders avoid this if they can.
  /// @param weight of being on a pixel of the line, compared to a pixel of distance.
  void avoid(const Segment& line, double weight) { lines_.push_back({line, weight}); }
  void avoid(const Box& mark) { marks_.push_back(mark); }

  /// One for each wish, earlier ones first; none where no free place is left in the area.
  std::vector<std::optional<Place>> place(const std::vector<Wish>& wishes) const;

 private:
  struct Line {
    Segment segment;
    double weight;
  };
  [[nodiscard]] bool is_free(const Box& box) const;
  [[nodiscard]] double cost(const Box& box, const Wish& wish) const;
  std::optional<Place> take(const Wish& wish, const std::vector<Box>& candidates);
  [[nodiscard]] std::vector<std::optional<Place>> place_near(const std::vector<Wish>& wishes) const;
  [[nodiscard]] std::vector<std::optional<Place>> place_in_raster(
      const std::vector<Wish>& wishes) const;

  Box area_;
  std::vector<Box> taken_;
  std::vector<Box> marks_;
  std::vector<Line> lines_;
  std::vector<Spot> anchors_;
};

}  // namespace grasp::picture
