// Positive definiteness, proven in floating point.
#pragma once

#include <Eigen/Core>
#include <initializer_list>

namespace sdpsol {

/// True only if every symmetric matrix within `error` of `value`, entry by
/// entry, is positive definite. May answer false for a positive definite matrix
/// that is too close to singular for doubles.
/// Method: a Cholesky factorisation that runs to its end on a matrix shifted
/// down by the bound of its own backward error (Rump, "Verification of positive
/// definiteness", BIT 46, 2006), after scaling the diagonal to 1, so that the
/// answer does not change when the matrix is scaled from both sides.
/// @param value n x n, symmetric.  @param error n x n, symmetric, nonnegative.
bool certainly_positive_definite(const Eigen::MatrixXd& value, const Eigen::MatrixXd& error);

/// The first s of a few with a proven "no singular value of A is below s"; 0 if there is none.
/// @param gram A*A', known within `error` entry by entry.
/// @param tried from large to small.
double proven_smallest_singular_value(const Eigen::MatrixXd& gram, const Eigen::MatrixXd& error,
                                      std::initializer_list<double> tried);

/// The same as certainly_positive_definite() for one number.
inline bool certainly_positive(double value, double error) {
  return value > error;
}

}  // namespace sdpsol
