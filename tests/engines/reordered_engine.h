// An engine that is handed everything in another order: how well an engine agrees with
// itself, which is the most that can be asked of two.
#pragma once

#include <algorithm>
#include <memory>
#include <utility>

#include "solver/engine/engine.h"

namespace sdpsol::testing {

/// Turns the order of unknowns and cones around, and back in what it returns.
class ReorderedEngine final : public Engine {
 public:
  explicit ReorderedEngine(std::unique_ptr<Engine> engine) : engine_(std::move(engine)) {}

  std::string_view name() const override { return engine_->name(); }

  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    ConeProgram turned = program;
    std::reverse(turned.objective.begin(), turned.objective.end());
    std::reverse(turned.cones.begin(), turned.cones.end());
    for (auto* list : {&turned.cones, &turned.equations}) {
      for (ConeProgram::Cone& cone : *list) {
        for (ConeProgram::Coefficient& c : cone.coefficients) {
          if (c.unknown != ConeProgram::kConstantTerm) c.unknown = program.unknowns - 1 - c.unknown;
        }
      }
    }
    Candidate candidate = engine_->solve(turned, limits, [&](const Iterate& iterate) {
      return observer && observer(turned_back(program, iterate));
    });
    candidate.last = turned_back(program, std::move(candidate.last));
    return candidate;
  }

 private:
  static Iterate turned_back(const ConeProgram& program, Iterate iterate) {
    std::reverse(iterate.point.begin(), iterate.point.end());
    std::vector<double> multipliers;
    auto end = iterate.multipliers.end();
    for (const ConeProgram::Cone& cone : program.cones) {
      const auto begin = end - static_cast<std::ptrdiff_t>(cone.size) * cone.size;
      multipliers.insert(multipliers.end(), begin, end);
      end = begin;
    }
    iterate.multipliers = std::move(multipliers);
    return iterate;
  }

  std::unique_ptr<Engine> engine_;
};

}  // namespace sdpsol::testing
