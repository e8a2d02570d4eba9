// Many problems on several processes. The reference engine runs once per process, and
// its library may end the process or, rarely, go on for ever: either costs one
// problem here and not the run.
#pragma once

#include <cstdint>
#include <functional>

#include "tests/engines/tally.h"

namespace sdpsol::testing {

struct SoakRange {
  std::uint32_t seed = 1;
  std::uint64_t from = 0;
  std::uint64_t count = 10000;
  unsigned jobs = 1;
  /// Put the reference in the place of the engine under test, in another order.
  bool reference_reordered = false;
  /// A problem that takes longer is given up.
  unsigned seconds_per_problem = 60;
};

/// Judges the problems of the range.
/// @param progress is told now and then how many are done.
/// @throws std::system_error where processes or pipes cannot be had.
Tally soak(const SoakRange& range, const std::function<void(std::uint64_t done)>& progress);

}  // namespace sdpsol::testing
