// Both engines at one problem.
#pragma once

#include <memory>

#include "solver/engine/engine.h"
#include "tests/engines/judge.h"

namespace sdpsol::testing {

class Contest {
 public:
  /// The engine under test, with the reference to fall back on, against the reference.
  Contest();
  /// Another one in the place of the engine under test.
  explicit Contest(std::unique_ptr<Engine> first);

  Judgement of(const EngineProblem& drawn);

 private:
  std::unique_ptr<Engine> reference_;
  std::unique_ptr<Engine> first_;
};

}  // namespace sdpsol::testing
