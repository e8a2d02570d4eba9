#include "bench/many_contacts.h"

#include <random>

#include "tests/verdicts/random_grasp.h"
#include "unit/sdpsol_compose.h"

namespace bench {

std::string many_contacts(int contacts, Question question) {
  std::mt19937 random(static_cast<unsigned>(contacts));
  const auto grasp = sdpsol::testing::grasp_with_internal_force(
      random, {.contacts = contacts, .frictionless_too = false});
  const sdpsol_internal::Grasp composed{grasp.base, grasp.types, grasp.friction, grasp.bounds};
  const auto problem = question == Question::kAll ? sdpsol_internal::compose_all(composed)
                                                  : sdpsol_internal::compose_exists(composed);
  return *problem.definition;
}

}  // namespace bench
