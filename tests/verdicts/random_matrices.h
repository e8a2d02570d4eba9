// Random problems with matrices whose truth is known because it was built in, in
// small integers: nothing is rounded, and most of them sit on the border.
#pragma once

#include <Eigen/Core>
#include <random>
#include <vector>

#include "solver/check/multipliers.h"
#include "solver/problem/problem.h"

namespace sdpsol::testing {

enum class MatrixKind {
  kSingularPoint,    ///< feasible: non-strict, singular at the planted point, tight rows
  kFaces,            ///< feasible: B*H(v)*B' with a tall B, so singular for every value
  kStrictFaces,      ///< infeasible: the same, strict
  kCertificate,      ///< infeasible: integer multipliers of any rank, a negative constant
  kZeroCertificate,  ///< infeasible: "0 > 0", a strict inequality taking part
  kWeak,             ///< infeasible, and only just: points come as near as one likes
};

const char* name_of(MatrixKind kind);

struct PlantedProblem {
  Problem problem;
  bool feasible = false;
  std::vector<double> point;            ///< one that satisfies it, if feasible
  std::vector<Multiplier> certificate;  ///< one that contradicts it, if known
};

class RandomMatrices {
 public:
  explicit RandomMatrices(unsigned seed) : random_(seed) {}
  PlantedProblem draw(MatrixKind kind);

 private:
  using Matrix = Eigen::MatrixXd;

  /// F_0 and F_1, F_2, ...
  using Coefficients = std::vector<Matrix>;

  int uniform(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  Matrix symmetric(Eigen::Index size);
  Matrix tall(Eigen::Index rows, Eigen::Index columns);
  Coefficients coefficients(Eigen::Index size, int unknowns);
  static void append(Problem& problem, Sense sense, const Coefficients& coefficients);
  static Matrix at(const Coefficients& coefficients, const std::vector<double>& point);

  PlantedProblem singular_point();
  PlantedProblem faces(Sense sense);
  PlantedProblem certificate(bool zero);
  PlantedProblem weak();

  std::mt19937 random_;
};

}  // namespace sdpsol::testing
