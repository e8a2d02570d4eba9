// One run of the engine decides almost every problem. The other rounds are for
// what the first cannot know: that an unknown leaves the box, that rows can only
// hold with equality, or that the sizes at the solution are far from those which
// the definition suggested.
#include "solver/decide/feasibility.h"

#include <algorithm>
#include <cmath>

#include "solver/check/evaluate.h"
#include "solver/check/feasible.h"
#include "solver/check/infeasible.h"
#include "solver/decide/polish.h"

namespace sdpsol {
namespace {

constexpr int kMaxRounds = 10;
constexpr int kMaxRescalings = 3;
// Margins below this are taken for 0 where only the next step depends on it.
constexpr double kNoMargin = 1e-6;

class MarginSearch {
 public:
  MarginSearch(const Problem& problem, Selection selection, Engine& engine, const Limits& limits)
      : problem_(problem),
        selection_(std::move(selection)),
        engine_(engine),
        limits_(limits),
        scaling_(scale_by_constants(problem)) {}

  Feasibility run() {
    for (int round = 0; round < kMaxRounds && !decided_; ++round) {
      const Program program(problem_, selection_, scaling_, Goal::kMargin);
      if (!program.has_unknowns()) {
        examine_point(std::vector<double>(static_cast<std::size_t>(problem_.unknowns), 0.0));
        break;
      }
      solve(program);
      if (decided_ || !prepare_next_round(program)) break;
    }
    if (!decided_) examine_rows_alone();
    if (!decided_) give_up();
    return std::move(result_);
  }

 private:
  void solve(const Program& program) {
    double last_gap = HUGE_VAL;
    const Observer observer = [&](const Iterate& iterate) {
      observe(program, iterate, last_gap);
      return decided_;
    };
    Candidate candidate = program.solve_by(engine_, limits_, observer);
    result_.iterations += candidate.last.iteration;
    reason_ = candidate.reason;
    last_ = std::move(candidate.last);
    if (decided_) return;
    result_.point = program.point(last_);
    examine_point(result_.point);
    if (!decided_) examine_multipliers(program, last_);
  }

  /// Proofs cost more than a step of a small problem: they are tried when the
  /// engine's own numbers promise one, and then again only after a good step.
  void observe(const Program& program, const Iterate& iterate, double& last_gap) {
    const double margin = iterate.value;
    const double gap = std::fabs(iterate.bound - iterate.value);
    if (margin > kNoMargin && (gap < 1e-4 * margin || margin > 0.999)) {
      examine_point(program.point(iterate));
      return;
    }
    const bool promises = iterate.bound < 0 || gap < 1e-4;
    if (!promises || margin > kNoMargin || gap > 0.3 * last_gap) return;
    last_gap = gap;
    examine_multipliers(program, iterate);
  }

  void examine_point(const std::vector<double>& point) {
    FeasibleCheck check = check_point(problem_, point);
    if (check.result == PointResult::kOnlyWithin1e8) nearly_feasible_ = true;
    if (check.result != PointResult::kProven) return;
    result_.verdict = Verdict::kFeasible;
    result_.point = std::move(check.point);
    result_.distance = std::move(check.distance);
    decided_ = true;
  }

  void examine_multipliers(const Program& program, const Iterate& iterate) {
    for (const auto keep : {Program::Keep::kActive, Program::Keep::kEnough}) {
      examine_multipliers(program.multipliers(iterate, keep));
      if (decided_) return;
    }
    if (iterate.value < kRoom) examine_cones_alone(program, iterate);
    // A contradiction that only the box keeps from being one may lack mere digits.
    if (decided_ || empty_box_.conditions.empty()) return;
    examine_multipliers(polish(problem_, program.multipliers(iterate, Program::Keep::kActive)));
  }

  /// Where the room grows with the point, bounds are active at the best one and stand
  /// in the way of the proof that no point has enough: it needs only what has no
  /// constants, such as friction cones.
  void examine_cones_alone(const Program& program, const Iterate& iterate) {
    std::vector<Multiplier> multipliers = program.multipliers(iterate, Program::Keep::kActive);
    std::erase_if(multipliers, [&](const Multiplier& y) {
      const Block& block = problem_.blocks[y.block];
      return !block.terms.empty() && block.terms.front().unknown == kConstant;
    });
    examine_multipliers(std::move(multipliers));
  }

  void examine_multipliers(std::vector<Multiplier> multipliers) {
    switch (disprove(problem_, multipliers)) {
      case Disproof::kInfeasible:
        result_.verdict = Verdict::kInfeasible;
        result_.point.clear();
        result_.proof = proof_by(problem_, std::move(multipliers));
        decided_ = true;
        break;
      case Disproof::kEmptyBox:
        keep_fewest(empty_box_, proof_by(problem_, std::move(multipliers)));
        break;
      case Disproof::kBorderline:
        keep_fewest(borderline_, proof_by(problem_, std::move(multipliers)));
        break;
      case Disproof::kNone:
        break;
    }
  }

