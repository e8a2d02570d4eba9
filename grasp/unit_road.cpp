#include "grasp/unit_road.h"

#include <chrono>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <utility>

namespace grasp {
namespace {

using zelhost::Method;

constexpr const char* kDefinitionFile = "definition";
constexpr const char* kResultFile = "result";

zelhost::Instance create(zelhost::Host& host, const Road& road) {
  const zelhost::Plugin plugin = zelhost::load_plugin(road.plugin);
  const zelhost::Icon* const icon = plugin.find("sdpsol");
  if (icon == nullptr) throw AskError(road.plugin.string() + ": it has no icon \"sdpsol\"");
  return host.create(*icon, {road.command, kDefinitionFile, kResultFile});
}

const char* method_of(Question question) {
  switch (question) {
    case Question::kExists:
      return "IntForce:Exists";
    case Question::kIndividual:
      return "IntForce:Maximize_Individual";
    case Question::kPoint:
      return "IntForce:Maximize_PointCont";
    case Question::kFriction:
      return "IntForce:Maximize_FrictConts";
    case Question::kAll:
      return "IntForce:Maximize_All";
  }
  return "";
}

const Method& find(const zelhost::Instance& instance, const char* name, std::size_t inputs,
                   std::size_t outputs) {
  const Method* const method = instance.find(name);
  if (method == nullptr || method->unit->inputs().size() < inputs ||
      method->unit->outputs().size() < outputs)
    throw AskError(std::string("the plug-in has no method ") + name + " with the ports it needs");
  return *method;
}

void set_inputs(zelhost::Unit& unit, const UnitInputs& inputs, const Inquiry& inquiry) {
  auto& ports = unit.inputs();
  ports[0].set(inputs.base);
  ports[1].set(inputs.friction);
  ports[2].set(inputs.bounds);
  ports[3].set(inputs.types);
  if (inquiry.question == Question::kIndividual)
    ports[4].set(std::vector<std::int32_t>(inquiry.contacts.begin(), inquiry.contacts.end()));
  if (inquiry.question == Question::kPoint)
    ports[4].set(std::vector<float>{static_cast<float>(inquiry.contacts.front())});
}

std::vector<double> floats(const zelhost::Port& port) {
  const zelhost::PortValue value = port.value();
  const auto* const list = std::get_if<std::vector<float>>(&value);
  if (list == nullptr) throw AskError("a port of the plug-in holds no floats");
  return {list->begin(), list->end()};
}

double number(const zelhost::Port& port) {
  const std::vector<double> list = floats(port);
  if (list.size() != 1) throw AskError("a port of the plug-in holds not one float");
  return list.front();
}

void fire(zelhost::Host& host, const Method& method) {
  if (host.fire(*method.unit) != 0) throw AskError("the method " + method.name + " failed");
  for (const zelhost::Report& report : host.take_reports())
    throw AskError("the plug-in broke the interface of its host: " + report.text);
}

const char* meaning(int code) {
  switch (code) {
    case 1:
      return "the definition file could not be written";
    case 2:
      return "the command could not be run, or ended with an error";
    case 3:
      return "the command left no result file";
    default:
      return "the result could not be read";
  }
}

std::string read_file(const char* name) {
  std::ifstream in(name, std::ios::binary);
  if (!in) throw AskError(std::string("the file \"") + name + "\" cannot be read");
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

UnitRoad::UnitRoad(const Road& road) : instance_(create(host_, road)) {}

UnitAnswer UnitRoad::ask(const UnitInputs& inputs, const Inquiry& inquiry) {
  const bool has_extra =
      inquiry.question == Question::kIndividual || inquiry.question == Question::kPoint;
  const Method& method = find(instance_, method_of(inquiry.question), has_extra ? 5 : 4, 1);
  const Method& get_result = find(instance_, "General:Get_Result", 0, 4);
  set_inputs(*method.unit, inputs, inquiry);

  UnitAnswer answer;
  const auto start = std::chrono::steady_clock::now();
  fire(host_, method);
  answer.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  fire(host_, get_result);

  const auto& outputs = get_result.unit->outputs();
  const int code = static_cast<int>(number(outputs[3]));
  if (code != 0)
    throw AskError(std::string("the solver gave no answer: ") + meaning(code) + " (code " +
                   std::to_string(code) + " of the unit)");
  answer.feasible = number(outputs[0]) == 1;
  answer.values = floats(outputs[1]);
  answer.objective = number(outputs[2]);
  answer.result = read_file(kResultFile);
  if (!answer.feasible) answer.definition = read_file(kDefinitionFile);
  return answer;
}

}  // namespace grasp
