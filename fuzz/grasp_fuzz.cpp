// Files of grasps: refused with a place in the text, or read as a grasp
//   - that is the same when its document is written and read again, and when it is written
//     out with nothing left to defaults,
//   - whose frames are right-handed and orthonormal,
//   - whose internal forces are a base of the nullspace of its map, and balance,
//   - whose bounds and friction reach the unit rounded outwards.
#include <Eigen/Cholesky>
#include <Eigen/Geometry>
#include <Eigen/QR>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "fuzz/json_places.h"
#include "fuzz/oracle.h"
#include "grasp/contact_forces.h"
#include "grasp/geometry.h"
#include "grasp/grasp_file.h"
#include "grasp/nullspace.h"
#include "grasp/unit_inputs.h"

namespace {

using fuzz::require;
using grasp::Bounds;
using grasp::Contact;
using grasp::ContactType;
using grasp::Frame;
using grasp::Grasp;
using grasp::GraspMap;
using grasp::Nullspace;
using zelhost::Json;

constexpr double kRounding = 1e-12;
// More would only take longer.
constexpr std::size_t kManyContacts = 12;

Json list(const grasp::Vector& vector) {
  return {vector.x(), vector.y(), vector.z()};
}

/// All that is known of a contact, with nothing left to defaults.
Json written_out(const Contact& contact) {
  const auto pair = [&](std::size_t i) {
    return Json{contact.bounds[i].lower, contact.bounds[i].upper};
  };
  Json json = {{"point", list(contact.point)},
               {"normal", list(contact.frame.normal)},
               {"tangent", list(contact.frame.tangential_1)}};
  if (!contact.name.empty()) json["name"] = contact.name;
  if (contact.type == ContactType::kFrictionless) {
    json["type"] = "frictionless";
    json["bounds"] = {{"normal", pair(0)}};
  } else {
    json["friction"] = contact.friction;
    json["bounds"] = {{"tangential_1", pair(0)}, {"tangential_2", pair(1)}, {"normal", pair(2)}};
  }
  return json;
}

Json written_out(const Grasp& grasp) {
  Json json = {{"name", grasp.name}, {"centre", list(grasp.centre)}, {"contacts", Json::array()}};
  for (const Contact& contact : grasp.contacts) json["contacts"].push_back(written_out(contact));
  return json;
}

Grasp read(const Json& document) {
  return grasp::read_grasp(zelhost::JsonNode(document, "again.json", ""));
}

double difference(const Frame& a, const Frame& b) {
  return (a.normal - b.normal).norm() + (a.tangential_1 - b.tangential_1).norm() +
         (a.tangential_2 - b.tangential_2).norm();
}

/// @param turned how far frames may be from one another.
void require_same(const Grasp& a, const Grasp& b, double turned) {
  require(a.name == b.name && a.centre == b.centre, "another grasp");
  require(a.contacts.size() == b.contacts.size(), "another number of contacts");
  for (std::size_t i = 0; i < a.contacts.size(); ++i) {
    const Contact& one = a.contacts[i];
    const Contact& other = b.contacts[i];
    require(one.name == other.name && one.point == other.point && one.type == other.type &&
                one.friction == other.friction && one.bounds.size() == other.bounds.size(),
            "another contact");
    for (std::size_t k = 0; k < one.bounds.size(); ++k) {
      require(one.bounds[k].lower == other.bounds[k].lower &&
                  one.bounds[k].upper == other.bounds[k].upper,
              "other bounds");
    }
    require(difference(one.frame, other.frame) <= turned, "another frame");
  }
}

void require_orthonormal(const Frame& frame) {
  Eigen::Matrix3d axes;
  axes << frame.tangential_1, frame.tangential_2, frame.normal;
  const Eigen::Matrix3d product = axes.transpose() * axes;
  require((product - Eigen::Matrix3d::Identity()).norm() <= kRounding, "a frame with a slant");
  require(std::abs(axes.determinant() - 1) <= kRounding, "a left-handed frame");
}

void require_base(const GraspMap& map, const Nullspace& space) {
  const auto& [rank, columns, nullity, smallest_kept, largest_dropped] = space.balance;
  require(columns == map.cols() && nullity == columns - rank && rank >= 1 && rank <= 6,
          "a rank that cannot be");
  require(space.base.rows() == columns && space.base.cols() == nullity, "a base of another shape");
  require(smallest_kept > grasp::kRankTolerance && smallest_kept <= 1 &&
              largest_dropped <= grasp::kRankTolerance,
          "singular values on the wrong side");
  const double size = map.norm();
  // Entries at the level of rounding are set to 0.
  const double rounding = 1e-12 + 1e-13 * columns / smallest_kept;
  if (nullity > 0) {
    const Eigen::MatrixXd product = space.base.transpose() * space.base;
    require((product - Eigen::MatrixXd::Identity(nullity, nullity)).norm() <= 10 * rounding,
            "a base that is not orthonormal");
    require((map * space.base).norm() <= size * (largest_dropped + rounding) * std::sqrt(nullity),
            "a base outside the nullspace");
  }
  // All of it: whatever stands across the base is moved by the map.
  const Eigen::MatrixXd rest =
      Eigen::MatrixXd::Identity(columns, columns) - space.base * space.base.transpose();
  const Eigen::MatrixXd across =
      rest.colPivHouseholderQr().householderQ() * Eigen::MatrixXd::Identity(columns, rank);
  const Eigen::MatrixXd moved = map * across;
  const double smallest = std::sqrt(
      std::max(0.0, Eigen::MatrixXd(moved.transpose() * moved).ldlt().vectorD().minCoeff()));
  require(smallest >= smallest_kept * size / (10 * columns) - 1e-7 * size,
          "a direction that the base misses");
}

/// Forces along the base cancel each other, where the nullspace is one beyond doubt.
void require_balance(const Grasp& grasp, const Nullspace& space) {
  double farthest = 0;
  for (const Contact& contact : grasp.contacts)
    farthest = std::max(farthest, (contact.point - grasp.contacts[0].point).norm());
  const double part = space.balance.largest_dropped * 6 +
                      1e-12 * space.balance.columns / space.balance.smallest_kept;
  for (Eigen::Index column = 0; column < space.base.cols(); ++column) {
    grasp::Vector force = grasp::Vector::Zero();
    grasp::Vector torque = grasp::Vector::Zero();
    std::size_t i = 0;
    for (const auto& each : contact_forces(grasp, space.base.col(column))) {
      force += each.world;
      torque += (grasp.contacts[i++].point - grasp.contacts[0].point).cross(each.world);
    }
    const auto contacts = static_cast<double>(grasp.contacts.size());
    require(force.norm() <= part * 10 * contacts, "forces that do not balance");
    require(torque.norm() <= part * 10 * contacts * farthest, "torques that do not balance");
  }
}

/// What the unit writes for a number: six digits.
double six_digits(float number) {
  std::array<char, 32> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%.6g", static_cast<double>(number)));
  return std::strtod(text.data(), nullptr);
}

void require_outwards(const Grasp& grasp, const Nullspace& space) {
  const grasp::UnitInputs inputs = unit_inputs(grasp, space.base);
  require(inputs.base.size() == static_cast<std::size_t>(space.base.size()) &&
              inputs.friction.size() == grasp.contacts.size() &&
              inputs.types.size() == grasp.contacts.size() &&
              inputs.bounds.size() == 2 * grasp.components(),
          "lists of other lengths");
  std::size_t bound = 0;
  for (std::size_t i = 0; i < grasp.contacts.size(); ++i) {
    const Contact& contact = grasp.contacts[i];
    const auto near = [](double a, double b) { return std::abs(a - b) <= 3e-5 * std::abs(b); };
    const double friction = six_digits(inputs.friction[i]);
    require(friction >= contact.friction && near(friction, contact.friction),
            "friction is not rounded outwards");
    for (const Bounds& limits : contact.bounds) {
      const double lower = six_digits(inputs.bounds[bound++]);
      const double upper = six_digits(inputs.bounds[bound++]);
      require(lower <= limits.lower && near(lower, limits.lower), "a lower bound not outwards");
      require(upper >= limits.upper && near(upper, limits.upper), "an upper bound not outwards");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::text_of(data, size);
  Json document;
  Grasp grasp;
  try {
    document = zelhost::parse_json(text, "fuzz.json");
    grasp = grasp::read_grasp(zelhost::JsonNode(document, "fuzz.json", ""));
  } catch (const zelhost::JsonError& error) {
    fuzz::require_placed(error, "fuzz.json", text);
    return 0;
  }
  require_same(grasp, read(zelhost::parse_json(document.dump(), "again.json")), 0);
  require_same(grasp, read(written_out(grasp)), kRounding);
  if (grasp.contacts.size() > kManyContacts) return 0;
  for (const Contact& contact : grasp.contacts) require_orthonormal(contact.frame);
  const GraspMap map = weighed_grasp_map(grasp);
  const Nullspace space = grasp::nullspace(map);
  require_base(map, space);
  require_balance(grasp, space);
  require_outwards(grasp, space);
  return 0;
}
