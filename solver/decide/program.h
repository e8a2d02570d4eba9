// Problems as engines get them, and iterates as the checker gets them.
#pragma once

#include <vector>

#include "solver/check/multipliers.h"
#include "solver/decide/equation_multipliers.h"
#include "solver/decide/scaling.h"
#include "solver/dense/symmetric_eigen.h"
#include "solver/engine/engine.h"
#include "solver/problem/problem.h"

namespace sdpsol {

/// Which parts of a problem an engine is asked about. Rows that follow from
/// others are left out, rows that can only hold with equality are equations, and
/// the box enters only for unknowns that have left it.
struct Selection {
  std::vector<std::size_t> inequalities;  ///< indices of blocks
  std::vector<PinnedRow> equations;
  std::vector<std::int32_t> boxed;  ///< unknowns
};

/// Which unknowns occur in what is selected, the box aside: one flag per unknown.
std::vector<bool> unknowns_in(const Problem& problem, const Selection& selection);

enum class Goal {
  kMargin,     ///< maximise t with F_b(v) - t*diag(sizes_b) psd, t <= 1
  kObjective,  ///< maximise the problem's objective
};

/// A scaled cone program and the way back from it.
class Program {
 public:
  Program(const Problem& problem, const Selection& selection, const Scaling& scaling, Goal goal);

  const ConeProgram& cones() const { return program_; }
  /// False if there is nothing to ask: no unknown occurs in any inequality.
  bool has_unknowns() const { return !unknowns_.empty(); }

  /// What the engine proposes. Iterates of another shape than the program's do not reach
  /// the observer; a candidate of another shape comes back as 0 everywhere, in trouble.
  Candidate solve_by(Engine& engine, const Limits& limits, const Observer& observer) const;

  /// The iterate's point in the unknowns of the problem; unknowns that do not
  /// occur are 0.
  std::vector<double> point(const Iterate& iterate) const;

  /// Which eigenvectors of an engine's multipliers are taken to be meant.
  enum class Keep {
    kActive,  ///< those that weigh more than the inequality is slack
    /// The heaviest, until there are several times as many weights as unknowns that
    /// must balance: then an exact balance is near, and more would only cost time.
    kEnough,
    kAll,
  };
  /// The iterate's multipliers as weights on the blocks of the problem.
  std::vector<Multiplier> multipliers(const Iterate& iterate, Keep keep) const;

 private:
  bool has_shape(const Iterate& iterate) const;
  void number_unknowns();
  void add_cone(std::size_t block, bool with_margin);
  void add_equation(std::size_t block);
  void add_box(std::int32_t unknown);
  void add_margin_cap();
  /// F(v) - t*D of one cone, in its own scale.
  Eigen::MatrixXd slack(std::size_t cone, const Iterate& iterate) const;
  double row_slack(std::size_t cone, const Iterate& iterate) const;  ///< of a cone of size 1
  /// An eigenvector of a scaled multiplier.
  struct Eigenvector {
    std::size_t cone = 0;
    Eigen::Index index = 0;
    double value = 0;
  };
  /// Those of the iterate's multipliers that are not negligible, nor idle with kActive.
  /// @param matrices receives what they are indices into, one per inequality; empty for rows.
  std::vector<Eigenvector> eigenvectors(const Iterate& iterate, Keep keep,
                                        std::vector<SymmetricEigen>& matrices) const;
  std::vector<Eigenvector> heaviest(std::vector<Eigenvector> all) const;

  const Problem& problem_;
  const Selection& selection_;
  const Scaling& scaling_;
  Goal goal_;
  double objective_size_ = 1;           ///< the program's objective is the problem's over this
  std::vector<std::int32_t> unknowns_;  ///< of the problem, in the program's order
  std::vector<std::int32_t> place_;     ///< of each unknown in the program, -1 if absent
  ConeProgram program_;
  std::vector<std::size_t> offsets_;
};

}  // namespace sdpsol
