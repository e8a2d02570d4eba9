#include "tests/engines/engine_problems.h"

#include <algorithm>
#include <iterator>
#include <random>

#include "solver/problem/noise.h"
#include "tests/engines/grasp_problems.h"
#include "tests/engines/matrix_problems.h"

namespace sdpsol::testing {
namespace {

using Draw = EngineProblem (*)(std::mt19937& random);

template <GraspQuestion kQuestion>
EngineProblem force(std::mt19937& random) {
  return force_in_grasp(random, kQuestion);
}

template <GraspQuestion kQuestion>
EngineProblem twist(std::mt19937& random) {
  return twist_of_grasp(random, kQuestion);
}

struct Family {
  const char* name;
  std::uint64_t weight;  ///< in every turn
  Draw draw;
  /// Half of them in other units. Not where the box, or the lack of rounding in a
  /// text, is what they are about.
  bool any_units = true;
};

using enum GraspQuestion;

constexpr Family kFamilies[] = {
    {"force, exists", 4, force<kExists>},
    {"force, individual", 4, force<kIndividual>},
    {"force, friction", 4, force<kFriction>},
    {"force, all", 4, force<kAll>},
    {"force, point", 4, force<kPoint>},
    {"twist, exists", 3, twist<kExists>},
    {"twist, individual", 3, twist<kIndividual>},
    {"twist, friction", 3, twist<kFriction>},
    {"twist, all", 3, twist<kAll>},
    {"twist, point", 3, twist<kPoint>},
    {"any base, force", 6, force_in_base},
    {"any base, multipliers", 5, multipliers_of_base},
    {"frictionless", 3, frictionless_base},
    {"contradicting bounds", 3, contradicting_bounds},
    {"tight bounds", 4, tight_bounds},
    {"bounds of a million", 4, bounds_of_a_million, false},
    {"slanted pairs", 4, slanted_pairs},
    {"facing plates", 3, facing_plates},
    {"single plate", 2, single_plate},
    {"planted point", 5, planted_point},
    {"bounded objective", 5, bounded_objective},
    {"equations", 3, planted_point_and_equations},
    {"negative constant", 3, negative_constant},
    {"zero constant", 3, zero_constant},
    {"contradiction, objective", 2, objective_of_a_contradiction},
    {"flat objective", 1, flat_objective},
    {"free objective", 1, free_objective, false},
    {"border of integers", 5, border_of_integers},
    {"rows alone", 3, rows_alone, false},
};

constexpr std::uint64_t sum_of_weights() {
  std::uint64_t sum = 0;
  for (const Family& family : kFamilies) sum += family.weight;
  return sum;
}
static_assert(sum_of_weights() == kTurn);

}  // namespace

const std::vector<const char*>& engine_families() {
  static const std::vector<const char*> names = [] {
    std::vector<const char*> list;
    for (const Family& family : kFamilies) list.push_back(family.name);
    return list;
  }();
  return names;
}

std::size_t family_of(std::uint64_t index) {
  std::uint64_t left = index % kTurn;
  std::size_t family = 0;
  while (left >= kFamilies[family].weight) left -= kFamilies[family++].weight;
  return family;
}

EngineProblem engine_problem(std::uint32_t seed, std::uint64_t index) {
  std::seed_seq numbers{seed, static_cast<std::uint32_t>(index),
                        static_cast<std::uint32_t>(index >> 32)};
  std::mt19937 random(numbers);
  const Family& family = kFamilies[family_of(index)];
  EngineProblem drawn = family.draw(random);
  if (family.any_units && random() % 2 == 0) change_units(drawn, random);
  // A coefficient that looks like noise may, rightly, be what leaves a problem open.
  drawn.has_room = drawn.has_room && noisy_conditions(drawn.problem).empty();
  return drawn;
}

}  // namespace sdpsol::testing
