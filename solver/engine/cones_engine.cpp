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

/// Nothing where none is expected to be fast.
std::unique_ptr<cones::NewtonSystem> system_for(const cones::Layout& layout,
                                                const std::vector<double>& objective) {
  const auto unknowns = static_cast<double>(objective.size());
  if (unknowns >= kManyUnknowns) {
    if (auto range = cones::RangeSystem::make(layout, objective)) return range;
  }
  const double entries = static_cast<double>(layout.dimension) * unknowns;
  const auto terms = static_cast<double>(layout.linear.terms.size());
  const bool is_sparse = unknowns > kMaxSparseUnknowns && terms < kSparse * entries;
  if (is_sparse || entries * unknowns > kMaxWork) return nullptr;
  return std::make_unique<cones::VariableSystem>(layout, objective);
}

/// Few and small dense blocks.
bool has_suitable_blocks(const cones::Layout& layout) {
  int dense = 0;
  for (const cones::Part& part : layout.parts) {
    if (part.is_second_order()) continue;
    if (part.order > kLargestDenseBlock) return false;
    ++dense;
  }
  return dense <= kMaxDenseBlocks;
}

Candidate unsuited(const ConeProgram& program, const std::vector<std::size_t>& offsets) {
  Candidate candidate;
  candidate.reason = StopReason::kUnsuited;
  candidate.last.point.assign(program.objective.size(), 0.0);
  candidate.last.multipliers.assign(offsets.back(), 0.0);
  return candidate;
}

Candidate solve_cones(const ConeProgram& program, const Limits& limits, const Observer& observer) {
  const std::vector<std::size_t> offsets = multiplier_offsets(program.cones);
  const bool hopeless = std::any_of(program.cones.begin(), program.cones.end(),
                                    [](const auto& cone) { return cone.size > kLargestMatrix; });
  if (hopeless) return unsuited(program, offsets);
  const cones::Layout layout(program);
  if (!has_suitable_blocks(layout)) return unsuited(program, offsets);
  const std::unique_ptr<cones::NewtonSystem> system = system_for(layout, program.objective);
  if (!system) return unsuited(program, offsets);
  return cones::solve_interior(layout, *system, offsets, limits, observer);
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

}  // namespace sdpsol
