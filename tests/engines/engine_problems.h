// A numbered stream of problems to hold engines against each other: whatever number
// a run complains about can be drawn again alone.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "solver/problem/problem.h"
#include "tests/engines/exact_truth.h"

namespace sdpsol::testing {

enum class Truth {
  kUnknown,
  kFeasible,    ///< a point was planted
  kInfeasible,  ///< a contradiction was planted
  kOutsideBox,  ///< a point was planted outside the box, and that there is none inside
};

/// What is asked of an engine: to decide the first two, and to err nowhere.
enum class ProblemClass {
  kPoint,        ///< with a planted point that has room
  kCertificate,  ///< with a planted certificate inside its cones
  kBorder,       ///< all others
};
inline constexpr std::size_t kProblemClasses = 3;

struct EngineProblem {
  Problem problem;
  Truth truth = Truth::kUnknown;
  /// What was planted has room: a point inside everything, multipliers inside their
  /// cones. To leave such a problem open is a failure, though not a wrong answer.
  bool has_room = false;
  /// What a feasible point is known to bring, and what none can exceed.
  std::optional<double> reached = std::nullopt;
  std::optional<double> limit = std::nullopt;

  // Where it is planted in numbers that no arithmetic rounds:
  std::vector<double> point = {};
  /// That contradict each other, or prove the optimum.
  std::vector<ExactWeight> weights = {};
  /// What no point exceeds, and points come as near to as one likes.
  std::optional<double> optimum = std::nullopt;
  bool limited_by_box = false;  ///< the optimum is

  ProblemClass problem_class() const {
    if (!has_room) return ProblemClass::kBorder;
    return truth == Truth::kFeasible ? ProblemClass::kPoint : ProblemClass::kCertificate;
  }
};

/// Numbers that are so far apart come by every family, however few there are.
inline constexpr std::uint64_t kStepThroughFamilies = 37;

/// The families of the stream, in the order in which the numbers walk over them.
const std::vector<const char*>& engine_families();

/// The family of a number: an index into engine_families(). Whole turns of
/// kTurn numbers hold each family as often as it weighs.
inline constexpr std::uint64_t kTurn = 100;
std::size_t family_of(std::uint64_t index);

/// The problem of a number. The same seed and number give the same problem.
EngineProblem engine_problem(std::uint32_t seed, std::uint64_t index);

}  // namespace sdpsol::testing
