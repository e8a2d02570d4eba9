#include "solver/decide/program.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sdpsol {
namespace {

// Eigenvalues below this share of the largest are rounding.
constexpr double kNegligible = 1e-13;
// Weights for each unknown that must balance.
constexpr Eigen::Index kEnoughTimes = 8;

/// What a coefficient is multiplied by at an iterate.
double factor_of(const ConeProgram::Coefficient& term, const Iterate& iterate) {
  return term.unknown == ConeProgram::kConstantTerm
             ? 1.0
             : iterate.point[static_cast<std::size_t>(term.unknown)];
}

}  // namespace

std::vector<bool> unknowns_in(const Problem& problem, const Selection& selection) {
  std::vector<bool> occurs(static_cast<std::size_t>(problem.unknowns), false);
  auto mark = [&](std::size_t block) {
    for (const AffineTerm& t : problem.blocks[block].terms) {
      if (varies(t)) occurs[static_cast<std::size_t>(t.unknown)] = true;
    }
  };
  for (const std::size_t b : selection.inequalities) mark(b);
  for (const PinnedRow& row : selection.equations) mark(row.block);
  return occurs;
}

Program::Program(const Problem& problem, const Selection& selection, const Scaling& scaling,
                 Goal goal)
    : problem_(problem), selection_(selection), scaling_(scaling), goal_(goal) {
  number_unknowns();
  program_.unknowns = static_cast<std::int32_t>(unknowns_.size()) + (goal == Goal::kMargin ? 1 : 0);
  program_.objective.assign(static_cast<std::size_t>(program_.unknowns), 0.0);
  for (const std::size_t b : selection.inequalities) add_cone(b, goal == Goal::kMargin);
  for (const PinnedRow& row : selection.equations) add_equation(row.block);
  for (const std::int32_t k : selection.boxed) add_box(k);
  if (goal == Goal::kMargin) {
    add_margin_cap();
    program_.objective.back() = 1;
    program_.is_margin = true;
  } else {
    objective_size_ = scaling.objective;
    program_.value_unit = objective_size_;
    program_.value_origin = problem.objective->constant;
    for (std::size_t p = 0; p < unknowns_.size(); ++p) {
      const auto at = static_cast<std::size_t>(unknowns_[p]);
      program_.objective[p] = problem.objective->cost[at] * scaling.unknown[at] / objective_size_;
    }
  }
  offsets_ = multiplier_offsets(program_.cones);
}

void Program::number_unknowns() {
  const std::vector<bool> occurs = unknowns_in(problem_, selection_);
  place_.assign(occurs.size(), -1);
  for (std::size_t k = 0; k < occurs.size(); ++k) {
    if (!occurs[k]) continue;
    place_[k] = static_cast<std::int32_t>(unknowns_.size());
    unknowns_.push_back(static_cast<std::int32_t>(k));
  }
}

void Program::add_cone(std::size_t block, bool with_margin) {
  const Eigen::VectorXd scale = scaling_.diagonal[block].cwiseSqrt().cwiseInverse();
  ConeProgram::Cone cone{problem_.blocks[block].size, {}};
  cone.coefficients.reserve(problem_.blocks[block].terms.size() +
                            static_cast<std::size_t>(with_margin ? cone.size : 0));
  for (const AffineTerm& t : problem_.blocks[block].terms) {
    if (t.value == 0) continue;
    const double value = t.value * scale[t.row] * scale[t.column];
    if (t.unknown == kConstant) {
      cone.coefficients.push_back({t.row, t.column, ConeProgram::kConstantTerm, value});
    } else {
      const auto k = static_cast<std::size_t>(t.unknown);
      cone.coefficients.push_back({t.row, t.column, place_[k], value * scaling_.unknown[k]});
    }
  }
  for (std::int32_t i = 0; with_margin && i < cone.size; ++i) {
    cone.coefficients.push_back({i, i, program_.unknowns - 1, -1.0});
  }
  program_.cones.push_back(std::move(cone));
}

void Program::add_equation(std::size_t block) {
  ConeProgram::Cone equation{1, {}};
  equation.coefficients.reserve(problem_.blocks[block].terms.size());
  const double scale = 1 / scaling_.diagonal[block][0];
  for (const AffineTerm& t : problem_.blocks[block].terms) {
    if (t.value == 0) continue;
    const bool constant = t.unknown == kConstant;
    const auto k = static_cast<std::size_t>(t.unknown);
    equation.coefficients.push_back({0, 0, constant ? ConeProgram::kConstantTerm : place_[k],
                                     t.value * scale * (constant ? 1 : scaling_.unknown[k])});
  }
  program_.equations.push_back(std::move(equation));
}

/// 1 -+ v_k / BIGM >= 0; no margin is asked of the box.
void Program::add_box(std::int32_t unknown) {
  const auto k = static_cast<std::size_t>(unknown);
  if (place_[k] < 0) return;
  const double value = scaling_.unknown[k] / problem_.big_m;
  for (const double sign : {1.0, -1.0}) {
    program_.cones.push_back(
        {1, {{0, 0, ConeProgram::kConstantTerm, 1.0}, {0, 0, place_[k], sign * value}}});
  }
}

/// 1 - t >= 0.
void Program::add_margin_cap() {
  program_.cones.push_back(
      {1, {{0, 0, ConeProgram::kConstantTerm, 1.0}, {0, 0, program_.unknowns - 1, -1.0}}});
}

