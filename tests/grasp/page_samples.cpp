#include "tests/grasp/page_samples.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <stdexcept>
#include <utility>

namespace page_samples {
namespace {

using grasp::Answer;
using grasp::Contact;
using grasp::ContactForce;
using grasp::ContactType;
using grasp::Frame;
using grasp::Grasp;
using grasp::Vector;
using grasp::Verdict;

constexpr double kForceLimit = 50;

Frame frame(const Vector& normal) {
  const Vector n = normal.normalized();
  const Vector aside = std::abs(n.x()) < 0.7 ? Vector::UnitX() : Vector::UnitY();
  const Vector first = (aside - aside.dot(n) * n).normalized();
  return {first, n.cross(first), n};
}

/// Of no friction where the coefficient is 0.
Contact contact(std::string name, const Vector& point, const Vector& normal, double friction) {
  Contact made;
  made.name = std::move(name);
  made.point = point;
  made.frame = frame(normal);
  made.type = friction > 0 ? ContactType::kFriction : ContactType::kFrictionless;
  made.friction = friction;
  if (friction > 0) made.bounds.assign(2, {-kForceLimit, kForceLimit});
  made.bounds.push_back({0, kForceLimit});
  return made;
}

Answer feasible(const Grasp& grasp, const std::vector<Vector>& forces) {
  Answer answer;
  answer.inquiry = {grasp::Question::kAll, {}};
  answer.verdict = Verdict::kFeasible;
  for (std::size_t i = 0; i < forces.size(); ++i) {
    const Frame& axes = grasp.contacts[i].frame;
    ContactForce force;
    force.world = forces[i];
    force.local = {forces[i].dot(axes.tangential_1), forces[i].dot(axes.tangential_2),
                   forces[i].dot(axes.normal)};
    force.cone_margin = grasp.contacts[i].friction > 0
                            ? grasp.contacts[i].friction * force.local.z() -
                                  std::hypot(force.local.x(), force.local.y())
                            : force.local.z();
    force.bound_margin = std::min(force.local.z(), kForceLimit - force.local.z());
    force.epsilon = force.cone_margin;
    answer.forces.push_back(force);
  }
  answer.objective = answer.forces.front().cone_margin;
  answer.mean_epsilon = answer.objective;
  return answer;
}

Answer infeasible(std::string reason) {
  Answer answer;
  answer.verdict = Verdict::kInfeasible;
  answer.reason = std::move(reason);
  return answer;
}

std::vector<Vector> box(const Vector& half, const Vector& middle = Vector::Zero()) {
  std::vector<Vector> corners;
  for (const double x : {-1.0, 1.0}) {
    for (const double y : {-1.0, 1.0}) {
      for (const double z : {-1.0, 1.0}) {
        corners.push_back(middle + Vector(x * half.x(), y * half.y(), z * half.z()));
      }
    }
  }
  return corners;
}

/// Two fingers on opposite sides of a box of the given half width.
Grasp pinch(double half) {
  Grasp grasp;
  grasp.name = "Two-finger pinch";
  grasp.contacts = {contact("thumb", Vector(-half, 0, 0), Vector::UnitX(), 0.5),
                    contact("index", Vector(half, 0, 0), -Vector::UnitX(), 0.5)};
  grasp.centre = Vector::Zero();
  grasp.hull = grasp::PointHull{box(Vector(half, 0.6 * half, 0.8 * half))};
  return grasp;
}

Sample pinched(std::string file, double half) {
  Grasp grasp = pinch(half);
  Answer answer = feasible(grasp, {Vector(12.5, 1.5, 2), Vector(-12.5, -1.5, -2)});
  return {std::move(file), std::move(grasp), std::move(answer)};
}

Sample sphere_of_four() {
  Grasp grasp;
  grasp.name = "Four on a sphere";
  const Vector centre(0.3, 0.1, 0.05);
  const std::vector<Vector> outwards = {Vector(1, 1, 1), Vector(1, -1, -1), Vector(-1, 1, -1),
                                        Vector(-1, -1, 1)};
  std::vector<Vector> forces;
  for (std::size_t i = 0; i < outwards.size(); ++i) {
    const Vector out = outwards[i].normalized();
    grasp.contacts.push_back(
        contact("finger " + std::to_string(i + 1), centre + 0.04 * out, -out, 0.3));
    forces.emplace_back(-8.0 * out);
  }
  grasp.centre = centre;
  grasp.hull = grasp::BallHull{centre, 0.04};
  Answer answer = feasible(grasp, forces);
  return {"sphere", std::move(grasp), std::move(answer)};
}

/// Three fingers around, two contacts without friction above and below, one of no force.
Sample boxed() {
  Grasp grasp;
  grasp.name = "Box in a hand";
  grasp.contacts = {contact("thumb", Vector(-0.06, 0, 0), Vector::UnitX(), 0.8),
                    contact("index", Vector(0.06, 0.02, 0), -Vector::UnitX(), 0.8),
                    contact("middle", Vector(0.06, -0.02, 0), -Vector::UnitX(), 0.8),
                    contact("table", Vector(0, 0, -0.03), Vector::UnitZ(), 0),
                    contact("", Vector(0, 0, 0.03), -Vector::UnitZ(), 0),
                    contact("idle", Vector(0.03, 0.045, 0.01), -Vector::UnitY(), 0.4)};
  grasp.centre = Vector::Zero();
  grasp.hull = grasp::PointHull{box(Vector(0.06, 0.045, 0.03))};
  Answer answer = feasible(grasp, {Vector(20, 0, 0), Vector(-10, 3, 0), Vector(-10, -3, 0),
                                   Vector(0, 0, 6), Vector(0, 0, -6), Vector::Zero()});
  answer.inquiry = {grasp::Question::kIndividual, {0, 4}};
  answer.notes = {"The forces are not the only ones that are best."};
  return {"box", std::move(grasp), std::move(answer)};
}

Sample too_slippery() {
  Grasp grasp;
  grasp.name = "Wedge, friction too low";
  const double slope = 0.4;
  grasp.contacts = {contact("left", Vector(-0.02, 0, 0), Vector(1, 0, -slope), 0.1),
                    contact("right", Vector(0.02, 0, 0), Vector(-1, 0, -slope), 0.1)};
  grasp.centre = Vector(0, 0, 0.005);
  std::vector<Vector> wedge;
  for (const double y : {-0.015, 0.015}) {
    wedge.emplace_back(-0.028, y, -0.02);
    wedge.emplace_back(0.028, y, -0.02);
    wedge.emplace_back(-0.012, y, 0.02);
    wedge.emplace_back(0.012, y, 0.02);
  }
  grasp.hull = grasp::PointHull{std::move(wedge)};
  return {"infeasible", std::move(grasp),
          infeasible("no forces inside the friction cones are in balance")};
}

Sample without_hull(std::string file, std::string name, std::string thumb) {
  Sample made = pinched(std::move(file), 0.03);
  made.grasp.hull.reset();
  made.grasp.name = std::move(name);
  made.grasp.contacts[0].name = std::move(thumb);
  return made;
}

Sample hull_of(std::string file, std::vector<Vector> points) {
  Sample made = pinched(std::move(file), 0.03);
  made.grasp.hull = grasp::PointHull{std::move(points)};
  return made;
}

Sample single() {
  Grasp grasp;
  grasp.name = "One contact";
  grasp.contacts = {contact("", Vector(2, 3, 4), Vector::UnitZ(), 1)};
  grasp.centre = Vector(2, 3, 4);
  return {"single", std::move(grasp), infeasible("the contact's forces cannot cancel each other")};
}

Sample crowd() {
  Grasp grasp;
  grasp.name = "Ring of 16";
  std::vector<Vector> forces;
  for (int i = 0; i < 16; ++i) {
    const double angle = 2 * std::numbers::pi * i / 16;
    const Vector out(std::cos(angle), std::sin(angle), 0);
    grasp.contacts.push_back(contact("", 0.1 * out, -out, 0.2 + 0.25 * i));
    forces.emplace_back(-2.0 * out);
  }
  grasp.centre = Vector::Zero();
  Answer answer = feasible(grasp, forces);
  return {"crowd", std::move(grasp), std::move(answer)};
}

/// Points on a ball and inside, and many of them twice.
std::vector<Vector> cloud() {
  std::mt19937 random(5);
  std::normal_distribution<double> normal;
  std::vector<Vector> points;
  for (int i = 0; i < 150; ++i) {
    const Vector any(normal(random), normal(random), normal(random));
    points.emplace_back(0.03 * (i % 3 == 0 ? 0.5 : 1.0) * any.normalized());
    if (i % 2 == 0) points.push_back(points.back());
  }
  return points;
}

}  // namespace

const char* const kNasty =
    "</script><b onclick='x'>\"bold\"</b> <!-- & {{style}} \\ \xE2\x80\xA8 \xF0\x9F\xA4\x8F "
    "\xD8\xA7\xD8\xA8";

std::vector<Sample> all_samples() {
  std::vector<Vector> grid;
  for (int i = -2; i <= 2; ++i) {
    for (int j = -2; j <= 2; ++j) grid.emplace_back(0.015 * i, 0.01 * j, 0.01 * j);
  }
  std::vector<Vector> cells;
  for (int i = 0; i < 27; ++i) {
    cells.emplace_back(0.03 * (i % 3 - 1), 0.02 * (i / 3 % 3 - 1), 0.01 * (i / 9 - 1));
  }
  Sample nasty = without_hull("nasty", kNasty, kNasty);
  nasty.answer.notes = {kNasty};
  nasty.answer.reason = kNasty;
  Sample far_centre = pinched("far_centre", 0.03);
  far_centre.grasp.centre = Vector(0, 0, 100);
  return {pinched("pinch", 0.03),
          sphere_of_four(),
          boxed(),
          too_slippery(),
          without_hull("no_hull", "No hull", "thumb"),
          std::move(nasty),
          hull_of("flat", std::move(grid)),
          hull_of("segment", {Vector(-0.03, 0, 0), Vector(0.03, 0, 0), Vector(0.01, 0, 0)}),
          hull_of("dot", {Vector::Zero(), Vector::Zero()}),
          hull_of("nothing", {}),
          hull_of("grid", std::move(cells)),
          hull_of("cloud", cloud()),
          pinched("tiny", 0.00005),
          pinched("huge", 100),
          std::move(far_centre),
          single(),
          crowd()};
}

Sample sample(const std::string& file) {
  for (Sample& one : all_samples()) {
    if (one.file == file) return std::move(one);
  }
  throw std::out_of_range("no sample " + file);
}

}  // namespace page_samples
