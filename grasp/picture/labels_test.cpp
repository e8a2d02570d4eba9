#include "grasp/picture/labels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace grasp::picture {
namespace {

const Box kArea{.left = 0, .top = 0, .right = 240, .bottom = 240};

Wish wish(const Spot& anchor, double width = 60, double height = 26, const Spot& side = {0, 0}) {
  return {.anchor = anchor, .width = width, .height = height, .side = side};
}

void expect_apart(const std::vector<std::optional<Place>>& places, const Box& area) {
  for (std::size_t a = 0; a < places.size(); ++a) {
    ASSERT_TRUE(places[a].has_value()) << "label " << a;
    EXPECT_TRUE(area.contains(places[a]->box));
    for (std::size_t b = 0; b < a; ++b) {
      EXPECT_FALSE(places[a]->box.overlaps(places[b]->box)) << a << " and " << b;
    }
  }
}

TEST(LengthWithin, IsThePartOfALineInABox) {
  const Box box{.left = 0, .top = 0, .right = 10, .bottom = 5};
  EXPECT_DOUBLE_EQ(length_within({.from = {-5, 2}, .to = {20, 2}}, box), 10);
  EXPECT_DOUBLE_EQ(length_within({.from = {20, 2}, .to = {-5, 2}}, box), 10);
  EXPECT_DOUBLE_EQ(length_within({.from = {3, 1}, .to = {3, 40}}, box), 4);
  EXPECT_DOUBLE_EQ(length_within({.from = {1, 1}, .to = {4, 5}}, box), 5);
  EXPECT_DOUBLE_EQ(length_within({.from = {-1, 6}, .to = {20, 6}}, box), 0);
  EXPECT_DOUBLE_EQ(length_within({.from = {-3, 4}, .to = {4, -3.5}}, box),
                   std::hypot(7, 7.5) * (4.0 / 7.5 - 3.0 / 7));
  EXPECT_DOUBLE_EQ(length_within({.from = {-3, 2}, .to = {0, -3}}, box), 0);
}

TEST(LabelPlacer, PutsALabelOnTheWishedSideRightBesideItsAnchor) {
  const Spot anchor(120, 120);
  for (const Spot& side : {Spot(1, 0), Spot(-1, 0), Spot(0, 1), Spot(0, -1)}) {
    const auto places = LabelPlacer(kArea).place({wish(anchor, 60, 26, side)});
    ASSERT_TRUE(places[0].has_value());
    EXPECT_FALSE(places[0]->leader.has_value());
    const Spot towards = places[0]->box.centre() - anchor;
    EXPECT_GT(towards.dot(side), 0.99 * towards.norm());
    EXPECT_NEAR((places[0]->box.nearest(anchor) - anchor).norm(), 6, 0.1);
  }
}

TEST(LabelPlacer, KeepsOffLinesAndMarksWhereThereIsRoom) {
  LabelPlacer placer(kArea);
  const Segment line{.from = {120, 120}, .to = {200, 120}};
  const Box mark{.left = 125, .top = 60, .right = 180, .bottom = 110};
  placer.avoid(line, 15);
  placer.avoid(mark);
  const auto places = placer.place({wish({120, 120}, 60, 26, {1, 0})});
  ASSERT_TRUE(places[0].has_value());
  EXPECT_EQ(length_within(line, places[0]->box), 0);
  EXPECT_FALSE(places[0]->box.overlaps(mark));
}

TEST(LabelPlacer, LeadsALineToALabelThatHadToGoFar) {
  LabelPlacer placer(kArea);
  placer.keep_free({.left = 20, .top = 20, .right = 220, .bottom = 200});
  const auto places = placer.place({wish({120, 120})});
  ASSERT_TRUE(places[0].has_value());
  ASSERT_TRUE(places[0]->leader.has_value());
  EXPECT_EQ(places[0]->leader->from, Spot(120, 120));
  EXPECT_EQ(places[0]->leader->to, places[0]->box.nearest({120, 120}));
  EXPECT_GE(places[0]->box.top, 200);
}

TEST(LabelPlacer, PlacesEightLabelsOfOneSpot) {
  const std::vector<Wish> wishes(8, wish({120, 120}, 90, 26));
  expect_apart(LabelPlacer(kArea).place(wishes), kArea);
}

TEST(LabelPlacer, PlacesEightWideLabelsWhereverTheirAnchorsAre) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> at(50, 190);
  std::uniform_real_distribution<double> width(10, 90);
  for (int round = 0; round < 60; ++round) {
    LabelPlacer placer(kArea);
    const Box title{.left = 0, .top = 0, .right = 240, .bottom = 20};
    const Box axes{.left = 0, .top = 191, .right = 47, .bottom = 240};
    placer.keep_free(title);
    placer.keep_free(axes);
    std::vector<Wish> wishes;
    for (int k = 0; k < 8; ++k) {
      wishes.push_back(wish({at(random), at(random)}, round % 2 == 0 ? 90 : width(random)));
      placer.avoid({.from = wishes.back().anchor, .to = {at(random), at(random)}}, 15);
    }
    const auto places = placer.place(wishes);
    expect_apart(places, kArea);
    for (const auto& place : places) {
      EXPECT_FALSE(place->box.overlaps(title));
      EXPECT_FALSE(place->box.overlaps(axes));
    }
  }
}

TEST(LabelPlacer, MovesAllLabelsWhereTheFirstOnesLeaveNoRoom) {
  // Three labels fill the area, one above the other. The first wishes to be where it leaves
  // room for one below it, and for none above.
  const Box area{.left = 0, .top = 0, .right = 60, .bottom = 80};
  const Wish first = wish({30, 14}, 50, 26, {0, 1});
  const auto alone = LabelPlacer(area).place({first});
  ASSERT_TRUE(alone[0].has_value());
  EXPECT_NEAR(alone[0]->box.top, 20, 0.1);
  expect_apart(LabelPlacer(area).place({first, wish({30, 60}, 50), wish({30, 60}, 50)}), area);
}

TEST(LabelPlacer, LeavesOutWhatHasNoRoom) {
  const Box area{.left = 0, .top = 0, .right = 60, .bottom = 60};
  const auto places = LabelPlacer(area).place(std::vector<Wish>(3, wish({30, 30})));
  EXPECT_EQ(std::count_if(places.begin(), places.end(),
                          [](const std::optional<Place>& place) { return place.has_value(); }),
            2);
  EXPECT_TRUE(LabelPlacer(area).place({}).empty());
}

}  // namespace
}  // namespace grasp::picture
