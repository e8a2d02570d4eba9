#include "grasp/report_json.h"

#include <nlohmann/json.hpp>

#include "host/literal.h"

namespace grasp {
namespace {

using zelhost::Json;

Json list_of(const Vector& vector) {
  return {vector.x(), vector.y(), vector.z()};
}

// What came through the host in single precision.
double single(double value) {
  return zelhost::shortest(static_cast<float>(value));
}

Json contact_json(const Grasp& grasp, std::size_t i, const ContactForce& force) {
  Json json = {{"contact", i}};
  if (!grasp.contacts[i].name.empty()) json["name"] = grasp.contacts[i].name;
  json["force"] = list_of(force.local);
  json["world"] = list_of(force.world);
  json["cone_margin"] = force.cone_margin;
  json["bound_margin"] = force.bound_margin;
  if (force.epsilon) json["epsilon"] = single(*force.epsilon);
  return json;
}

Json map_json(const Balance& balance) {
  Json json = {{"rank", balance.rank},
               {"columns", balance.columns},
               {"nullity", balance.nullity},
               {"smallest_singular_value", balance.smallest_kept}};
  if (balance.largest_dropped > 0) json["taken_for_0"] = balance.largest_dropped;
  return json;
}

}  // namespace

Json to_json(const Grasp& grasp, const Answer& answer, bool times) {
  Json json;
  if (!grasp.name.empty()) json["name"] = grasp.name;
  json["question"] = to_string(answer.inquiry.question);
  if (!answer.inquiry.contacts.empty()) json["about"] = answer.inquiry.contacts;
  json["verdict"] = to_string(answer.verdict);
  if (!answer.reason.empty()) json["reason"] = answer.reason;
  json["notes"] = answer.notes;
  if (answer.force_closure) json["force_closure"] = *answer.force_closure;
  json["grasp_map"] = map_json(answer.balance);
  if (answer.verdict == Verdict::kFeasible) {
    if (answer.objective) json["objective"] = single(*answer.objective);
    if (answer.mean_epsilon) json["mean_epsilon"] = *answer.mean_epsilon;
    json["contacts"] = Json::array();
    for (std::size_t i = 0; i < answer.forces.size(); ++i)
      json["contacts"].push_back(contact_json(grasp, i, answer.forces[i]));
    json["residual"] = {{"force", answer.force_residual}, {"torque", answer.torque_residual}};
  }
  if (times) json["times"] = {{"solving", answer.solving_time}};
  return json;
}

std::string to_text(const Json& answer) {
  const auto dumped = [](const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
  };
  std::string text = "{";
  for (const auto& [key, value] : answer.items()) {
    text += text.size() == 1 ? "\n  " : ",\n  ";
    text += dumped(key) + ": ";
    if (key != "contacts") {
      text += dumped(value);
      continue;
    }
    const char* before = "[\n    ";
    for (const Json& contact : value) {
      text += before + dumped(contact);
      before = ",\n    ";
    }
    text += "\n  ]";
  }
  return text + "\n}\n";
}

}  // namespace grasp
