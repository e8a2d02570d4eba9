#include "solver/dense/symmetric_eigen.h"

#include <Eigen/Eigenvalues>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace sdpsol {
namespace {

// Up to this size rotations are quicker than going through a tridiagonal matrix.
constexpr Eigen::Index kSmall = 4;
constexpr int kMaxSweeps = 30;

using Solver = Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>;

Eigen::VectorXd values_of(const Solver& solver) {
  if (solver.info() == Eigen::Success) return solver.eigenvalues();
  return Eigen::VectorXd::Constant(solver.eigenvalues().size(),
                                   std::numeric_limits<double>::quiet_NaN());
}

/// A small symmetric matrix on its way to a diagonal one, and the product of the
/// rotations that brought it there.
/// Method: cyclic Jacobi (Golub and Van Loan, "Matrix Computations", section 8.5).
class Rotations {
 public:
  /// Reads the lower triangle.
  explicit Rotations(const Eigen::MatrixXd& matrix) : n_(matrix.rows()) {
    for (Eigen::Index j = 0; j < n_; ++j) {
      for (Eigen::Index i = j; i < n_; ++i) a_(i, j) = a_(j, i) = matrix(i, j);
    }
    if (!a_.allFinite()) return;
    for (int sweep = 0; sweep < kMaxSweeps && !converged_; ++sweep) converged_ = !this->sweep();
  }

  bool converged() const { return converged_; }
  double value(Eigen::Index i) const { return a_(i, i); }
  Eigen::VectorXd vector(Eigen::Index i) const { return v_.col(i).head(n_); }

 private:
  /// Rotates every entry beside the diagonal away; false if none was worth it.
  bool sweep() {
    bool any = false;
    for (Eigen::Index p = 0; p < n_; ++p) {
      for (Eigen::Index q = p + 1; q < n_; ++q) {
        // Below the rounding of both eigenvalues that it stands between.
        const double least = 0x1p-54 * std::min(std::fabs(a_(p, p)), std::fabs(a_(q, q)));
        if (std::fabs(a_(p, q)) <= std::max(least, std::numeric_limits<double>::min())) continue;
        rotate(p, q);
        any = true;
      }
    }
    return any;
  }

  void rotate(Eigen::Index p, Eigen::Index q) {
    const double half = (a_(q, q) - a_(p, p)) / 2 / a_(p, q);
    const double tangent = std::copysign(1 / (std::fabs(half) + std::sqrt(1 + half * half)), half);
    const double cosine = 1 / std::sqrt(1 + tangent * tangent);
    const double sine = tangent * cosine;
    const auto turn = [&](double& x, double& y) {
      const double old = x;
      x = cosine * old - sine * y;
      y = sine * old + cosine * y;
    };
    a_(p, p) -= tangent * a_(p, q);
    a_(q, q) += tangent * a_(p, q);
    a_(p, q) = a_(q, p) = 0;
    for (Eigen::Index k = 0; k < n_; ++k) {
      turn(v_(k, p), v_(k, q));
      if (k == p || k == q) continue;
      turn(a_(k, p), a_(k, q));
      a_(p, k) = a_(k, p);
      a_(q, k) = a_(k, q);
    }
  }

  Eigen::Index n_;
  Eigen::Matrix4d a_ = Eigen::Matrix4d::Zero();
  Eigen::Matrix4d v_ = Eigen::Matrix4d::Identity();
  bool converged_ = false;
};

SymmetricEigen small_eigen(const Eigen::MatrixXd& matrix) {
  const Eigen::Index n = matrix.rows();
  const Rotations rotations(matrix);
  SymmetricEigen eigen{Eigen::VectorXd(n), Eigen::MatrixXd(n, n)};
  if (!rotations.converged()) {
    eigen.values.setConstant(std::numeric_limits<double>::quiet_NaN());
    eigen.vectors.setIdentity();
    return eigen;
  }
  std::array<Eigen::Index, kSmall> order = {0, 1, 2, 3};
  const auto less = [&](Eigen::Index i, Eigen::Index j) {
    return rotations.value(i) < rotations.value(j);
  };
  for (Eigen::Index i = 0; i < n; ++i) {
    const auto place = order.begin() + i;
    std::iter_swap(place, std::min_element(place, order.begin() + n, less));
    eigen.values[i] = rotations.value(*place);
    eigen.vectors.col(i) = rotations.vector(*place);
  }
  return eigen;
}

}  // namespace

SymmetricEigen symmetric_eigen(const Eigen::MatrixXd& matrix) {
  if (matrix.rows() <= kSmall) return small_eigen(matrix);
  const Solver solver(matrix);
  return {values_of(solver), solver.eigenvectors()};
}

Eigen::VectorXd symmetric_eigenvalues(const Eigen::MatrixXd& matrix) {
  if (matrix.rows() <= kSmall) return small_eigen(matrix).values;
  return values_of(Solver(matrix, Eigen::EigenvaluesOnly));
}

}  // namespace sdpsol
