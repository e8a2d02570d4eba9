#include "solver/engine/engine.h"

namespace sdpsol {

std::vector<std::size_t> multiplier_offsets(const std::vector<ConeProgram::Cone>& cones) {
  std::vector<std::size_t> offsets{0};
  offsets.reserve(cones.size() + 1);
  for (const auto& cone : cones) {
    const auto n = static_cast<std::size_t>(cone.size);
    offsets.push_back(offsets.back() + n * n);
  }
  return offsets;
}

}  // namespace sdpsol
