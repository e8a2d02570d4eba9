#include "examples/questions.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace examples {
namespace {

Verdict verdict_of(const sdpsol_wrapper& solver) {
  if (solver.lastResult.errorCode != 0) return Verdict::kFailed;
  if (solver.lastResult.feasible) return Verdict::kFeasible;
  // The record does not tell these two apart, the text does.
  return solver.resultText.find("INFEASIBLE") != std::string::npos ? Verdict::kInfeasible
                                                                   : Verdict::kUndetermined;
}

Answer answer_of(const sdpsol_wrapper& solver, double objective) {
  const auto& result = solver.lastResult;
  Answer answer;
  answer.verdict = verdict_of(solver);
  answer.error_code = result.errorCode;
  answer.objective = objective;
  for (std::size_t i = 0; i < result.variableNames.size(); ++i)
    answer.values.emplace(result.variableNames[i], result.variableValues[i]);
  return answer;
}

std::vector<double> forces_of(const Grasp& grasp, const Answer& answer) {
  const auto columns = grasp.coordinates();
  std::vector<double> forces(grasp.components(), 0.0);
  for (std::size_t j = 0; j < columns; ++j) {
    const double z = answer.values.at("z" + std::to_string(j));
    for (std::size_t k = 0; k < forces.size(); ++k) forces[k] += grasp.base[k * columns + j] * z;
  }
  return forces;
}

std::string shell_quoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

}  // namespace

bool askable(const Grasp& grasp, Question question) {
  const bool divides = question == Question::kFriction || question == Question::kAll;
  return !divides || grasp.types.size() > 1;
}

Answer ask(sdpsol_wrapper& solver, const Grasp& grasp, Question question) {
  const auto& [title, types, friction, bounds, base, individual, point] = grasp;
  std::vector<double> handed_back;
  double objective = 0;
  switch (question) {
    case Question::kExists:
      objective = solver.internalForceExists(base, types, friction, bounds);
      break;
    case Question::kIndividual:
      objective = solver.internalForceMaximizeIndividual(base, types, friction, bounds, individual);
      break;
    case Question::kFriction:
      handed_back.resize(types.size());
      objective =
          solver.internalForceMaximizeFrictionContacts(base, types, friction, bounds, &handed_back);
      break;
    case Question::kAll:
      handed_back.resize(types.size());
      objective = solver.internalForceMaximizeAll(base, types, friction, bounds, &handed_back);
      break;
    case Question::kPoint:
      objective = solver.internalForceMaximizePointContact(base, types, friction, bounds, point);
      break;
  }
  Answer answer = answer_of(solver, objective);
  answer.handed_back = std::move(handed_back);
  if (answer.verdict == Verdict::kFeasible) answer.forces = forces_of(grasp, answer);
  return answer;
}

Answer ask(sdpsol_wrapper& solver, const Lmi& lmi) {
  const bool feasible = solver.isFeasible(lmi.matrices, lmi.strict);
  return answer_of(solver, feasible ? 1.0 : 0.0);
}

WorkingFolder::WorkingFolder() {
  std::string name = "/tmp/sdpsol-example.XXXXXX";
  if (mkdtemp(name.data()) == nullptr)
    throw std::system_error(errno, std::generic_category(), name);
  path_ = name;
}

WorkingFolder::~WorkingFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

sdpsol_wrapper WorkingFolder::solver(std::string_view command) const {
  return {shell_quoted(command), path_ / "definition", path_ / "result"};
}

}  // namespace examples
