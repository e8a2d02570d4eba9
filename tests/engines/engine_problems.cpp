#include "tests/engines/engine_problems.h"

#include <algorithm>
#include <iterator>
#include <random>

#include "solver/problem/noise.h"
#include "tests/engines/grasp_problems.h"
#include "tests/engines/integer_problems.h"
#include "tests/engines/matrix_problems.h"
#include "tests/engines/matrix_texts.h"

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
    {"force, exists", 3, force<kExists>},
    {"force, individual", 3, force<kIndividual>},
    {"force, friction", 3, force<kFriction>},
    {"force, all", 3, force<kAll>},
    {"force, point", 3, force<kPoint>},
    {"twist, exists", 2, twist<kExists>},
    {"twist, individual", 2, twist<kIndividual>},
    {"twist, friction", 2, twist<kFriction>},
    {"twist, all", 2, twist<kAll>},
    {"twist, point", 2, twist<kPoint>},
    {"any base, force", 3, force_in_base},
    {"any base, multipliers", 3, multipliers_of_base},
    {"frictionless", 2, frictionless_base},
    {"contradicting bounds", 2, contradicting_bounds},
    {"tight bounds", 2, tight_bounds},
    {"bounds of a million", 2, bounds_of_a_million, false},
    {"slanted pairs", 2, slanted_pairs},
    {"facing plates", 2, facing_plates},
    {"single plate", 1, single_plate},
    {"planted point", 2, planted_point},
    {"bounded objective", 3, bounded_objective},
    {"equations", 2, planted_point_and_equations},
    {"negative constant", 2, negative_constant},
    {"zero constant", 2, zero_constant},
    {"contradiction, objective", 2, objective_of_a_contradiction},
    {"flat objective", 1, flat_objective},
    {"free objective", 1, free_objective, false},
    {"border of integers", 2, border_of_integers},
    {"rows alone", 2, rows_alone, false},
    {"integer point", 5, integer_point},
    {"integer contradiction", 5, integer_contradiction},
    {"integer optimum", 5, integer_optimum},
    {"optimum at the box", 1, optimum_at_the_box, false},
    {"outside the box", 2, outside_the_box, false},
    {"singular point", 2, singular_point},
    {"singular contradiction", 2, singular_contradiction},
    {"singular optimum", 2, singular_optimum},
    {"hair of a point", 2, hair_of_a_point},
    {"hair of a contradiction", 2, hair_of_a_contradiction},
    {"hair of an optimum", 2, hair_of_an_optimum},
    {"stable system", 2, stable_system},
    {"unstable system", 2, unstable_system},
    {"least matrix", 3, least_matrix},
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
