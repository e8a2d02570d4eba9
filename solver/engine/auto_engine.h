// The fast engine where it is made for a program, the general one elsewhere.
#pragma once

#include "solver/engine/engine.h"

namespace sdpsol {

/// Passes a program to the fast engine, and to the general one where that is unsuited.
class AutoEngine final : public Engine {
 public:
  /// @param fast, general must outlive this.
  AutoEngine(Engine& fast, Engine& general) : fast_(fast), general_(general) {}

  /// That of the engine which was asked last.
  std::string_view name() const override { return last_->name(); }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override;

 private:
  Engine& fast_;
  Engine& general_;
  Engine* last_ = &fast_;
};

}  // namespace sdpsol
