#include "solver/dense/symmetric_eigen.h"

#include <Eigen/Eigenvalues>
#include <limits>

namespace sdpsol {
namespace {

using Solver = Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>;

Eigen::VectorXd values_of(const Solver& solver) {
  if (solver.info() == Eigen::Success) return solver.eigenvalues();
  return Eigen::VectorXd::Constant(solver.eigenvalues().size(),
                                   std::numeric_limits<double>::quiet_NaN());
}

}  // namespace

SymmetricEigen symmetric_eigen(const Eigen::MatrixXd& matrix) {
  const Solver solver(matrix);
  return {values_of(solver), solver.eigenvectors()};
}

Eigen::VectorXd symmetric_eigenvalues(const Eigen::MatrixXd& matrix) {
  return values_of(Solver(matrix, Eigen::EigenvaluesOnly));
}

}  // namespace sdpsol
