// Linear programs whose optimum is known because they were built around it.
#pragma once

#include <random>
#include <vector>

#include "solver/problem/test_problem.h"

namespace sdpsol::testing {

struct KnownOptimum {
  Problem problem;
  std::vector<double> weights;  ///< of the rows; they prove that nothing is better
  double value = 0;
};

/// Every row (not strict) holds with equality at one point, and the objective is
/// minus a positive combination of the rows. All numbers are small integers.
inline KnownOptimum random_known_optimum(std::mt19937& random) {
  const auto uniform = [&](int from, int to) {
    return std::uniform_int_distribution<int>(from, to)(random);
  };
  const int unknowns = uniform(1, 4);
  const int rows = uniform(1, 5);
  KnownOptimum known;
  std::vector<int> point(static_cast<std::size_t>(unknowns));
  for (int& v : point) v = uniform(-3, 3);
  std::vector<double> cost(point.size(), 0.0);
  ProblemBuilder builder(unknowns);
  for (int r = 0; r < rows; ++r) {
    Form row;
    int at_point = 0;
    const int weight = uniform(1, 4);
    for (int k = 0; k < unknowns; ++k) {
      const int a = uniform(-3, 3);
      if (a == 0) continue;
      row.terms.emplace_back(k, a);
      at_point += a * point[static_cast<std::size_t>(k)];
      cost[static_cast<std::size_t>(k)] -= weight * a;
    }
    row.constant = -at_point;
    builder.row(Sense::kNonStrict, row);
    known.weights.push_back(weight);
  }
  for (int k = 0; k < unknowns; ++k) {
    known.value += cost[static_cast<std::size_t>(k)] * point[static_cast<std::size_t>(k)];
  }
  known.problem = builder.maximise(cost).build();
  return known;
}

}  // namespace sdpsol::testing
