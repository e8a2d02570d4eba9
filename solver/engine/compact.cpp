#include "solver/engine/compact.h"

#include <utility>

namespace sdpsol {

Compaction::Compaction(const ConeProgram& program)
    : full_size_(static_cast<std::size_t>(program.unknowns)) {
  auto is_felt = [](const ConeProgram::Coefficient& t) {
    return t.unknown != ConeProgram::kConstantTerm && t.value != 0;
  };
  std::vector<std::int32_t> place(full_size_, -1);
  for (const auto& cone : program.cones) {
    for (const auto& t : cone.coefficients) {
      if (is_felt(t)) place[static_cast<std::size_t>(t.unknown)] = 0;
    }
  }
  for (std::size_t k = 0; k < full_size_; ++k) {
    if (place[k] < 0) {
      unbounded_ = unbounded_ || program.objective[k] != 0;
      continue;
    }
    place[k] = static_cast<std::int32_t>(kept_.size());
    kept_.push_back(k);
    own_.objective.push_back(program.objective[k]);
  }
  if (kept_.size() == full_size_) {
    reduced_ = &program;
    return;
  }
  own_.unknowns = static_cast<std::int32_t>(kept_.size());
  own_.cones.reserve(program.cones.size());
  for (const auto& cone : program.cones) {
    ConeProgram::Cone compact{cone.size, {}};
    compact.coefficients.reserve(cone.coefficients.size());
    for (ConeProgram::Coefficient t : cone.coefficients) {
      if (is_felt(t)) {
        t.unknown = place[static_cast<std::size_t>(t.unknown)];
      } else if (t.unknown != ConeProgram::kConstantTerm) {
        continue;
      }
      compact.coefficients.push_back(t);
    }
    own_.cones.push_back(std::move(compact));
  }
}

Iterate Compaction::lift(Iterate reduced) const {
  if (kept_.size() == full_size_) return reduced;
  std::vector<double> point(full_size_, 0.0);
  for (std::size_t k = 0; k < kept_.size(); ++k) point[kept_[k]] = reduced.point[k];
  reduced.point = std::move(point);
  return reduced;
}

}  // namespace sdpsol
