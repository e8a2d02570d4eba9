// What is known about a grasp once a question has been asked.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "grasp/grasp.h"
#include "grasp/question.h"

namespace grasp {

enum class Verdict { kFeasible, kInfeasible, kUndetermined };

/// "FEASIBLE", "INFEASIBLE", "FEASIBILITY CANNOT BE DETERMINED".
std::string_view to_string(Verdict verdict);

/// What the grasp map says before any force is asked for.
struct Balance {
  int rank = 0;     ///< of the grasp map, at most 6
  int columns = 0;  ///< force components
  int nullity = 0;  ///< columns - rank: dimensions of internal force
  /// The grasp map's singular values relative to the largest: the smallest one that
  /// counts, and the largest one that was taken for 0, if there is one.
  double smallest_kept = 0;
  double largest_dropped = 0;
};

/// One contact under the forces that were found, in newtons.
struct ContactForce {
  Vector local;  ///< along tangential 1, tangential 2 and normal of the contact's frame
  Vector world;  ///< on the object
  /// How far inside its cone: friction * normal force - tangential force; the normal
  /// force of a frictionless contact.
  double cone_margin = 0;
  /// How far inside its bounds: of the component that is nearest to one.
  double bound_margin = 0;
  /// The margin that the question maximised, as the solver reports it; none where
  /// the question has no such variable for this contact.
  std::optional<double> epsilon;
};

struct Answer {
  Inquiry inquiry;
  Balance balance;
  Verdict verdict = Verdict::kUndetermined;
  /// Why, on one line. Empty where forces were found.
  std::string reason;
  /// What else is to be known about this answer, a line each.
  std::vector<std::string> notes;
  /// Whether every wrench can be resisted with forces of any size; none where this
  /// answer does not decide it.
  std::optional<bool> force_closure;

  // The rest only with kFeasible.

  /// One per contact.
  std::vector<ContactForce> forces;
  /// What the question maximises, as the solver reports it; none for kExists.
  std::optional<double> objective;
  /// The mean of the contacts' epsilons; none where there are none.
  std::optional<double> mean_epsilon;
  /// Of grasp map times forces: the largest component of the force [N] and of the
  /// torque [N m].
  double force_residual = 0;
  double torque_residual = 0;

  /// What the solver took, from the definition to the answer, in seconds.
  double solving_time = 0;
};

}  // namespace grasp
