// A numbered stream of problems to hold engines against each other: whatever number
// a run complains about can be drawn again alone.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol::testing {

enum class Truth {
  kUnknown,
  kFeasible,    ///< a point was planted
  kInfeasible,  ///< a contradiction was planted
};

struct EngineProblem {
  Problem problem;
  Truth truth = Truth::kUnknown;
  /// What was planted has room: a point inside everything, multipliers inside their
  /// cones. To leave such a problem open is a failure, though not a wrong answer.
  bool has_room = false;
  /// What a feasible point is known to bring, and what none can exceed.
  std::optional<double> reached = std::nullopt;
  std::optional<double> limit = std::nullopt;
};

/// The families of the stream, in the order in which the numbers walk over them.
const std::vector<const char*>& engine_families();

/// The family of a number: an index into engine_families(). Whole turns of
/// kTurn numbers hold each family as often as it weighs.
inline constexpr std::uint64_t kTurn = 100;
std::size_t family_of(std::uint64_t index);

/// The problem of a number. The same seed and number give the same problem.
EngineProblem engine_problem(std::uint32_t seed, std::uint64_t index);

}  // namespace sdpsol::testing
