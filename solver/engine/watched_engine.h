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

/// What engines have done in all their runs together.
struct EngineLog {
  int iterations = 0;
  std::chrono::steady_clock::duration inside{};  ///< without the time of observers
};

/// Passes everything on to another engine and back. Keeps the log, and tells every step.
class WatchedEngine final : public Engine {
 public:
  using Watch = std::function<void(const EngineStep&)>;

  /// @param engine, log must outlive this.  @param watch may be empty.
  WatchedEngine(Engine& engine, EngineLog& log, Watch watch)
      : engine_(engine), log_(log), watch_(std::move(watch)) {}

  std::string_view name() const override { return engine_.name(); }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override;

 private:
  Engine& engine_;
  EngineLog& log_;
  Watch watch_;
};

}  // namespace sdpsol
