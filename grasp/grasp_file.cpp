#include "grasp/grasp_file.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <string>

#include "grasp/geometry.h"
#include "host/text.h"

namespace grasp {
namespace {

using zelhost::JsonNode;

// In metres: beyond it is a slip of units, and products of coordinates stay finite.
constexpr double kFarthest = 1e9;
// For forces and coefficients: the host's numbers are single precision.
constexpr double kLargest = 1e30;
// And smaller ones than this are 0 for it.
constexpr double kSmallest = 1e-30;
// More take the solver hours, and memory in proportion to their square.
constexpr std::size_t kMaxContacts = 300;
// Sine of the angle under which a tangent is along the normal.
constexpr double kAlong = 1e-6;
// Contacts nearer than this part of the grasp's size are one,
constexpr double kCoincident = 1e-9;
// and those nearer than this part of their coordinates: they are apart by rounding.
constexpr double kRounding = 1e-11;
// A longer name would push what is wrong out of sight.
constexpr std::size_t kLongestName = 60;

// What a file says for all contacts that say nothing themselves.
struct Defaults {
  std::optional<double> friction;
  std::optional<double> max_force;
};

// A contact while it is read: what is said about it begins with its number and name.
struct Place {
  std::size_t number;
  std::string name;

  [[noreturn]] void fail(const JsonNode& at, const std::string& what) const {
    const std::string quoted =
        name.empty() ? "" : " \"" + zelhost::on_one_line(name, kLongestName) + "\"";
    at.fail("contact " + std::to_string(number) + quoted + ": " + what);
  }
};

double read_number(const JsonNode& node, std::string_view what, double most) {
  if (!node.value().is_number()) node.fail("this takes " + std::string(what) + ", a number");
  const auto number = node.value().get<double>();
  if (!(std::abs(number) <= most))
    node.fail(most == kFarthest ? "the number is beyond 1e9; lengths are in metres"
                                : "the number is beyond 1e30");
  return number;
}

// Of what the solver is given in single precision.
double read_quantity(const JsonNode& node, std::string_view what) {
  const double quantity = read_number(node, what, kLargest);
  if (quantity != 0 && std::abs(quantity) < kSmallest)
    node.fail("the number is nearer to 0 than 1e-30; if it is to be 0, write 0");
  return quantity;
}

Vector read_vector(const JsonNode& node, const std::string& what, double most = kFarthest) {
  const auto numbers = node.elements(what + ", three numbers");
  if (numbers.size() != 3)
    node.fail("this takes " + what + ", three numbers, not " + std::to_string(numbers.size()));
  Vector vector;
  for (std::size_t i = 0; i < 3; ++i)
    vector[static_cast<Eigen::Index>(i)] = read_number(numbers[i], "a coordinate", most);
  return vector;
}

void fail(const JsonNode& node, const Place* place, const std::string& what) {
  if (place != nullptr) place->fail(node, what);
  node.fail(what);
}

// @param place none: of all contacts.
double read_friction(const JsonNode& node, const Place* place) {
  const double friction = read_quantity(node, "a friction coefficient");
  if (friction < 0) fail(node, place, "a friction coefficient is negative; it is 0 or above");
  return friction;
}

double read_max_force(const JsonNode& node, const Place* place) {
  const double force = read_quantity(node, "a force in newtons");
  if (force <= 0) fail(node, place, "a maximal force is above 0");
  return force;
}

Bounds read_bounds(const JsonNode& node, const Place& place) {
  const auto pair = node.elements("the lower and the upper bound in newtons");
  if (pair.size() != 2)
    place.fail(node, "this takes two numbers, the lower and the upper bound, not " +
                         std::to_string(pair.size()));
  const Bounds bounds = {read_quantity(pair[0], "a bound"), read_quantity(pair[1], "a bound")};
  if (bounds.lower > bounds.upper) place.fail(node, "the lower bound is above the upper bound");
  return bounds;
}

ContactType read_type(const JsonNode& node, const Place& place) {
  const std::string type = node.text("the type of a contact");
  if (type == "friction") return ContactType::kFriction;
  if (type == "frictionless") return ContactType::kFrictionless;
  place.fail(node, "there is no type \"" + type + R"("; the types are "friction", "frictionless")");
}

Frame read_frame(const JsonNode& node, const Place& place) {
  const JsonNode at = node.member("normal");
  const Vector normal = read_vector(at, "a direction", kLargest);
  if (normal.isZero(0)) place.fail(at, "a normal of length 0 has no direction");
  if (!node.has("tangent")) return make_frame(normal, std::nullopt);
  const JsonNode tangent_at = node.member("tangent");
  const Vector tangent = read_vector(tangent_at, "a direction", kLargest);
  if (tangent.isZero(0)) place.fail(tangent_at, "a tangent of length 0 has no direction");
  const double sine = tangent.stableNormalized().cross(normal.stableNormalized()).norm();
  if (sine < kAlong) place.fail(tangent_at, "the tangent is along the normal");
  return make_frame(normal, tangent);
}

std::vector<Bounds> read_limits(const JsonNode& node, const Place& place, ContactType type,
                                const Defaults& defaults) {
  if (node.has("bounds")) {
    if (node.has("max_force")) place.fail(node, R"(either "bounds" or "max_force", not both)");
    const JsonNode bounds = node.member("bounds");
    if (type == ContactType::kFrictionless) {
      for (const char* key : {"tangential_1", "tangential_2"})
        if (bounds.has(key))
          place.fail(bounds, "a frictionless contact has one force component, \"normal\"");
      bounds.expect_keys({"normal"});
      return {read_bounds(bounds.member("normal"), place)};
    }
    bounds.expect_keys({"tangential_1", "tangential_2", "normal"});
    return {read_bounds(bounds.member("tangential_1"), place),
            read_bounds(bounds.member("tangential_2"), place),
            read_bounds(bounds.member("normal"), place)};
  }
  std::optional<double> given = defaults.max_force;
  if (node.has("max_force")) given = read_max_force(node.member("max_force"), &place);
  if (!given)
    place.fail(node,
               "how strong is it? Give \"max_force\" or \"bounds\" here, or \"max_force\" for all "
               "contacts, beside \"contacts\"");
  const double force = *given;
  if (type == ContactType::kFrictionless) return {{0, force}};
  return {{-force, force}, {-force, force}, {0, force}};
}

double read_contact_friction(const JsonNode& node, const Place& place, ContactType type,
                             const Defaults& defaults) {
  if (type == ContactType::kFrictionless) {
    if (node.has("friction"))
      place.fail(node.member("friction"), "a frictionless contact has no friction coefficient");
    return 0;
  }
  if (node.has("friction")) return read_friction(node.member("friction"), &place);
  if (!defaults.friction)
    place.fail(node,
               "the friction coefficient is missing; give \"friction\" here, or for all contacts, "
               "beside \"contacts\"");
  return *defaults.friction;
}

Contact read_contact(const JsonNode& node, std::size_t number, const Defaults& defaults) {
  Place place{number, {}};
  node.expect_keys({"point", "normal"},
                   {"name", "tangent", "type", "friction", "max_force", "bounds"});
  Contact contact;
  if (node.has("name")) {
    contact.name = node.member("name").text("the name of a contact");
    if (contact.name.empty()) place.fail(node.member("name"), "a name is not empty");
    place.name = contact.name;
  }
  contact.point = read_vector(node.member("point"), "a point in metres");
  contact.frame = read_frame(node, place);
  if (node.has("type")) contact.type = read_type(node.member("type"), place);
  contact.friction = read_contact_friction(node, place, contact.type, defaults);
  contact.bounds = read_limits(node, place, contact.type, defaults);
  return contact;
}

std::variant<PointHull, BallHull> read_hull(const JsonNode& node) {
  if (node.value().is_object()) {
    node.expect_keys({"centre", "radius"});
    const BallHull ball = {read_vector(node.member("centre"), "a point in metres"),
                           read_number(node.member("radius"), "a radius in metres", kFarthest)};
    if (ball.radius <= 0) node.member("radius").fail("a radius is above 0");
    return ball;
  }
  PointHull hull;
  for (const JsonNode& point :
       node.elements("the corners of the object, or a \"centre\" and a \"radius\""))
    hull.points.push_back(read_vector(point, "a point in metres"));
  if (hull.points.empty()) node.fail("a hull has at least one corner");
  return hull;
}

// Notes are for people who read the file.
void expect_text(const JsonNode& node) {
  static_cast<void>(node.text("a line of text"));
}

void expect_apart(const JsonNode& contacts_at, const std::vector<Contact>& contacts) {
  double near = 0;
  for (const Contact& contact : contacts)
    near = std::max({near, kCoincident * (contact.point - contacts.front().point).norm(),
                     kRounding * contact.point.norm()});
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    const Place place{i, contacts[i].name};
    const JsonNode at = contacts_at.element(i);
    for (std::size_t j = 0; j < i; ++j) {
      if ((contacts[i].point - contacts[j].point).norm() <= near)
        place.fail(at.member("point"), "this is the point of contact " + std::to_string(j) +
                                           " too; contacts are apart");
      if (!place.name.empty() && contacts[j].name == place.name)
        place.fail(at.member("name"), "contact " + std::to_string(j) + " has this name too");
    }
  }
}

}  // namespace

