#include "solver/command/result_text.h"

#include <algorithm>
#include <cmath>

#include "solver/command/words.h"
#include "solver/language/diagnostics.h"
#include "version.h"

namespace sdpsol {
namespace {

// The tightest conditions are what a reader looks for; a grasp has hundreds.
constexpr std::size_t kMarginsInHeading = 5;
// Of numbers that nobody computes with.
constexpr int kDigits = 3;

std::string lines_of(const std::vector<std::uint32_t>& lines) {
  if (lines.empty()) return "";
  constexpr std::size_t kMax = 8;
  std::string text = lines.size() == 1 ? ", line " : ", lines ";
  for (std::size_t i = 0; i < lines.size() && i < kMax; ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(lines[i]);
  }
  return text + (lines.size() > kMax ? ", ..." : "");
}

void append_sizes(const Report& report, std::string& text) {
  text += count_text(static_cast<std::size_t>(report.model->unknown_count), "unknown") + ", " +
          count_text(report.model->conditions.size(), "condition") + ": " +
          count_text(report.rows, "row") + ", " + count_text(report.matrices, "matrix block");
  if (report.matrices > 0) {
    const std::string size = std::to_string(report.largest_matrix);
    text += " up to " + size + " x " + size;
  }
  text += "\n";
}

/// What is known of the point that proves feasibility.
void append_point(const Report& report, std::string& text) {
  if (!report.margins.empty()) text += "tightest conditions at the point that proves it:\n";
  for (std::size_t i = 0; i < std::min(report.margins.size(), kMarginsInHeading); ++i) {
    const ConditionMargin& m = report.margins[i];
    text += "  line " + std::to_string(m.line) + ": margin " +
            rounded(m.smallest_eigenvalue, kDigits) + ", " + rounded(m.room, kDigits) +
            " of its terms\n";
  }
  if (report.residuals.empty()) return;
  EquationResidual worst;
  for (const EquationResidual& residual : report.residuals) {
    worst.largest = std::max(worst.largest, residual.largest);
    worst.distance = std::max(worst.distance, residual.distance);
  }
  text += "equalities hold within " + rounded(worst.largest, kDigits);
  if (worst.distance > 0) {
    text += ", and exactly no further away than " + rounded(worst.distance, kDigits);
  }
  text += "\n";
}

void append_bound(const Report& report, std::string& text) {
  if (!std::isfinite(report.gap)) {
    text += "no bound of the objective is proven\n";
    return;
  }
  text += "objective within " + rounded(report.gap, kDigits) + " of its proven bound";
  if (has_reach(report)) {
    text += ", which holds for |v| <= " + rounded(report.outcome.bound_reach, kDigits);
  }
  text += "\n";
}

void append_evidence(const Report& report, std::string& text) {
  const Outcome& outcome = report.outcome;
  text += verdict_words(outcome.verdict);
  text += '\n';
  if (outcome.verdict == Verdict::kFeasible) {
    append_point(report, text);
    if (outcome.objective) append_bound(report, text);
  } else {
    text += outcome.reason + lines_of(report.reason_lines) + "\n";
  }
  if (outcome.iterations > 0) {
    text += "engine " + outcome.engine + ", " +
            count_text(static_cast<std::size_t>(outcome.iterations), "iteration");
    if (outcome.fallbacks > 0) {
      text += ", " + count_text(static_cast<std::size_t>(outcome.fallbacks), "fallback");
    }
    text += "\n";
  }
  for (const std::string& warning : report.warnings) text += "warning: " + warning + "\n";
}

void append_variable(const Variable& variable, const std::vector<double>& point,
                     std::string& text) {
  const std::vector<double> values = values_of(variable, point);
  if (values.size() == 1) {
    text += variable.name + " = " + shortest(values[0]) + "\n\n";
    return;
  }
  text += variable.name + " =\n[\n";
  for (const double value : values) text += "  " + shortest(value) + ",\n";
  text += "]\n\n";
}

}  // namespace

std::string result_text(const Report& report) {
  std::string text = std::string("sdpsol ") + project::kVersion + "\n";
  append_sizes(report, text);
  append_evidence(report, text);

  const Outcome& outcome = report.outcome;
  const bool feasible = outcome.verdict == Verdict::kFeasible;
  text += "\n*** Objective value\n";
  if (feasible && outcome.objective) {
    const double sign = report.model->objective->maximize ? 1 : -1;
    text += "objective = " + shortest(sign * *outcome.objective) + "\n";
  } else {
    text += "NO OBJECTIVE.\n";
  }
  text += "\n*** Variables\n";
  if (!feasible || report.model->variables.empty()) return text + "\n";
  for (const Variable& variable : report.model->variables) {
    append_variable(variable, outcome.point, text);
  }
  return text;
}

}  // namespace sdpsol
