// Steps in the forces instead of the coordinates that move them.
//
// x = F*z with F tall: x is any vector with W'*x = 0, W the few left null vectors of F
// (for a grasp six, one for each dimension of a wrench). In x the matrix of the normal
// equations is block diagonal, a small block for each contact, and the border of the
// common unknown t and of W' is all that ties the blocks together: what a step costs
// grows linearly with the contacts, where it grows with their third power in z.
//
// Source: Boyd and Wegbreit, Fast computation of optimal contact forces, 2007.
#pragma once

#include <Eigen/Cholesky>
#include <memory>
#include <vector>

#include "solver/engine/cones/forces.h"
#include "solver/engine/cones/newton_system.h"
#include "solver/engine/cones/tall_factor.h"

namespace sdpsol::cones {

/// u = (x, t), x as in Forces.
class RangeSystem final : public NewtonSystem {
 public:
  /// Nothing if it does not pay: more than kMaxNullVectors left null vectors, unknowns
  /// that F does not tell apart (see TallFactor::kFullRank), blocks of more than
  /// kLargestBlock, or blocks that are singular by themselves.
  static constexpr Eigen::Index kMaxNullVectors = 26;  ///< a wrench and 20 rows |z| <= BIGM
  static constexpr Eigen::Index kLargestBlock = 40;
  /// @param layout must outlive the result.
  static std::unique_ptr<RangeSystem> make(const Layout& layout,
                                           const std::vector<double>& objective);

  Eigen::Index size() const override { return objective_.size(); }
  const Eigen::VectorXd& objective() const override { return objective_; }
  Eigen::VectorXd multiply(const Eigen::VectorXd& u) const override;
  Eigen::VectorXd multiply_transposed(const Eigen::VectorXd& z) const override;
  bool factor(const NtScaling& scaling) override;
  Eigen::VectorXd solve_once(const Eigen::VectorXd& right) const override;
  Eigen::VectorXd product(const Eigen::VectorXd& u) const override;
  Eigen::VectorXd point(const Eigen::VectorXd& u) const override;

 private:
  /// Entries of x that cones tie together, with their block of the normal equations.
  struct Group {
    std::vector<Eigen::Index> members;  ///< of x
    std::vector<Eigen::Index> rows;     ///< coordinates that are linear rows
    std::vector<std::size_t> parts;     ///< of the layout
    Eigen::MatrixXd null_rows;          ///< W of the members
    Eigen::MatrixXd scaled;             ///< A: W^-T * (E, g) of these coordinates
    Eigen::MatrixXd root;               ///< R of A = Q*R, without the column of t
    Eigen::VectorXd common;             ///< R's column of t: R^-T * A'*g
    Eigen::MatrixXd null_part;          ///< R^-T * (W of the members)
  };

  RangeSystem(const Layout& layout, Forces forces, const std::vector<double>& objective);
  void find_objective(const std::vector<double>& objective);
  void find_groups();
  Eigen::Index height_of(const Group& group) const;
  void scale_group(Group& group, const NtScaling& scaling) const;
  void project(Eigen::VectorXd& u) const;

  Eigen::Index forces_count() const { return forces_.factor.rows(); }

  const Layout& layout_;
  Forces forces_;
  Eigen::VectorXd objective_;
  std::size_t unknowns_;         ///< of the program
  TallFactor factor_;            ///< of F
  const Eigen::MatrixXd& null_;  ///< W
  std::vector<Group> groups_;
  std::vector<Eigen::Index> place_;  ///< of each entry of x in its group
  Eigen::LLT<Eigen::MatrixXd> null_factor_;
  Eigen::VectorXd null_common_;  ///< W'*H^-1*(column of t)
  double common_pivot_ = 0;
};

}  // namespace sdpsol::cones
