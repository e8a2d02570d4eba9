// The page is a template with places for its parts. What a grasp brings along goes in as
// one JSON text, from which the scripts of the page build what is seen: so there is one
// place where names have to be kept from becoming markup.
#include "grasp/page_html.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <variant>

#include "host/json_reader.h"

// The files of page/ and of three.js, put into the program when it is built.
extern "C" {
extern const char grasp_page_html[];
extern const char grasp_page_style[];
extern const char grasp_page_report[];
extern const char grasp_page_licence[];
extern const char grasp_page_three[];
extern const char grasp_page_controls[];
extern const char grasp_page_hull[];
extern const char grasp_page_shapes[];
extern const char grasp_page_scene[];
extern const char grasp_page_labels[];
extern const char grasp_page_view[];
}

namespace grasp {
namespace {

using zelhost::Json;

struct Part {
  std::string_view place;
  std::string_view text;
};

Json coordinates(const Vector& vector) {
  return {vector.x(), vector.y(), vector.z()};
}

template <typename Number>
Json known(const std::optional<Number>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json to_page(const ContactForce& force) {
  return {{"local", coordinates(force.local)},
          {"world", coordinates(force.world)},
          {"cone_margin", force.cone_margin},
          {"bound_margin", force.bound_margin},
          {"epsilon", known(force.epsilon)}};
}

Json to_page(const PointHull& hull) {
  if (hull.points.empty()) return nullptr;
  Json points = Json::array();
  for (const Vector& point : hull.points) points.push_back(coordinates(point));
  return {{"points", std::move(points)}};
}

Json to_page(const BallHull& hull) {
  return {{"centre", coordinates(hull.centre)}, {"radius", hull.radius}};
}

Json to_page(const Grasp& grasp, const Answer& answer) {
  Json contacts = Json::array();
  for (std::size_t i = 0; i < grasp.contacts.size(); ++i) {
    const Contact& contact = grasp.contacts[i];
    contacts.push_back(
        {{"label", grasp.label(i)},
         {"type", contact.type == ContactType::kFriction ? "friction" : "frictionless"},
         {"friction", contact.friction},
         {"point", coordinates(contact.point)},
         {"normal", coordinates(contact.frame.normal)},
         {"force", i < answer.forces.size() ? to_page(answer.forces[i]) : Json(nullptr)}});
  }
  Json about = Json::array();
  for (const std::size_t contact : answer.inquiry.contacts) about.push_back(grasp.label(contact));
  Json hull;
  if (grasp.hull) hull = std::visit([](const auto& shape) { return to_page(shape); }, *grasp.hull);
  return {{"name", grasp.name},
          {"verdict", to_string(answer.verdict)},
          {"reason", answer.reason},
          {"question", to_string(answer.inquiry.question)},
          {"about", std::move(about)},
          {"objective", known(answer.objective)},
          {"mean_epsilon", known(answer.mean_epsilon)},
          {"notes", answer.notes},
          {"centre", coordinates(grasp.centre)},
          {"hull", std::move(hull)},
          {"contacts", std::move(contacts)}};
}

/// JSON that no script element ends in: a "<" stands only in texts, which may write it
/// as an escape. Bytes that are no UTF-8 become the sign for that.
std::string json_in_script(const Json& json) {
  std::string text;
  for (const char c : json.dump(-1, ' ', false, Json::error_handler_t::replace)) {
    if (c == '<') {
      text += "\\u003c";
    } else {
      text += c;
    }
  }
  return text;
}

/// Fills the places {{NAME}} of the template. What goes in is not looked at again.
std::string fill(std::string_view page, const auto& parts) {
  std::string filled;
  std::size_t size = page.size();
  for (const Part& part : parts) size += part.text.size();
  filled.reserve(size);
  while (true) {
    const std::size_t begin = page.find("{{");
    filled += page.substr(0, begin);
    if (begin == std::string_view::npos) return filled;
    const std::size_t end = page.find("}}", begin);
    const std::string_view place = page.substr(begin + 2, end - begin - 2);
    const auto part = std::find_if(parts.begin(), parts.end(),
                                   [&](const Part& one) { return one.place == place; });
    if (part == parts.end()) throw std::logic_error("no part for " + std::string(place));
    filled += part->text;
    page.remove_prefix(end + 2);
  }
}

}  // namespace

std::string draw_html(const Grasp& grasp, const Answer& answer) {
  const std::string json = json_in_script(to_page(grasp, answer));
  const std::array parts = {Part{"style", grasp_page_style},
                            Part{"report", grasp_page_report},
                            Part{"licence", grasp_page_licence},
                            Part{"three", grasp_page_three},
                            Part{"controls", grasp_page_controls},
                            Part{"hull", grasp_page_hull},
                            Part{"shapes", grasp_page_shapes},
                            Part{"scene", grasp_page_scene},
                            Part{"labels", grasp_page_labels},
                            Part{"view", grasp_page_view},
                            Part{"grasp", json}};
  return fill(grasp_page_html, parts);
}

}  // namespace grasp
