#include "solver/command/report.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "solver/check/evaluate.h"
#include "solver/dense/symmetric_eigen.h"

namespace sdpsol {
namespace {

/// The tightest conditions at a point, by their relative room.
std::vector<ConditionMargin> tightest(const Source& source, const Model& model,
                                      const Problem& problem, const std::vector<double>& point,
                                      std::size_t most) {
  std::vector<ConditionMargin> margins(model.conditions.size());
  for (ConditionMargin& m : margins) {
    m.room = m.smallest_eigenvalue = std::numeric_limits<double>::infinity();
  }
  for (const Block& block : problem.blocks) {
    if (block.sense == Sense::kEqual) continue;
    const Evaluated at = evaluate(block, point);
    ConditionMargin& margin = margins[static_cast<std::size_t>(block.condition)];
    margin.room = std::min(margin.room, relative_room(at));
    margin.smallest_eigenvalue =
        std::min(margin.smallest_eigenvalue, symmetric_eigenvalues(at.value)[0]);
  }
  for (std::size_t i = 0; i < margins.size(); ++i) {
    margins[i].line = source.place(model.conditions[i].where.begin).line;
  }
  std::erase_if(margins, [](const ConditionMargin& m) { return !std::isfinite(m.room); });
  std::stable_sort(margins.begin(), margins.end(),
                   [](const auto& a, const auto& b) { return a.room < b.room; });
  if (margins.size() > most) margins.resize(most);
  return margins;
}

}  // namespace

Report make_report(const Source& source, const Model& model, const Problem& problem,
                   Outcome outcome, std::string engine, std::size_t most_margins) {
  Report report;
  report.model = &model;
  report.engine = std::move(engine);
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
  if (outcome.verdict == Verdict::kFeasible) {
    report.margins = tightest(source, model, problem, outcome.interior, most_margins);
  }
  if (outcome.objective) {
    report.gap = std::max(0.0, *outcome.bound - *outcome.objective);
    const Parameters& p = model.parameters;
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
  report.outcome = std::move(outcome);
  return report;
}

}  // namespace sdpsol
