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

// A cone without friction has no inside: that no force is there says nothing about the
// forces on it.
bool cones_have_an_inside(const Grasp& grasp) {
  return std::all_of(grasp.contacts.begin(), grasp.contacts.end(), [](const Contact& contact) {
    return contact.type == ContactType::kFrictionless || contact.friction > 0;
  });
}

// The question about friction wants the frictionless contacts above 1 N, if there are any.
bool asks_for_more(const Grasp& grasp, const Inquiry& inquiry) {
  return inquiry.question == Question::kFriction &&
         std::any_of(grasp.contacts.begin(), grasp.contacts.end(), [](const Contact& contact) {
           return contact.type == ContactType::kFrictionless;
         });
}

}  // namespace

std::optional<bool> force_closure(const Grasp& grasp, const Answer& answer) {
  if (answer.balance.rank < 6) return false;
  switch (answer.verdict) {
    case Verdict::kFeasible:
      return true;
    case Verdict::kInfeasible:
      if (!asks_for_more(grasp, answer.inquiry) && bounds_admit_small_forces(grasp) &&
          cones_have_an_inside(grasp))
        return false;
      break;
    case Verdict::kUndetermined:
      break;
  }
  return {};
}

}  // namespace grasp
