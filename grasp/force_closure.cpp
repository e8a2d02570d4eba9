#include "grasp/force_closure.h"

#include <algorithm>

namespace grasp {
namespace {

// Whether the bounds hold all small forces of a cone, so that they are no reason why
// there is no internal force: one that is too large could be made smaller.
bool bounds_admit_small_forces(const Grasp& grasp) {
  return std::all_of(grasp.contacts.begin(), grasp.contacts.end(), [](const Contact& contact) {
    return std::all_of(contact.bounds.begin(), contact.bounds.end(), [&](const Bounds& bounds) {
      const bool is_normal = &bounds == &contact.bounds.back();
      return bounds.upper > 0 && (is_normal ? bounds.lower <= 0 : bounds.lower < 0);
    });
  });
}

}  // namespace

std::optional<bool> force_closure(const Grasp& grasp, const Answer& answer) {
  if (answer.balance.rank < 6) return false;
  switch (answer.verdict) {
    case Verdict::kFeasible:
      return true;
    case Verdict::kInfeasible:
      // The question about friction asks for more: frictionless contacts above 1 N.
      if (answer.inquiry.question != Question::kFriction && bounds_admit_small_forces(grasp))
        return false;
      break;
    case Verdict::kUndetermined:
      break;
  }
  return {};
}

}  // namespace grasp
