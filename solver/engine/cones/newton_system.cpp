#include "solver/engine/cones/newton_system.h"

namespace sdpsol::cones {

Eigen::VectorXd NewtonSystem::solve(const Eigen::VectorXd& right) const {
  constexpr int kMaxPasses = 5;
  constexpr double kEnough = 1e-15;
  Eigen::VectorXd solution = solve_once(right);
  Eigen::VectorXd rest = right - product(solution);
  double size = rest.norm();
  for (int pass = 0; pass < kMaxPasses && size > kEnough * right.norm(); ++pass) {
    const Eigen::VectorXd better = solution + solve_once(rest);
    rest = right - product(better);
    const double next_size = rest.norm();
    if (!(next_size < size)) break;
    solution = better;
    if (next_size > size / 2) break;
    size = next_size;
  }
  return solution;
}

}  // namespace sdpsol::cones
