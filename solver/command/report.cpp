#include "solver/command/report.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "solver/check/evaluate.h"
#include "solver/dense/symmetric_eigen.h"
#include "solver/language/variables.h"

namespace sdpsol {
namespace {

/// How far the conditions are from being violated at a point, the tightest first.
std::vector<ConditionMargin> margins_at(const Source& source, const Model& model,
                                        const Problem& problem, const std::vector<double>& point) {
  std::vector<ConditionMargin> margins(model.conditions.size());
  for (std::size_t i = 0; i < margins.size(); ++i) {
    ConditionMargin& m = margins[i];
    m.condition = i;
    m.line = source.place(model.conditions[i].where.begin).line;
    m.room = m.smallest_eigenvalue = std::numeric_limits<double>::infinity();
  }
  for (const Block& block : problem.blocks) {
    if (block.sense == Sense::kEqual) continue;
    ConditionMargin& margin = margins[static_cast<std::size_t>(block.condition)];
    if (block.size == 1) {
      const EvaluatedRow at = evaluate_row(block, point);
      margin.room = std::min(margin.room, relative_room(at));
      margin.smallest_eigenvalue = std::min(margin.smallest_eigenvalue, at.value);
      continue;
    }
    const Evaluated at = evaluate(block, point);
    margin.room = std::min(margin.room, relative_room(at));
    margin.smallest_eigenvalue =
        std::min(margin.smallest_eigenvalue, symmetric_eigenvalues(at.value)[0]);
  }
  std::erase_if(margins, [](const ConditionMargin& m) { return !std::isfinite(m.room); });
  std::stable_sort(margins.begin(), margins.end(),
                   [](const auto& a, const auto& b) { return a.room < b.room; });
  return margins;
}

/// How well the equalities hold at a point, in the order of the text.
/// @param distance per unknown, to a point where they all hold; empty if there they do.
std::vector<EquationResidual> residuals_at(const Problem& problem, const std::vector<double>& point,
                                           const std::vector<double>& distance) {
  std::vector<EquationResidual> residuals;
  for (const Block& block : problem.blocks) {
    if (block.sense != Sense::kEqual) continue;
    const auto condition = static_cast<std::size_t>(block.condition);
    if (residuals.empty() || residuals.back().condition != condition) {
      residuals.push_back({.condition = condition});
    }
    EquationResidual& residual = residuals.back();
    residual.largest = std::max(residual.largest, std::fabs(evaluate_row(block, point).value));
    if (distance.empty()) continue;
    for (const AffineTerm& t : block.terms) {
      if (!varies(t)) continue;
      residual.distance =
          std::max(residual.distance, distance[static_cast<std::size_t>(t.unknown)]);
    }
  }
  return residuals;
}

void add_objective(Report& report) {
  const Outcome& outcome = report.outcome;
  report.gap = std::max(0.0, *outcome.bound - *outcome.objective);
  const Parameters& p = report.model->parameters;
  report.gap_is_large =
      !(report.gap <=
        std::max(p.absolute_tolerance, p.relative_tolerance * std::fabs(*outcome.objective)));
  if (outcome.limited_by_box) {
    report.warnings.emplace_back("the objective is limited only by BIGM");
  }
  if (report.gap_is_large) {
    report.warnings.emplace_back("the objective may be better than reported, see its bound");
  }
}

}  // namespace

Report make_report(const Source& source, const Model& model, const Problem& problem,
                   Outcome outcome) {
  Report report;
  report.model = &model;
  report.source = &source;
  report.problem = &problem;
  for (const Block& block : problem.blocks) {
    ++(block.size == 1 ? report.rows : report.matrices);
    report.largest_matrix = std::max(report.largest_matrix, block.size);
  }
  for (const std::int32_t condition : outcome.conditions) {
    report.reason_lines.push_back(
        source.place(model.conditions[static_cast<std::size_t>(condition)].where.begin).line);
  }
  // Two conditions of one line, or a chain, would name it twice.
  std::vector<std::uint32_t>& lines = report.reason_lines;
  std::sort(lines.begin(), lines.end());
  lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
  report.outcome = std::move(outcome);
  if (report.outcome.verdict == Verdict::kFeasible) {
    report.margins = margins_at(source, model, problem, report.outcome.interior);
    report.residuals = residuals_at(problem, report.outcome.interior, report.outcome.distance);
  }
  if (report.outcome.objective) add_objective(report);
  return report;
}

bool has_reach(const Report& report) {
  return !report.model->boxed && report.outcome.bound && std::isfinite(*report.outcome.bound) &&
         std::isfinite(report.outcome.bound_reach);
}

std::vector<double> values_of(const Variable& variable, const std::vector<double>& point) {
  std::vector<double> values;
  values.reserve(static_cast<std::size_t>(variable.rows) *
                 static_cast<std::size_t>(variable.columns));
  for (std::int32_t row = 0; row < variable.rows; ++row) {
    for (std::int32_t column = 0; column < variable.columns; ++column) {
      const auto unknown = unknown_in_entry(variable, row, column);
      const auto first = static_cast<std::size_t>(variable.first_unknown);
      values.push_back(unknown ? point[first + static_cast<std::size_t>(*unknown)] : 0.0);
    }
  }
  return values;
}

}  // namespace sdpsol
