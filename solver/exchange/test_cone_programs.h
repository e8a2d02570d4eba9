// Cone programs for tests of the exchange format.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <tuple>
#include <utility>

#include "solver/engine/engine.h"
#include "solver/problem/problem.h"

namespace sdpsol::testing {

/// Draws cone programs whose numbers have every exponent and all digits, from
/// the smallest that exist to the largest, and whose cones are connected.
class RandomConePrograms {
 public:
  explicit RandomConePrograms(unsigned seed) : random_(seed) {}

  ConeProgram next() {
    ConeProgram program;
    program.unknowns = uniform(0, 6);
    for (std::int32_t k = 0; k < program.unknowns; ++k) {
      program.objective.push_back(uniform(0, 3) == 0 ? 0.0 : any_number());
    }
    for (int cones = uniform(0, 6); cones > 0; --cones) {
      program.cones.push_back(cone(uniform(0, 1) == 0 ? 1 : uniform(2, 5), program.unknowns));
    }
    for (int equations = uniform(0, 2); equations > 0; --equations) {
      program.equations.push_back(cone(1, program.unknowns));
    }
    return program;
  }

  std::int32_t uniform(std::int32_t low, std::int32_t high) {
    return std::uniform_int_distribution<std::int32_t>(low, high)(random_);
  }

  double any_number() {
    for (;;) {
      const auto value = std::bit_cast<double>(random_());
      if (std::isfinite(value) && value != 0) return value;
    }
  }

 private:
  ConeProgram::Cone cone(std::int32_t size, std::int32_t unknowns) {
    ConeProgram::Cone result{size, {}};
    for (std::int32_t i = 0; i < size; ++i) {
      for (std::int32_t j = i; j < size; ++j) {
        for (std::int32_t k = ConeProgram::kConstantTerm; k < unknowns; ++k) {
          const bool connects = j == i + 1 && k == ConeProgram::kConstantTerm;
          if (connects || uniform(0, 2) == 0)
            result.coefficients.push_back({i, j, k, any_number()});
        }
      }
    }
    std::shuffle(result.coefficients.begin(), result.coefficients.end(), random_);
    return result;
  }

  std::mt19937_64 random_;
};

/// What a file of the program must be read as: what the format states, laid out by
/// hand. `condition` counts the blocks of the file.
inline Problem problem_in_file(const ConeProgram& program) {
  Problem problem;
  problem.unknowns = program.unknowns;
  problem.boxed = false;
  const auto add = [&](const ConeProgram::Cone& cone, double sign, std::int32_t condition) {
    Block block{cone.size, Sense::kNonStrict, condition, {}};
    for (const auto& c : cone.coefficients) {
      if (c.value == 0) continue;
      block.terms.push_back({c.row, c.column, c.unknown, sign * c.value, std::fabs(c.value)});
    }
    std::sort(block.terms.begin(), block.terms.end(), [](const auto& a, const auto& b) {
      return std::tuple(a.unknown, a.row, a.column) < std::tuple(b.unknown, b.row, b.column);
    });
    problem.blocks.push_back(std::move(block));
  };
  std::int32_t condition = 0;
  for (const auto& cone : program.cones) {
    if (cone.size > 1) add(cone, 1, condition++);
  }
  for (const auto& cone : program.cones) {
    if (cone.size == 1) add(cone, 1, condition);
  }
  for (const auto& equation : program.equations) {
    add(equation, 1, condition);
    add(equation, -1, condition);
  }
  if (problem.blocks.empty()) problem.blocks.push_back({1, Sense::kNonStrict, 0, {}});
  problem.objective.emplace();
  problem.objective->cost = program.objective;
  return problem;
}

}  // namespace sdpsol::testing
