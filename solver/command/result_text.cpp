#include "solver/command/result_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "version.h"

namespace sdpsol {
namespace {

std::string rounded(double value) {
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                          std::chars_format::general, 3);
  return {buffer.data(), end};
}

std::string count(std::size_t number, const char* one, const char* many) {
  return std::to_string(number) + " " + (number == 1 ? one : many);
}

std::string lines_of(const std::vector<std::uint32_t>& lines) {
  if (lines.empty()) return "";
  constexpr std::size_t kMost = 8;
  std::string text = lines.size() == 1 ? ", line " : ", lines ";
  for (std::size_t i = 0; i < lines.size() && i < kMost; ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(lines[i]);
  }
  return text + (lines.size() > kMost ? ", ..." : "");
}

void append_sizes(const Report& report, std::string& text) {
  text += count(static_cast<std::size_t>(report.model->unknown_count), "unknown", "unknowns") +
          ", " + count(report.model->conditions.size(), "condition", "conditions") + ": " +
          count(report.rows, "row", "rows") + ", " +
          count(report.matrices, "matrix block", "matrix blocks");
  if (report.matrices > 0) {
    const std::string size = std::to_string(report.largest_matrix);
    text += " up to " + size + " x " + size;
  }
  text += "\n";
}

void append_evidence(const Report& report, std::string& text) {
  const Outcome& outcome = report.outcome;
  switch (outcome.verdict) {
    case Verdict::kFeasible:
      text += "FEASIBLE\n";
      if (!report.margins.empty()) text += "tightest conditions at the point that proves it:\n";
      for (const ConditionMargin& m : report.margins) {
        text += "  line " + std::to_string(m.line) + ": margin " + rounded(m.smallest_eigenvalue) +
                ", " + rounded(m.room) + " of its terms\n";
      }
      if (outcome.objective) {
        text += std::isfinite(report.gap)
                    ? "objective within " + rounded(report.gap) + " of its proven bound\n"
                    : "no bound of the objective is proven\n";
      }
      break;
    case Verdict::kInfeasible:
      text += "INFEASIBLE\n" + outcome.reason + lines_of(report.reason_lines) + "\n";
      break;
    case Verdict::kUndetermined:
      text += "FEASIBILITY CANNOT BE DETERMINED\n" + outcome.reason +
              lines_of(report.reason_lines) + "\n";
      break;
  }
  if (outcome.iterations > 0) {
    text += "engine " + report.engine + ", " +
            count(static_cast<std::size_t>(outcome.iterations), "iteration", "iterations") + "\n";
  }
  for (const std::string& warning : report.warnings) text += "warning: " + warning + "\n";
}

/// Entry (row, column) of a variable at the point.
double entry(const Variable& variable, const std::vector<double>& point, std::int32_t row,
             std::int32_t column) {
  std::int32_t offset = 0;
  switch (variable.shape) {
    case Variable::Shape::kGeneral:
      offset = row * variable.columns + column;
      break;
    case Variable::Shape::kSymmetric: {
      const std::int32_t low = std::max(row, column);
      offset = low * (low + 1) / 2 + std::min(row, column);
      break;
    }
    case Variable::Shape::kDiagonal:
      if (row != column) return 0;
      offset = row;
      break;
  }
  return point[static_cast<std::size_t>(variable.first_unknown) + static_cast<std::size_t>(offset)];
}

void append_variable(const Variable& variable, const std::vector<double>& point,
                     std::string& text) {
  if (variable.rows == 1 && variable.columns == 1) {
    text += variable.name + " = " + shortest(entry(variable, point, 0, 0)) + "\n\n";
    return;
  }
  text += variable.name + " =\n[\n";
  for (std::int32_t row = 0; row < variable.rows; ++row) {
    for (std::int32_t column = 0; column < variable.columns; ++column) {
      text += "  " + shortest(entry(variable, point, row, column)) + ",\n";
    }
  }
  text += "]\n\n";
}

}  // namespace

std::string shortest(double value) {
  if (value == 0) return "0";
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end};
}

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
