// The engine that is expected to be fastest, for each program anew.
#pragma once

#include "solver/engine/engine.h"

namespace sdpsol {

/// Passes a program to the cones engine if that suits it, else to the other one.
class AutoEngine final : public Engine {
 public:
  /// @param cones, general must outlive this.
  AutoEngine(Engine& cones, Engine& general) : cones_(cones), general_(general) {}

  /// That of the engine which was asked last.
  std::string_view name() const override { return last_->name(); }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override;

 private:
  Engine& cones_;
  Engine& general_;
  Engine* last_ = &cones_;
};

}  // namespace sdpsol
