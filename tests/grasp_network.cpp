#include "tests/grasp_network.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <numeric>
#include <stdexcept>

namespace grasp_network {
namespace {

using network_run::Firing;

const std::map<std::string, Question> kQuestions = {
    {"IntForce:Exists", Question::kExists},
    {"IntForce:Maximize_Individual", Question::kIndividual},
    {"IntForce:Maximize_FrictConts", Question::kFriction},
    {"IntForce:Maximize_All", Question::kAll},
    {"IntForce:Maximize_PointCont", Question::kPoint}};

std::vector<double> numbers_in(const zelhost::Json& value) {
  if (!value.is_array()) return {value.get<double>()};
  std::vector<double> numbers;
  for (const auto& element : value) {
    const auto inner = numbers_in(element);
    numbers.insert(numbers.end(), inner.begin(), inner.end());
  }
  return numbers;
}

std::vector<double> input(const zelhost::NetworkFile& file, const std::string& port) {
  for (const auto& each : file.inputs)
    for (const auto& value : each.values)
      if (value.port == port) return numbers_in(value.value.value());
  throw std::runtime_error("no input \"" + port + "\"");
}

template <class Number>
std::vector<Number> whole(const std::vector<double>& numbers) {
  return {numbers.begin(), numbers.end()};
}

Verdict verdict_of(const Firing& result) {
  if (result.number(3) != 0) return Verdict::kFailed;
  if (result.number(0) == 1) return Verdict::kFeasible;
  // The outputs do not tell these two apart, the text does.
  return result.result_file.find("\nINFEASIBLE\n") != std::string::npos ? Verdict::kInfeasible
                                                                        : Verdict::kUndetermined;
}

// The contacts that have a margin variable, in the order of their declaration.
std::vector<std::size_t> contacts_with_margin(const Grasp& grasp, Question question) {
  std::vector<std::size_t> contacts;
  switch (question) {
    case Question::kExists:
      break;
    case Question::kIndividual:
      return grasp.individual;
    case Question::kPoint:
      return {grasp.point};
    case Question::kFriction:
    case Question::kAll:
      for (std::size_t i = 0; i < grasp.types.size(); ++i)
        if (question == Question::kAll || grasp.types[i] == 3) contacts.push_back(i);
  }
  return contacts;
}

// The values come in the order in which the definition declares the variables:
// margins before coordinates in the two questions about several margins, behind
// them in the others.
void read_values(const Grasp& grasp, Question question, const std::vector<float>& values,
                 Answer& answer) {
  const auto contacts = contacts_with_margin(grasp, question);
  const auto coordinates = grasp.coordinates();
  if (values.size() != contacts.size() + coordinates)
    throw std::runtime_error("there are " + std::to_string(values.size()) + " values");
  const bool margins_first = question == Question::kFriction || question == Question::kAll;
  const float* const z = values.data() + (margins_first ? contacts.size() : 0);
  const float* margin = values.data() + (margins_first ? 0 : coordinates);
  for (const std::size_t contact : contacts) answer.margins[contact] = *margin++;
  for (std::size_t k = 0; k < grasp.components(); ++k) {
    double force = 0;
    double magnitudes = 0;
    for (std::size_t j = 0; j < coordinates; ++j) {
      const double term = grasp.base[k * coordinates + j] * static_cast<double>(z[j]);
      force += term;
      magnitudes += std::abs(term);
    }
    answer.forces.push_back(force);
    // Half a unit in the last of 24 binary digits.
    answer.rounding.push_back(std::ldexp(magnitudes, -24));
  }
}

Answer read_answer(const Grasp& grasp, Question question, const Firing& asked,
                   const Firing& result) {
  Answer answer;
  answer.verdict = verdict_of(result);
  const bool optimises = question != Question::kExists;
  answer.objective = asked.number(optimises ? 1 : 0);
  if (asked.number(0) != result.number(0) || (optimises && asked.number(1) != result.number(2)))
    throw std::runtime_error(asked.method + " and General:Get_Result contradict each other");
  if (question == Question::kFriction || question == Question::kAll)
    answer.epsilons = asked.list(2);
  if (answer.verdict == Verdict::kFeasible) read_values(grasp, question, result.list(1), answer);
  return answer;
}

}  // namespace

std::size_t Grasp::components() const {
  return first_component(types.size());
}

std::size_t Grasp::first_component(std::size_t contact) const {
  const auto end = types.begin() + static_cast<std::ptrdiff_t>(contact);
  return static_cast<std::size_t>(std::accumulate(types.begin(), end, 0));
}

Grasp read_grasp(const zelhost::NetworkFile& file) {
  Grasp grasp;
  grasp.types = whole<int>(input(file, "Contact Types"));
  grasp.friction = input(file, "Friction constraints");
  grasp.bounds = input(file, "Force constraints");
  grasp.base = input(file, "Nullspace Base");
  grasp.individual = whole<std::size_t>(input(file, "Contacts for epsilon maximization"));
  grasp.point = whole<std::size_t>(input(file, "Number of contact force to maximize")).front();
  return grasp;
}

std::map<Question, Answer> ask(const zelhost::NetworkFile& file) {
  const Grasp grasp = read_grasp(file);
  const std::vector<Firing> firings = network_run::run(file);
  if (firings.size() != 2 * kQuestions.size())
    throw std::runtime_error("the network does not ask five questions");
  std::map<Question, Answer> answers;
  for (std::size_t i = 0; i < firings.size(); i += 2) {
    const Question question = kQuestions.at(firings[i].method);
    if (firings[i + 1].method != "General:Get_Result")
      throw std::runtime_error("a question is not followed by General:Get_Result");
    answers[question] = read_answer(grasp, question, firings[i], firings[i + 1]);
  }
  return answers;
}

}  // namespace grasp_network
