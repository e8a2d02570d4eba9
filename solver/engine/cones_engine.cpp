#include "solver/engine/cones_engine.h"

#include <algorithm>

#include "solver/engine/cones/interior_point.h"
#include "solver/engine/cones/range_system.h"
#include "solver/engine/cones/variable_system.h"
#include "solver/engine/reduced.h"

namespace sdpsol {
namespace {

// With fewer unknowns dense normal equations are found faster than any structure.
constexpr std::int32_t kManyUnknowns = 30;
constexpr std::int32_t kLargestBlock = 12;

std::unique_ptr<cones::NewtonSystem> system_for(const cones::Layout& layout,
                                                const ConeProgram& program) {
  std::unique_ptr<cones::NewtonSystem> system;
  if (program.unknowns >= kManyUnknowns) {
    system = cones::RangeSystem::make(layout, program.objective);
  }
  if (!system) system = std::make_unique<cones::VariableSystem>(layout, program.objective);
  return system;
}

Candidate solve_cones(const ConeProgram& program, const Limits& limits, const Observer& observer) {
  const cones::Layout layout(program);
  const std::unique_ptr<cones::NewtonSystem> system = system_for(layout, program);
  return cones::solve_interior(layout, *system, multiplier_offsets(program.cones), limits,
                               observer);
}

class ConesEngine final : public Engine {
 public:
  std::string_view name() const override { return "cones"; }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    return solve_reduced(program, limits, observer, solve_cones);
  }
};

}  // namespace

std::unique_ptr<Engine> make_cones_engine() {
  return std::make_unique<ConesEngine>();
}

bool suits_cones_engine(const ConeProgram& program) {
  return std::all_of(program.cones.begin(), program.cones.end(),
                     [](const auto& cone) { return cone.size <= kLargestBlock; });
}

}  // namespace sdpsol
