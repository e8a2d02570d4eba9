// Weights on the blocks of a problem, and what the weighted sum amounts to.
//
// Each weight Y_b is written L_b * M_b * L_b' with L_b fixed and M_b near the
// identity. Whatever L_b is, Y_b is positive semidefinite as soon as M_b is; a
// multiplier that lives on a principal submatrix or on any other face simply has
// a tall L_b. All M together are one packed vector: upper triangles column by
// column, off-diagonal entries times sqrt 2, so that its length is their
// Frobenius norm.
#pragma once

#include <Eigen/Core>
#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol {

/// One weighted block. For an equation `factor` is 1 x 1 and its entry is the
/// multiplier itself, of either sign.
struct Multiplier {
  std::size_t block = 0;   ///< index into Problem::blocks
  Eigen::MatrixXd factor;  ///< L, size x r

  /// False only if entry (row, column) of L*M*L' is 0 whatever M is.
  bool reaches(const AffineTerm& term) const {
    return !factor.row(term.row).isZero(0) && !factor.row(term.column).isZero(0);
  }
};

/// The multipliers at some packed M, the identity to begin with. Refers to the
/// problem and the multipliers, which must outlive it.
class Weights {
 public:
  Weights(const Problem& problem, const std::vector<Multiplier>& multipliers);

  std::size_t count() const { return multipliers_.size(); }
  const Multiplier& multiplier(std::size_t b) const { return multipliers_[b]; }
  const Block& block(std::size_t b) const { return problem_.blocks[multipliers_[b].block]; }
  bool is_equation(std::size_t b) const { return block(b).sense == Sense::kEqual; }

  void set_identity();
  Eigen::VectorXd& packed() { return packed_; }
  const Eigen::VectorXd& packed() const { return packed_; }
  /// Where the entries of M_b begin in packed().
  Eigen::Index offset(std::size_t b) const { return offsets_[b]; }
  /// M_b. From here on these doubles are the multiplier, exactly.
  Eigen::MatrixXd middle(std::size_t b) const;

  /// These weights as multipliers with M the identity, but for rounding.
  std::vector<Multiplier> folded() const;

  /// sum over b of <Y_b, F_bk>, for the constants (index 0) and every unknown
  /// (index k + 1), with bounds on the rounding. In extended precision and straight
  /// from the factors, because what little is left of an unknown may be charged
  /// to the box with a factor of BIGM.
  struct Sums {
    std::vector<long double> values;
    std::vector<double> sizes;  ///< of what was added up: the same with |Y| and |F_k|
    std::vector<double> errors;
  };
  Sums sums() const;

  /// sum of |Y|-weighted magnitudes of the constants, all entries.
  double constant_weight() const;
  /// Diagonal terms of T that the inequalities' multipliers weigh: sum of
  /// Y_jj * S_k[j,j], at least, for every M within `correction` of this one. Index
  /// 0: the constants, index k + 1: unknown k.
  std::vector<double> diagonal_weights(double correction) const;
  /// True if an inequality of this sense takes part with a multiplier that is not 0.
  bool weighs(Sense sense) const;

 private:
  using Extended = Eigen::Matrix<long double, Eigen::Dynamic, Eigen::Dynamic>;
  /// Y where the block has terms, upper triangle; 0 elsewhere.
  Extended weight(std::size_t b) const;
  Eigen::MatrixXd weight_size(std::size_t b) const;  ///< |L| * |M| * |L|'
  void add_row(std::size_t b, Sums& sums, std::vector<std::size_t>& operations) const;

  const Problem& problem_;
  const std::vector<Multiplier>& multipliers_;
  std::vector<Eigen::Index> offsets_;
  Eigen::VectorXd packed_;
};

}  // namespace sdpsol
