// A tall matrix F with few left null vectors: the way from x = F*z back to z, and what
// x must satisfy to have one.
//
// The few rows that F has more than columns are added to the others, each with factors
// that have nothing to do with F. What comes of it, C = (I S)*F, is square and regular
// whenever F has full rank, and one LU factorisation of it tells everything, at a third
// of the cost of an orthogonal one:
//   z = C^-1*(I S)*x, and with M = F_last*C^-1 the left null vectors are (-M, I - M*S).
#pragma once

#include <Eigen/Core>
#include <Eigen/LU>

namespace sdpsol::cones {

class TallFactor {
 public:
  /// Reciprocal condition number of C from which on F is taken to have full rank.
  static constexpr double kFullRank = 1e-9;

  /// @param f m x n, m >= n.
  explicit TallFactor(Eigen::MatrixXd f);

  bool has_full_rank() const { return has_full_rank_; }
  /// W, m x (m - n), orthonormal, with W'*F = 0.
  const Eigen::MatrixXd& null_base() const { return null_base_; }
  /// The z with F*z = x. @param x in the range of F.
  Eigen::VectorXd preimage(const Eigen::VectorXd& x) const;
  /// A b with b'*F*z = c'*z for all z, in the range of F.
  Eigen::VectorXd pulled_back(const Eigen::VectorXd& c) const;

 private:
  Eigen::MatrixXd mix(const Eigen::MatrixXd& x) const;

  Eigen::Index more_rows_;
  Eigen::MatrixXd shares_;  ///< S, n x (m - n)
  Eigen::PartialPivLU<Eigen::MatrixXd> factor_;
  Eigen::MatrixXd null_base_;
  bool has_full_rank_ = false;
};

}  // namespace sdpsol::cones
