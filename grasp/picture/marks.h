// The signs of the picture, as the views and the legend draw them.
//
// They differ by shape, weight and dash, so that they can be told apart in print without
// colour.
#pragma once

#include <string_view>

#include "grasp/picture/canvas.h"

namespace grasp::picture {

constexpr std::string_view kHullStyle = R"(fill="#f1f1f1" stroke="#666" stroke-width="1")";
constexpr std::string_view kEdgeStyle = R"(fill="none" stroke="#777" stroke-width="0.8")";
constexpr std::string_view kHiddenEdgeStyle =
    R"(fill="none" stroke="#8a8a8a" stroke-width="0.7" stroke-dasharray="3 3")";
constexpr std::string_view kConeStyle =
    R"(fill="#3f7fbf" fill-opacity="0.2" stroke="#1f4e79" stroke-width="0.8")";
constexpr std::string_view kRimStyle = R"(fill="none" stroke="#1f4e79" stroke-width="0.6")";
constexpr std::string_view kNormalStyle = R"(fill="none" stroke="#222" stroke-width="1")";
constexpr std::string_view kForceStyle =
    R"(fill="#a31515" stroke="#a31515" stroke-width="2.4" stroke-linejoin="round")";
constexpr std::string_view kAxisStyle = R"(fill="#444" stroke="#444" stroke-width="1")";
constexpr std::string_view kLabelStyle =
    R"(fill="#000" stroke="#fff" stroke-width="2.5" stroke-linejoin="round" paint-order="stroke")";
constexpr std::string_view kLeaderStyle = R"(fill="none" stroke="#000" stroke-width="0.6")";
constexpr std::string_view kTextStyle = R"(fill="#000")";

/// Thick, with a full head.
void draw_force(Canvas& canvas, const Spot& from, const Spot& to);
/// Of a force that points to the viewer (a ring around its contact) or away from him (a
/// wider ring with a cross): both can be seen where one hides the other.
void draw_force_end_on(Canvas& canvas, const Spot& at, bool to_viewer);
/// Thin, dashed and dotted, with an open head.
void draw_normal(Canvas& canvas, const Spot& from, const Spot& to);
/// Full where the contact is on the viewer's side of the object or on its outline, a ring
/// where it is behind the object.
void draw_contact(Canvas& canvas, const Spot& at, bool behind);
constexpr double kContactRadius = 4;
/// A cross.
void draw_centre(Canvas& canvas, const Spot& at);
void draw_cone(Canvas& canvas, const ConeOutline& cone);
/// Two axes from their origin, with names.
void draw_axes(Canvas& canvas, const Spot& origin, const View& view);

constexpr double kAxisLength = 24;

}  // namespace grasp::picture
