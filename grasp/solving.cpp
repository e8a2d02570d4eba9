// Where two contacts can squeeze the object between them, and the others only turn it
// about the line through those two, there is no internal force, and the proof is exactly
// that turn. Six digits of a base know nothing of it: whether forces exist for the
// rounded numbers is chance, and the solver calls it borderline. A base in which the
// squeeze is a column of its own has zeros for all other contacts there, which no
// rounding changes, and the proof goes through. Only proofs count: forces that exist in
// one base and not in another are those of the rounding.
#include "grasp/solving.h"

namespace grasp {
namespace {

Solved solve_with(UnitRoad& road, const Grasp& grasp, const Inquiry& inquiry,
                  const Eigen::MatrixXd& base) {
  Solved solved{base, road.ask(unit_inputs(grasp, base), inquiry), {}, {}};
  solved.heading = read_heading(solved.found.result);
  if ((solved.heading.verdict == Verdict::kFeasible) != solved.found.feasible)
    throw AskError("the unit and the result file contradict each other");
  return solved;
}

}  // namespace

Solved solve(UnitRoad& road, const Grasp& grasp, const Inquiry& inquiry, const Nullspace& space) {
  constexpr std::size_t kMaxTries = 10;
  Solved first = solve_with(road, grasp, inquiry, space.base);
  if (first.heading.verdict != Verdict::kUndetermined || space.balance.nullity < 2) return first;
  std::vector<Squeeze> all = squeezes(grasp);
  if (all.size() > kMaxTries) all.resize(kMaxTries);
  for (const Squeeze& squeeze : all) {
    Solved again = solve_with(road, grasp, inquiry, base_with(space, squeeze.forces));
    first.found.seconds += again.found.seconds;
    if (again.heading.verdict != Verdict::kInfeasible) continue;
    again.found.seconds = first.found.seconds;
    again.squeeze = squeeze;
    return again;
  }
  return first;
}

}  // namespace grasp
