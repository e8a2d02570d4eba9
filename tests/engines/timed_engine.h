// An engine with a clock.
#pragma once

#include <chrono>

#include "solver/engine/engine.h"

namespace sdpsol::testing {

/// Passes everything on and back. Measures the time that the engine takes for itself,
/// without that of the observer.
class TimedEngine final : public Engine {
 public:
  explicit TimedEngine(Engine& engine) : engine_(engine) {}

  std::string_view name() const override { return engine_.name(); }
  double seconds() const { return std::chrono::duration<double>(inside_).count(); }

  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    Clock::duration outside{};
    const Observer timed = [&](const Iterate& iterate) {
      const auto begun = Clock::now();
      const bool enough = observer && observer(iterate);
      outside += Clock::now() - begun;
      return enough;
    };
    const auto begun = Clock::now();
    Candidate candidate = engine_.solve(program, limits, timed);
    inside_ += Clock::now() - begun - outside;
    return candidate;
  }

 private:
  using Clock = std::chrono::steady_clock;

  Engine& engine_;
  Clock::duration inside_{};
};

}  // namespace sdpsol::testing