  /// Equations may leave a row nothing but a constant, which no engine gets to see:
  /// x == 0 makes x > 0 false by itself.
  void examine_rows_alone() {
    for (const PinnedRow& row : selection_.equations) {
      if (problem_.blocks[row.block].sense != Sense::kEqual) continue;
      for (const double weight : {1.0, -1.0}) {
        examine_multipliers({{row.block, Eigen::MatrixXd::Constant(1, 1, weight)}});
        if (decided_) return;
      }
    }
    if (selection_.equations.empty()) return;
    for (const std::size_t b : selection_.inequalities) {
      if (problem_.blocks[b].size != 1) continue;
      std::vector<Multiplier> multipliers = {{b, Eigen::MatrixXd::Ones(1, 1)}};
      append_equation_multipliers(problem_, selection_.equations, scaling_.unknown, multipliers);
      examine_multipliers(multipliers);
      if (decided_) return;
    }
  }

  /// Of two proofs of one claim the one that a person has less to read of.
  static void keep_fewest(Proof& kept, Proof found) {
    const bool fewer = found.conditions.size() < kept.conditions.size();
    if (kept.conditions.empty() || fewer) kept = std::move(found);
  }

  /// Changes what the next round asks; false if nothing is left to change.
  bool prepare_next_round(const Program& program) {
    if (!empty_box_.conditions.empty()) return false;
    if (box_what_left() || turn_tight_rows_into_equations(program)) return true;
    // Other sizes find no room where it is proven that there is none.
    return borderline_.conditions.empty() && rescale();
  }

  bool box_what_left() {
    bool any = false;
    for (std::int32_t k = 0; k < problem_.unknowns; ++k) {
      const double v = std::fabs(result_.point[static_cast<std::size_t>(k)]);
      auto& boxed = selection_.boxed;
      if (!(v <= problem_.big_m) && std::find(boxed.begin(), boxed.end(), k) == boxed.end()) {
        boxed.push_back(k);
        any = true;
      }
    }
    return any;
  }

  /// Without any margin, a row that the multipliers need holds with equality at
  /// every feasible point.
  bool turn_tight_rows_into_equations(const Program& program) {
    if (std::fabs(last_.value) > kNoMargin) return false;
    bool any = false;
    for (const Multiplier& y : program.multipliers(last_, Program::Keep::kActive)) {
      const Block& block = problem_.blocks[y.block];
      if (block.size != 1 || block.sense != Sense::kNonStrict) continue;
      auto& rows = selection_.inequalities;
      const auto found = std::find(rows.begin(), rows.end(), y.block);
      if (found == rows.end()) continue;
      rows.erase(found);
      selection_.equations.push_back({y.block, std::nullopt});
      any = true;
    }
    return any;
  }

  bool rescale() {
    if (++rescalings_ > kMaxRescalings) return false;
    const auto finite = [](double v) { return std::isfinite(v); };
    if (!std::all_of(result_.point.begin(), result_.point.end(), finite)) return false;
    Scaling next = scale_by_point(problem_, scaling_, result_.point);
    double change = 0;
    for (std::size_t k = 0; k < next.unknown.size(); ++k) {
      change = std::max(change, std::fabs(std::log(next.unknown[k] / scaling_.unknown[k])));
    }
    scaling_ = std::move(next);
    return change > std::log(3.0);
  }

  void give_up() {
    if (!empty_box_.conditions.empty()) {
      result_.reason = "no point with |v| <= BIGM";
      result_.proof = std::move(empty_box_);
    } else if (nearly_feasible_) {
      result_.reason = "feasible only within 1e-8";
    } else if (!borderline_.conditions.empty()) {
      result_.reason = kNoRoomLeft;
      result_.proof = std::move(borderline_);
    } else if (reason_ == StopReason::kIterationLimit) {
      result_.reason = "the engine reached MAXITER iterations";
    } else if (reason_ == StopReason::kUnsuited) {
      result_.reason = "the engine is not made for such problems";
    } else if (reason_ == StopReason::kTrouble) {
      result_.reason = "numerical trouble: the engine gave up";
    } else {
      result_.reason = "neither a point nor a certificate could be proven";
    }
  }

  const Problem& problem_;
  Selection selection_;
  Engine& engine_;
  Limits limits_;
  Scaling scaling_;
  Feasibility result_;
  Iterate last_;
  StopReason reason_ = StopReason::kConverged;
  int rescalings_ = 0;
  bool decided_ = false;
  Proof empty_box_;   ///< that the box holds no point
  Proof borderline_;  ///< that no point has room
  bool nearly_feasible_ = false;
};

}  // namespace

Proof proof_by(const Problem& problem, std::vector<Multiplier> multipliers) {
  Proof proof;
  for (const Multiplier& y : multipliers) {
    proof.conditions.push_back(problem.blocks[y.block].condition);
  }
  std::vector<std::int32_t>& conditions = proof.conditions;
  std::sort(conditions.begin(), conditions.end());
  conditions.erase(std::unique(conditions.begin(), conditions.end()), conditions.end());
  proof.multipliers = std::move(multipliers);
  return proof;
}

Feasibility find_feasible_point(const Problem& problem, Selection selection, Engine& engine,
                                const Limits& limits) {
  return MarginSearch(problem, std::move(selection), engine, limits).run();
}

}  // namespace sdpsol
