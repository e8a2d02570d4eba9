// The internal-force members of the driver: pose the composed problem, run it,
// and turn the result record into an answer.
#include <algorithm>
#include <utility>

#include "unit/sdpsol_compose.h"
#include "unit/sdpsol_result.h"
#include "unit/sdpsol_solve.h"
#include "unit/sdpsol_text.h"
#include "unit/sdpsol_wrapper.h"

void sdpsol_internal::solve(sdpsol_wrapper& driver, Composed problem) {
  say(problem.warnings);
  if (!problem.definition) {
    reset(driver.lastResult);
    return;
  }
  driver.definition = std::move(*problem.definition);
  driver.run();
}

namespace {

float objective_of(const sdpsol_wrapper::result& last) {
  return last.feasible ? static_cast<float>(last.objectiveValue) : 0.0F;
}

void hand_out(const std::vector<double>& found, std::size_t contacts, std::vector<double>* values) {
  if (values == nullptr) return;
  const std::size_t count = std::min({found.size(), contacts, values->size()});
  std::copy_n(found.begin(), count, values->begin());
}

}  // namespace

float sdpsol_wrapper::internalForceExists(std::vector<double> nullspaceBase,
                                          std::vector<int> contactTypes,
                                          std::vector<double> frictionCoefficients,
                                          std::vector<double> forceBounds) {
  solve(*this, sdpsol_internal::compose_exists(
                   {nullspaceBase, contactTypes, frictionCoefficients, forceBounds}));
  return lastResult.feasible ? 1.0F : 0.0F;
}

float sdpsol_wrapper::internalForceMaximizeIndividual(std::vector<double> nullspaceBase,
                                                      std::vector<int> contactTypes,
                                                      std::vector<double> frictionCoefficients,
                                                      std::vector<double> forceBounds,
                                                      std::vector<int> contactsToMaximize) {
  solve(*this,
        sdpsol_internal::compose_individual(
            {nullspaceBase, contactTypes, frictionCoefficients, forceBounds}, contactsToMaximize));
  return objective_of(lastResult);
}

float sdpsol_wrapper::internalForceMaximizeFrictionContacts(
    std::vector<double> nullspaceBase, std::vector<int> contactTypes,
    std::vector<double> frictionCoefficients, std::vector<double> forceBounds,
    std::vector<double>* values) {
  solve(*this, sdpsol_internal::compose_friction_contacts(
                   {nullspaceBase, contactTypes, frictionCoefficients, forceBounds}));
  hand_out(lastResult.variableValues, contactTypes.size(), values);
  return objective_of(lastResult);
}

float sdpsol_wrapper::internalForceMaximizeAll(std::vector<double> nullspaceBase,
                                               std::vector<int> contactTypes,
                                               std::vector<double> frictionCoefficients,
                                               std::vector<double> forceBounds,
                                               std::vector<double>* values) {
  solve(*this, sdpsol_internal::compose_all(
                   {nullspaceBase, contactTypes, frictionCoefficients, forceBounds}));
  hand_out(lastResult.variableValues, contactTypes.size(), values);
  return objective_of(lastResult);
}

float sdpsol_wrapper::internalForceMaximizePointContact(std::vector<double> nullspaceBase,
                                                        std::vector<int> contactTypes,
                                                        std::vector<double> frictionCoefficients,
                                                        std::vector<double> forceBounds,
                                                        std::uint32_t contact) {
  solve(*this, sdpsol_internal::compose_point_contact(
                   {nullspaceBase, contactTypes, frictionCoefficients, forceBounds}, contact));
  return objective_of(lastResult);
}
