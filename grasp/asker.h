// Asks the plug-in in the host, as any network does.
#pragma once

#include <memory>

#include "grasp/answer.h"
#include "grasp/road.h"

namespace grasp {

class UnitRoad;

/// One instance of the unit, used again and again. A process has one at a time; it is
/// used from the thread that made it. It writes the files "definition" and "result"
/// in the working directory, which must be its own.
class Asker {
 public:
  /// @throws zelhost::HostError if the plug-in cannot be loaded or gives no instance.
  explicit Asker(const Road& road);
  ~Asker();
  Asker(const Asker&) = delete;
  Asker& operator=(const Asker&) = delete;
  Asker(Asker&&) = delete;
  Asker& operator=(Asker&&) = delete;

  /// @param inquiry about contacts that the grasp has.
  /// @throws AskError.
  Answer ask(const Grasp& grasp, const Inquiry& inquiry);

 private:
  std::unique_ptr<UnitRoad> road_;
};

}  // namespace grasp
