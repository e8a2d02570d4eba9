// Only what every machine computes alike: sums, products, quotients, square roots and
// rounding to a decimal, no functions of the mathematical library.
#include "grasp/batch/random_grasps.h"

#include <array>
#include <cmath>
#include <cstdlib>

namespace grasp {
namespace {

using Triple = std::array<double, 3>;

// Makes about half of the grasps feasible.
constexpr double kOneSided = 0.45;

// With that many digits behind the point, and none that are not needed.
std::string written(double number, int digits) {
  long long scale = 1;
  for (int i = 0; i < digits; ++i) scale *= 10;
  const long long rounded = std::llround(number * static_cast<double>(scale));
  std::string behind = std::to_string(std::llabs(rounded) % scale);
  behind.insert(0, static_cast<std::size_t>(digits) - behind.size(), '0');
  while (behind.size() > 1 && behind.back() == '0') behind.pop_back();
  return (rounded < 0 ? "-" : "") + std::to_string(std::llabs(rounded) / scale) + "." + behind;
}

std::string written(const Triple& triple, int digits) {
  return "[" + written(triple[0], digits) + ", " + written(triple[1], digits) + ", " +
         written(triple[2], digits) + "]";
}

constexpr int kPlaceDigits = 5;  // a hundredth of a millimetre
constexpr int kDirectionDigits = 4;
constexpr int kForceDigits = 2;
constexpr int kFrictionDigits = 4;

Triple scaled(const Triple& triple, double factor) {
  return {triple[0] * factor, triple[1] * factor, triple[2] * factor};
}

Triple sum(const Triple& a, const Triple& b) {
  return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

double product(const Triple& a, const Triple& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

}  // namespace

// A ball is an ellipsoid with equal axes.
struct RandomGrasps::Shape {
  bool is_box = false;
  bool is_ball = false;
  Triple centre = {};
  Triple half = {};  ///< half axes, half sides
};

struct RandomGrasps::Contact {
  Triple point = {};
  Triple normal = {};
};

RandomGrasps::RandomGrasps(std::uint64_t seed, std::optional<std::size_t> contacts)
    : bits_(seed), contacts_(contacts) {}

double RandomGrasps::uniform(double from, double to) {
  // 53 bits, all that a double holds.
  constexpr double kUnit = 1.0 / 9007199254740992.0;
  return from + (to - from) * (static_cast<double>(bits_() >> 11) * kUnit);
}

std::size_t RandomGrasps::below(std::size_t count) {
  return static_cast<std::size_t>(uniform(0, static_cast<double>(count)));
}

std::array<double, 3> RandomGrasps::direction() {
  for (;;) {
    // One after the other: the order in a call would be the compiler's.
    Triple any = {};
    for (double& each : any) each = uniform(-1, 1);
    const double square = product(any, any);
    if (square > 0.01 && square <= 1) return scaled(any, 1 / std::sqrt(square));
  }
}

RandomGrasps::Shape RandomGrasps::shape() {
  Shape shape;
  const std::size_t kind = below(3);
  shape.is_ball = kind == 0;
  shape.is_box = kind == 1;
  for (double& each : shape.centre) each = uniform(-0.2, 0.2);
  for (double& each : shape.half) each = uniform(0.015, 0.06);
  if (shape.is_ball) shape.half = {shape.half[0], shape.half[0], shape.half[0]};
  return shape;
}

RandomGrasps::Contact RandomGrasps::touch(const Shape& shape, const Triple& towards) {
  Triple from_centre = {};
  Triple normal = {};
  if (shape.is_box) {
    std::size_t face = 0;
    for (std::size_t i = 1; i < 3; ++i)
      if (std::abs(towards[i]) > std::abs(towards[face])) face = i;
    const double side = towards[face] < 0 ? -1 : 1;
    for (std::size_t i = 0; i < 3; ++i)
      from_centre[i] = (i == face ? side : uniform(-0.9, 0.9)) * shape.half[i];
    normal[face] = -side;
  } else {
    for (std::size_t i = 0; i < 3; ++i) {
      from_centre[i] = shape.half[i] * towards[i];
      normal[i] = -towards[i] / shape.half[i];
    }
    normal = scaled(normal, 1 / std::sqrt(product(normal, normal)));
  }
  // Sensors and surfaces are not as exact as shapes.
  for (double& each : from_centre) each += uniform(-0.0005, 0.0005);
  const double tilt = uniform(0, 0.08);
  normal = sum(normal, scaled(direction(), tilt));
  return {sum(shape.centre, from_centre), normal};
}

std::string RandomGrasps::contact(const Shape& shape, const Triple& towards) {
  const Contact made = touch(shape, towards);
  std::string text = "{\"point\": " + written(made.point, kPlaceDigits) +
                     ", \"normal\": " + written(made.normal, kDirectionDigits);
  const bool is_frictionless = uniform(0, 1) < 0.1;
  if (is_frictionless)
    text += ", \"type\": \"frictionless\"";
  else if (uniform(0, 1) < 0.5)
    text += ", \"friction\": " + written(uniform(0.2, 1), kFrictionDigits);
  const double force = uniform(5, 30);
  const double least = uniform(0, 0.5);
  if (uniform(0, 1) < 0.15) {
    const std::string most = written(force, kForceDigits);
    text += ", \"bounds\": {";
    if (!is_frictionless)
      text += "\"tangential_1\": [-" + most + ", " + most + "], \"tangential_2\": [-" + most +
              ", " + most + "], ";
    text += "\"normal\": [" + written(least, kForceDigits) + ", " + most + "]}";
  } else if (uniform(0, 1) < 0.5) {
    text += ", \"max_force\": " + written(force, kForceDigits);
  }
  return text + "}";
}

std::string RandomGrasps::hull(const Shape& shape) {
  if (shape.is_ball)
    return ", \"hull\": {\"centre\": " + written(shape.centre, kPlaceDigits) +
           ", \"radius\": " + written(shape.half[0], kPlaceDigits) + "}";
  if (!shape.is_box) return "";
  std::string text = ", \"hull\": [";
  for (unsigned corner = 0; corner < 8; ++corner) {
    Triple at = shape.centre;
    for (unsigned i = 0; i < 3; ++i)
      at[i] += ((corner >> i) & 1U) != 0 ? shape.half[i] : -shape.half[i];
    text += (corner == 0 ? "" : ", ") + written(at, kPlaceDigits);
  }
  return text + "]";
}

std::size_t RandomGrasps::count() {
  if (contacts_) return *contacts_;
  if (uniform(0, 1) < 0.6) return 4;
  return kFewestContacts + below(7);
}

std::string RandomGrasps::next() {
  const Shape made = shape();
  const std::size_t contacts = count();
  const double force = uniform(5, 30);
  const double friction = uniform(0.2, 1);
  std::string text = "{\"name\": \"grasp " + std::to_string(++number_) +
                     "\", \"friction\": " + written(friction, kFrictionDigits) +
                     ", \"max_force\": " + written(force, kForceDigits);
  if (uniform(0, 1) < 0.5) text += ", \"centre\": " + written(made.centre, kPlaceDigits);
  text += hull(made);
  text += ", \"contacts\": [";
  const bool is_one_sided = uniform(0, 1) < kOneSided;
  const Triple side = direction();
  Triple last = {};
  for (std::size_t i = 0; i < contacts; ++i) {
    Triple towards = direction();
    // Fingers oppose each other.
    if (i % 2 == 1 && !is_one_sided) towards = sum(scaled(last, -1), scaled(towards, 0.3));
    if (is_one_sided && product(towards, side) < 0) towards = scaled(towards, -1);
    towards = scaled(towards, 1 / std::sqrt(product(towards, towards)));
    last = towards;
    text += (i == 0 ? "" : ", ") + contact(made, towards);
  }
  return text + "]}";
}

}  // namespace grasp
