// Both engines at one problem.
#pragma once

#include <memory>

#include "solver/engine/auto_engine.h"
#include "tests/engines/judge.h"

namespace sdpsol::testing {

class Contest {
 public:
  /// What the command asks first, with the reference to fall back on, against the reference.
  Contest();
  /// Another engine in the place of the first.
  explicit Contest(std::unique_ptr<Engine> first);

  Judgement of(const EngineProblem& drawn);

 private:
  std::unique_ptr<Engine> reference_;
  std::unique_ptr<Engine> cones_;  ///< unless there is another first
  std::unique_ptr<Engine> first_;
};

}  // namespace sdpsol::testing