bool Program::has_shape(const Iterate& iterate) const {
  return iterate.point.size() == program_.objective.size() &&
         iterate.multipliers.size() == offsets_.back();
}

Candidate Program::solve_by(Engine& engine, const Limits& limits, const Observer& observer) const {
  Candidate candidate = engine.solve(program_, limits, [&](const Iterate& iterate) {
    return has_shape(iterate) && observer(iterate);
  });
  if (has_shape(candidate.last)) return candidate;
  candidate.last.point.assign(program_.objective.size(), 0.0);
  candidate.last.multipliers.assign(offsets_.back(), 0.0);
  candidate.reason = StopReason::kTrouble;
  return candidate;
}

std::vector<double> Program::point(const Iterate& iterate) const {
  std::vector<double> v(static_cast<std::size_t>(problem_.unknowns), 0.0);
  for (std::size_t p = 0; p < unknowns_.size(); ++p) {
    const auto k = static_cast<std::size_t>(unknowns_[p]);
    v[k] = iterate.point[p] * scaling_.unknown[k];
  }
  return v;
}

Eigen::MatrixXd Program::slack(std::size_t cone, const Iterate& iterate) const {
  const ConeProgram::Cone& c = program_.cones[cone];
  Eigen::MatrixXd value = Eigen::MatrixXd::Zero(c.size, c.size);
  for (const auto& t : c.coefficients) {
    value(t.row, t.column) += t.value * factor_of(t, iterate);
  }
  value.triangularView<Eigen::StrictlyLower>() = value.transpose();
  return value;
}

double Program::row_slack(std::size_t cone, const Iterate& iterate) const {
  double value = 0;
  for (const auto& t : program_.cones[cone].coefficients) value += t.value * factor_of(t, iterate);
  return value;
}

/// The largest eigenvalues first, until the weights that they span are enough.
std::vector<Program::Eigenvector> Program::heaviest(std::vector<Eigenvector> all) const {
  std::stable_sort(all.begin(), all.end(),
                   [](const Eigenvector& a, const Eigenvector& b) { return a.value > b.value; });
  const Eigen::Index enough = kEnoughTimes * program_.unknowns;
  Eigen::Index weights = 0;
  std::vector<Eigen::Index> rank(program_.cones.size(), 0);
  std::size_t kept = 0;
  while (kept < all.size() && weights < enough) weights += ++rank[all[kept++].cone];
  all.resize(kept);
  return all;
}

std::vector<Program::Eigenvector> Program::eigenvectors(
    const Iterate& iterate, Keep keep, std::vector<SymmetricEigen>& matrices) const {
  double largest = 0;
  for (const double entry : iterate.multipliers) largest = std::max(largest, std::fabs(entry));
  std::vector<Eigenvector> kept;
  matrices.resize(selection_.inequalities.size());
  for (std::size_t i = 0; i < matrices.size(); ++i) {
    const Eigen::Index n = program_.cones[i].size;
    const double* const entries = &iterate.multipliers[offsets_[i]];
    if (n == 1) {
      if (!(*entries > kNegligible * largest)) continue;
      if (keep == Keep::kActive && !(*entries > row_slack(i, iterate))) continue;
      kept.push_back({i, 0, *entries});
      continue;
    }
    matrices[i] = symmetric_eigen(Eigen::Map<const Eigen::MatrixXd>(entries, n, n));
    const auto& [values, vectors] = matrices[i];
    const Eigen::MatrixXd slack_here =
        keep == Keep::kActive ? slack(i, iterate) : Eigen::MatrixXd();
    for (Eigen::Index e = 0; e < n; ++e) {
      if (!(values[e] > kNegligible * largest)) continue;
      const auto v = vectors.col(e);
      if (keep == Keep::kActive && !(values[e] > v.dot(slack_here * v))) continue;
      kept.push_back({i, e, values[e]});
    }
  }
  return kept;
}

std::vector<Multiplier> Program::multipliers(const Iterate& iterate, Keep keep) const {
  std::vector<SymmetricEigen> matrices;
  std::vector<Eigenvector> kept = eigenvectors(iterate, keep, matrices);
  if (keep == Keep::kEnough) kept = heaviest(std::move(kept));
  std::stable_sort(kept.begin(), kept.end(),
                   [](const Eigenvector& x, const Eigenvector& y) { return x.cone < y.cone; });

  std::vector<Multiplier> result;
  for (auto first = kept.begin(); first != kept.end();) {
    const std::size_t cone = first->cone;
    const auto last =
        std::find_if(first, kept.end(), [&](const Eigenvector& v) { return v.cone != cone; });
    const std::size_t block = selection_.inequalities[cone];
    const auto unscale = scaling_.diagonal[block].cwiseSqrt().cwiseInverse();
    Eigen::MatrixXd factor(program_.cones[cone].size, last - first);
    for (auto column : factor.colwise()) {
      const double root = std::sqrt(first->value * objective_size_);
      if (factor.rows() == 1) {
        column = unscale * root;
      } else {
        column = unscale.cwiseProduct(matrices[cone].vectors.col(first->index)) * root;
      }
      ++first;
    }
    result.push_back({block, std::move(factor)});
  }
  // Engines that eliminate equations return no multipliers for them.
  append_equation_multipliers(problem_, selection_.equations, scaling_.unknown, result,
                              goal_ == Goal::kObjective);
  return result;
}

}  // namespace sdpsol
