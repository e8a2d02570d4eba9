// Unknowns that no cone feels, taken out of a cone program: an engine would find
// a singular system there.
#pragma once

#include "solver/engine/engine.h"

namespace sdpsol {

class Compaction {
 public:
  /// @param program must outlive this.
  explicit Compaction(const ConeProgram& program);
  Compaction(const Compaction&) = delete;
  Compaction& operator=(const Compaction&) = delete;
  const ConeProgram& reduced() const { return *reduced_; }
  /// True if the objective holds an unknown that no cone bounds.
  bool unbounded() const { return unbounded_; }
  /// The iterate of the reduced program as one of the full program, with 0 for the
  /// unknowns that were left out.
  Iterate lift(Iterate reduced) const;

 private:
  std::size_t full_size_ = 0;
  std::vector<std::size_t> kept_;
  ConeProgram own_;  ///< what is left, if anything is left out
  const ConeProgram* reduced_ = &own_;
  bool unbounded_ = false;
};

}  // namespace sdpsol