Grasp read_grasp(const JsonNode& node) {
  node.expect_keys({"contacts"}, {"name", "notes", "friction", "max_force", "centre", "hull"});
  Grasp grasp;
  if (node.has("name")) grasp.name = node.member("name").text("the name of the grasp");
  if (node.has("notes"))
    for (const JsonNode& note : node.member("notes").elements("lines of text")) expect_text(note);
  Defaults defaults;
  if (node.has("friction")) defaults.friction = read_friction(node.member("friction"), nullptr);
  if (node.has("max_force")) defaults.max_force = read_max_force(node.member("max_force"), nullptr);

  const JsonNode contacts_at = node.member("contacts");
  const auto contacts = contacts_at.elements("contacts");
  if (contacts.size() > kMaxContacts)
    contacts_at.fail("a grasp has at most " + std::to_string(kMaxContacts) + " contacts, not " +
                     std::to_string(contacts.size()));
  for (const JsonNode& contact : contacts)
    grasp.contacts.push_back(read_contact(contact, grasp.contacts.size(), defaults));
  if (grasp.contacts.empty()) contacts_at.fail("a grasp has at least one contact");
  expect_apart(contacts_at, grasp.contacts);

  grasp.centre = node.has("centre") ? read_vector(node.member("centre"), "a point in metres")
                                    : centroid(grasp.contacts);
  if (node.has("hull")) grasp.hull = read_hull(node.member("hull"));
  return grasp;
}

}  // namespace grasp
