// The one interface behind which engines stand.
//
// An engine takes a cone program and proposes points and multipliers. It never
// prints, exits, reads files or decides a verdict: whatever it returns is a
// candidate, and nothing that it says about its own success is believed.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace sdpsol {

/// maximise  sum over k of objective[k] * y_k
/// where     C_i + sum over k of y_k * A_ik  is positive semidefinite for every cone i
///           c_e + sum over k of y_k * a_ek  =  0                      for every equation e
/// Its dual: minimise sum of <C_i, X_i> over multipliers X_i (positive
/// semidefinite) with sum of <A_ik, X_i> = -objective[k], up to the equations.
struct ConeProgram {
  static constexpr std::int32_t kConstantTerm = -1;
  /// Entry (row, column), row <= column, of C (kConstantTerm) or of A_k.
  struct Coefficient {
    std::int32_t row = 0;
    std::int32_t column = 0;
    std::int32_t unknown = kConstantTerm;
    double value = 0;
  };
  struct Cone {
    std::int32_t size = 1;  ///< 1 is a linear row
    std::vector<Coefficient> coefficients;
  };
  std::int32_t unknowns = 0;
  std::vector<double> objective;
  std::vector<Cone> cones;
  std::vector<Cone> equations;  ///< size 1 each

  // What a value of the objective means to people: value_unit * value + value_origin is
  // the margin, or the objective of the problem. Engines have no use for these.
  bool is_margin = false;
  double value_unit = 1;
  double value_origin = 0;
};

/// Where each cone's multiplier stands in one flat list: dense, column after
/// column, size*size numbers per cone in the order of the cones.
std::vector<std::size_t> multiplier_offsets(const std::vector<ConeProgram::Cone>& cones);

/// A point on the way: what an engine proposes.
struct Iterate {
  std::vector<double> point;
  std::vector<double> multipliers;  ///< see multiplier_offsets()
  double value = 0;                 ///< objective at the point, as the engine sees it
  double bound = 0;                 ///< bound by the multipliers, as the engine sees it
  int iteration = 0;
};

enum class StopReason {
  kConverged,
  kAccepted,    ///< the observer was satisfied
  kUnbounded,   ///< the engine believes that the objective has no bound
  kInfeasible,  ///< the engine believes that no point exists
  kIterationLimit,
  kTrouble,   ///< no progress, singular systems, not a number
  kUnsuited,  ///< the engine is not made for such programs and has not tried
};

struct Candidate {
  Iterate last;
  StopReason reason = StopReason::kTrouble;
};

struct Limits {
  int max_iterations = 100;
  /// Relative gap and infeasibilities at which an engine may call a candidate solved.
  double accuracy = 1e-9;
};

/// Sees every iterate. Returns true when the engine may stop.
using Observer = std::function<bool(const Iterate&)>;

class Engine {
 public:
  Engine() = default;
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  virtual ~Engine() = default;
  /// A word for reports, such as "csdp".
  virtual std::string_view name() const = 0;
  /// Solves a program, or finds out that it cannot: every way of giving up is a reason.
  /// @param observer may be empty.
  /// @return point and multipliers of the program's sizes, whatever the reason.
  /// @throws std::bad_alloc.
  virtual Candidate solve(const ConeProgram& program, const Limits& limits,
                          const Observer& observer) = 0;
};

}  // namespace sdpsol
