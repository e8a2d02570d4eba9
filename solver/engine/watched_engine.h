// An engine with somebody looking over its shoulder.
#pragma once

#include <chrono>
#include <utility>

#include "solver/engine/engine.h"

namespace sdpsol {

/// What an engine has come to, as it sees it itself.
struct EngineStep {
  int iteration = 0;  ///< over all runs so far
  bool is_margin = false;
  double value = 0;  ///< of the margin, or of the objective that is maximised
  double gap = 0;    ///< between it and the engine's bound, never negative
};

/// Passes everything on to another engine and back. Measures the time that the
/// engine takes for itself, without that of the observer, and tells every step.
class WatchedEngine final : public Engine {
 public:
  using Watch = std::function<void(const EngineStep&)>;

  /// @param engine must outlive this.  @param watch may be empty.
  WatchedEngine(Engine& engine, Watch watch) : engine_(engine), watch_(std::move(watch)) {}

  std::string_view name() const override { return engine_.name(); }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override;

  /// Spent inside the engine, all runs together.
  std::chrono::steady_clock::duration time_inside() const { return inside_; }

 private:
  Engine& engine_;
  Watch watch_;
  int iterations_ = 0;
  std::chrono::steady_clock::duration inside_{};
};

}  // namespace sdpsol
