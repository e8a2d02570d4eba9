// Multipliers, and how exactly they balance.
//
// Every claim about what no point can do (no feasible point, no better
// objective) is a weighted sum of the conditions in which each unknown cancels.
// The weights are multipliers Y_b, positive semidefinite for an inequality, any
// number for an equation. An engine's multipliers cancel only roughly; this file
// moves them onto the exact balance, or says how far they stay away from it.
//
// With Y_b = L_b * M_b * L_b' the balance is one linear system in the entries of
// M, its rows the unknowns, and M's distance to the border of its cone is close
// to 1: corrections are measured against the room which the multiplier has.
#pragma once

#include <vector>

#include "solver/check/balance_rows.h"
#include "solver/check/multipliers.h"

namespace sdpsol {

/// Multipliers corrected towards the balance, with proven bounds. Where the
/// correction would leave the cones they are taken as they are, unsettled.
class Balance {
 public:
  /// @param charged with kObjective in a box: unknowns that need not balance.
  Balance(const Problem& problem, const std::vector<Multiplier>& multipliers, BalanceOf what,
          const std::vector<std::int32_t>& charged = {});

  /// The multipliers at the corrected M.
  const Weights& weights() const { return weights_; }
  /// True if multipliers inside the cones are proven to exist, close to weights(),
  /// that balance exactly.
  bool exact() const { return unsettled_.empty(); }
  /// How far these multipliers are from weights() at most (norm of the change of M).
  double correction() const { return correction_; }
  /// |what is left of each unknown| at the exactly corrected multipliers, upper
  /// bounds, one per unknown; 0 where the balance is exact.
  std::vector<double> rests() const;

  /// True if every rest is at most `share` of what was added up in its unknown.
  bool nearly_balances(double share) const;

  /// Sum of the weighted constants: the middle and the largest possible distance
  /// of the true value from it.
  struct Enclosure {
    double middle = 0;
    double radius = 0;
  };
  Enclosure constant() const;

 private:
  void correct();
  void correct_for_bound(const std::vector<std::int32_t>& charged);
  void take_as_they_are();
  void leave_all_unsettled();
  const Eigen::MatrixXd& choose(const std::vector<Eigen::Index>& rows, Eigen::MatrixXd& copy) const;
  bool settle(const std::vector<Eigen::Index>& rows);
  bool settle_all_rows();
  void settle_independent_rows();
  void move(const Eigen::MatrixXd& chosen, const Eigen::MatrixXd& gram,
            const std::vector<Eigen::Index>& rows);
  Eigen::VectorXd residual_bounds() const;
  bool cones_hold() const;
  bool is_unsettled(std::int32_t unknown) const;

  const Problem& problem_;
  const std::vector<Multiplier>& multipliers_;
  Weights weights_;
  BalanceRows system_;
  Weights::Sums sums_;  ///< at the present M
  /// Exactly balanced multipliers, but for the unsettled unknowns, exist at most
  /// this far from M (Frobenius norm).
  double correction_ = 0;
  std::vector<std::int32_t> unsettled_;  ///< kConstant stands for the constants
};

}  // namespace sdpsol
