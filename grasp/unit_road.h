// The road to the solver: host, plug-in, shell, command. It knows ports and files,
// and nothing of contacts.
#pragma once

#include <string>
#include <vector>

#include "grasp/question.h"
#include "grasp/road.h"
#include "grasp/unit_inputs.h"
#include "host/host.h"

namespace grasp {

/// What the unit published, and what the command wrote.
struct UnitAnswer {
  bool feasible = false;
  double objective = 0;
  /// Values of the variables in the order in which the definition declares them.
  std::vector<double> values;
  std::string definition;  ///< empty where it is not needed: with feasible
  std::string result;
  double seconds = 0;
};

/// As Asker, which is made of one.
class UnitRoad {
 public:
  explicit UnitRoad(const Road& road);

  /// @throws AskError if the unit or the command did not do its work.
  UnitAnswer ask(const UnitInputs& inputs, const Inquiry& inquiry);

 private:
  zelhost::Host host_;
  zelhost::Instance instance_;
};

}  // namespace grasp
