#include "tests/engines/matrix_texts.h"

#include <Eigen/Core>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/engines/exact_truth.h"
#include "tests/engines/grasp_problems.h"
#include "tests/engines/integer_problems.h"

namespace sdpsol::testing {
namespace {

using Matrix = Eigen::MatrixXd;

int uniform(std::mt19937& random, int from, int to) {
  return std::uniform_int_distribution<int>(from, to)(random);
}

/// A matrix of whole numbers, its inverse too: L*L' with ones on L's diagonal.
struct Unimodular {
  Matrix matrix;
  Matrix inverse;
};

Unimodular unimodular(std::mt19937& random, Eigen::Index size) {
  Matrix root = Matrix::Identity(size, size);
  for (Eigen::Index i = 0; i < size; ++i) {
    for (Eigen::Index j = 0; j < i; ++j) root(i, j) = uniform(random, -1, 1);
  }
  const Matrix inverse =
      root.triangularView<Eigen::UnitLower>().solve(Matrix(Matrix::Identity(size, size)));
  return {root * root.transpose(), inverse.transpose() * inverse};
}

Matrix skew(std::mt19937& random, Eigen::Index size) {
  Matrix m = Matrix::Zero(size, size);
  for (Eigen::Index i = 0; i < size; ++i) {
    for (Eigen::Index j = 0; j < i; ++j) {
      m(i, j) = uniform(random, -3, 3);
      m(j, i) = -m(i, j);
    }
  }
  return m;
}

std::string text_of(const Matrix& m) {
  std::string text = "[";
  for (Eigen::Index i = 0; i < m.rows(); ++i) {
    if (i > 0) text += "; ";
    for (Eigen::Index j = 0; j < m.cols(); ++j) {
      text += (j > 0 ? ", " : "") + std::to_string(static_cast<long>(m(i, j)));
    }
  }
  return text + "]";
}

std::string symmetric_variable(const char* name, Eigen::Index size) {
  const std::string n = std::to_string(size);
  return std::string("variable ") + name + "(" + n + "," + n + ") symmetric;\n";
}

/// The upper triangle column by column, the order of a symmetric variable's unknowns.
std::vector<double> entries_of(const Matrix& m) {
  std::vector<double> entries;
  for (Eigen::Index j = 0; j < m.cols(); ++j) {
    for (Eigen::Index i = 0; i <= j; ++i) entries.push_back(m(i, j));
  }
  return entries;
}

/// The usual pair, strict at 0 or at the identity.
std::string stability(std::mt19937& random, const Matrix& a) {
  const std::string above =
      uniform(random, 0, 1) == 0 ? "0" : "eye(" + std::to_string(a.rows()) + ")";
  return symmetric_variable("P", a.rows()) + "A = " + text_of(a) + ";\nP > " + above +
         ";\nA'*P + P*A < 0;\n";
}

}  // namespace

EngineProblem stable_system(std::mt19937& random) {
  const Eigen::Index size = uniform(random, 2, 3);
  for (;;) {
    const Unimodular p = unimodular(random, size);
    // A'*P + P*A = -2*Q
    const Matrix a = p.inverse * (skew(random, size) - unimodular(random, size).matrix);
    EngineProblem drawn{.problem = problem_of(stability(random, a)), .truth = Truth::kFeasible};
    for (const double factor : {1.0, 8.0, 64.0}) {
      drawn.point = entries_of(factor * p.matrix);
      drawn.has_room = satisfies(drawn.problem, rational(drawn.point), Rational(kPlantedRoom));
      if (drawn.has_room) return drawn;
    }
  }
}

EngineProblem unstable_system(std::mt19937& random) {
  const Eigen::Index size = uniform(random, 2, 3);
  const Unimodular x = unimodular(random, size);
  // A*X + X*A' = 2*Q, and <P, 2*Q> - <A'*P + P*A, X> = 0 for every P
  const Matrix a = (skew(random, size) + unimodular(random, size).matrix) * x.inverse;
  return {
      .problem = problem_of(stability(random, a)), .truth = Truth::kInfeasible, .has_room = true};
}

EngineProblem least_matrix(std::mt19937& random) {
  const Eigen::Index size = uniform(random, 2, 4);
  const Matrix least = 3 * unimodular(random, size).matrix + skew(random, size).cwiseAbs();
  const Matrix weight = unimodular(random, size).matrix;
  const bool strict = uniform(random, 0, 1) == 0;
  const bool again = uniform(random, 0, 1) == 0;
  std::string text = "BIGM = 2000;\nABSTOL = 1e-5;\n" + symmetric_variable("X", size) +
                     "B = " + text_of(least) + ";\nX " + (strict ? ">" : ">=") + " B;\n";
  if (again) text += "X - B + eye(" + std::to_string(size) + ") > 0;\n";
  text += "minimize f = trace(" + text_of(weight) + "*X);\n";
  EngineProblem drawn{.problem = problem_of(text), .truth = Truth::kFeasible};
  drawn.point = entries_of(least + Matrix::Identity(size, size));
  drawn.has_room = satisfies(drawn.problem, rational(drawn.point), Rational(kPlantedRoom));
  if (!drawn.has_room) throw std::logic_error("the planted matrix has room");
  // A maximisation of what is written.
  drawn.optimum = drawn.reached = drawn.limit = -weight.cwiseProduct(least).sum();
  return drawn;
}

}  // namespace sdpsol::testing
