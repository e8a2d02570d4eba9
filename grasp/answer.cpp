#include "grasp/answer.h"

namespace grasp {

std::string_view to_string(Verdict verdict) {
  switch (verdict) {
    case Verdict::kFeasible:
      return "FEASIBLE";
    case Verdict::kInfeasible:
      return "INFEASIBLE";
    case Verdict::kUndetermined:
      return "FEASIBILITY CANNOT BE DETERMINED";
  }
  return {};
}

}  // namespace grasp
