#include "solver/command/json_report.h"

#include <Eigen/Core>
#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "solver/command/words.h"
#include "solver/language/relation.h"
#include "solver/problem/structure.h"
#include "version.h"

namespace sdpsol {
namespace {

using Json = nlohmann::ordered_json;

/// One zero, as in the result file.
Json number(double value) {
  return value + 0.0;
}

/// rows x columns numbers, row after row; one number alone stands for itself.
Json matrix(std::size_t rows, std::size_t columns, const std::vector<double>& entries) {
  if (rows == 1 && columns == 1) return number(entries[0]);
  Json result = Json::array();
  for (std::size_t i = 0; i < rows; ++i) {
    Json row = Json::array();
    for (std::size_t j = 0; j < columns; ++j) row.push_back(number(entries[i * columns + j]));
    result.push_back(std::move(row));
  }
  return result;
}

Json values(const Variable& variable, const std::vector<double>& point) {
  return matrix(static_cast<std::size_t>(variable.rows), static_cast<std::size_t>(variable.columns),
                values_of(variable, point));
}

const char* shape_word(const Variable& variable) {
  switch (variable.shape) {
    case Variable::Shape::kGeneral:
      return "general";
    case Variable::Shape::kSymmetric:
      return "symmetric";
    case Variable::Shape::kDiagonal:
      return "diagonal";
  }
  return "";
}

std::uint32_t line_of(const Report& report, Span where) {
  return report.source->place(where.begin).line;
}

Json sizes(const Report& report) {
  return {{"unknowns", report.model->unknown_count},
          {"rows", report.rows},
          {"matrix_blocks", report.matrices},
          {"largest_block", report.largest_matrix}};
}

Json parameters(const Parameters& p) {
  return {{"NU", number(p.nu)},
          {"GAMMA", number(p.gamma)},
          {"MAXITER", p.max_iterations},
          {"ABSTOL", number(p.absolute_tolerance)},
          {"RELTOL", number(p.relative_tolerance)},
          {"BIGM", number(p.big_m)}};
}

Json objective(const Report& report) {
  const Objective& asked = *report.model->objective;
  Json result = {{"name", asked.name},
                 {"sense", asked.maximize ? "maximize" : "minimize"},
                 {"line", line_of(report, asked.where)}};
  const Outcome& outcome = report.outcome;
  if (!outcome.objective) return result;
  const double sign = asked.maximize ? 1 : -1;
  result["value"] = number(sign * *outcome.objective);
  if (outcome.bound && std::isfinite(*outcome.bound)) {
    result["bound"] = number(sign * *outcome.bound);
    result["gap"] = number(report.gap);
    if (has_reach(report)) result["bound_reach"] = number(outcome.bound_reach);
  }
  result["limited_by_bigm"] = outcome.limited_by_box;
  return result;
}

bool all_finite(const std::vector<double>& point) {
  return std::all_of(point.begin(), point.end(), [](double v) { return std::isfinite(v); });
}

Json variables(const Report& report) {
  const Outcome& outcome = report.outcome;
  const bool feasible = outcome.verdict == Verdict::kFeasible;
  const bool has_point =
      outcome.point.size() == static_cast<std::size_t>(report.model->unknown_count) &&
      all_finite(outcome.point);
  Json result = Json::array();
  for (const Variable& variable : report.model->variables) {
    Json one = {{"name", variable.name},
                {"line", line_of(report, variable.declared)},
                {"rows", variable.rows},
                {"columns", variable.columns},
                {"shape", shape_word(variable)}};
    if (has_point) one[feasible ? "value" : "last_iterate"] = values(variable, outcome.point);
    if (feasible && outcome.objective) one["proof"] = values(variable, outcome.interior);
    result.push_back(std::move(one));
  }
  return result;
}

Json conditions(const Report& report) {
  Json result = Json::array();
  for (const Condition& condition : report.model->conditions) {
    result.push_back({{"line", line_of(report, condition.where)},
                      {"relation", relation_text(condition.sense)},
                      {"of", condition.is_matrix ? "matrix" : "entries"},
                      {"rows", condition.difference.rows},
                      {"columns", condition.difference.columns}});
  }
  for (const ConditionMargin& margin : report.margins) {
    result[margin.condition]["smallest_eigenvalue"] = number(margin.smallest_eigenvalue);
    result[margin.condition]["room"] = number(margin.room);
  }
  for (const EquationResidual& residual : report.residuals) {
    result[residual.condition]["residual"] = number(residual.largest);
    result[residual.condition]["distance"] = number(residual.distance);
  }
  return result;
}

/// Which part of its condition a block is.
class Places {
 public:
  explicit Places(const Report& report) : report_(report) {}

  void add_to(Json& json, std::size_t block) {
    const auto number = static_cast<std::size_t>(report_.problem->blocks[block].condition);
    const Condition& condition = report_.model->conditions[number];
    if (number != condition_) {
      condition_ = number;
      const auto& blocks = report_.problem->blocks;
      first_block_ = block;
      while (first_block_ > 0 && blocks[first_block_ - 1].condition == blocks[block].condition) {
        --first_block_;
      }
      rows_.clear();
      entries_.clear();
      if (condition.is_matrix) {
        rows_ = rows_of_blocks(condition);
      } else {
        entries_ = entries_of_blocks(condition);
      }
    }
    const std::size_t within = block - first_block_;
    json["line"] = line_of(report_, condition.where);
    json["condition"] = number + 1;
    json["block"] = within + 1;
    if (condition.is_matrix) {
      for (const std::int32_t row : rows_[within]) json["rows"].push_back(row + 1);
    } else {
      json["entry"] = {entries_[within].first + 1, entries_[within].second + 1};
    }
  }

 private:
  const Report& report_;
  std::size_t condition_ = static_cast<std::size_t>(-1);
  std::size_t first_block_ = 0;
  // Of the condition's blocks; which of the two depends on what it is a condition on.
  std::vector<std::vector<std::int32_t>> rows_;
  std::vector<std::pair<std::int32_t, std::int32_t>> entries_;
};

Json certificate(const Report& report) {
  Json result = Json::array();
  Places places(report);
  for (const Multiplier& y : report.outcome.certificate) {
    Json one = Json::object();
    places.add_to(one, y.block);
    if (report.problem->blocks[y.block].sense == Sense::kEqual) {
      one["weight"] = number(y.factor(0, 0));
    } else {
      Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor> weight =
          y.factor * y.factor.transpose();
      weight.triangularView<Eigen::StrictlyLower>() = weight.transpose();
      const auto size = static_cast<std::size_t>(weight.rows());
      one["weight"] = matrix(size, size, {weight.data(), weight.data() + weight.size()});
    }
    result.push_back(std::move(one));
  }
  return result;
}

Json times(const Times& t) {
  return {{"reading", t.reading},
          {"structure", t.structure},
          {"engine", t.engine},
          {"checking", t.checking},
          {"total", t.total}};
}

Json whole(const Report& report) {
  const Outcome& outcome = report.outcome;
  Json json = {{"program", "sdpsol"},
               {"version", project::kVersion},
               {"definition", report.source->name()},
               {"verdict", verdict_words(outcome.verdict)}};
  if (outcome.verdict != Verdict::kFeasible) {
    json["reason"] = outcome.reason;
    json["lines"] = report.reason_lines;
  }
  json["warnings"] = report.warnings;
  json["sizes"] = sizes(report);
  json["parameters"] = parameters(report.model->parameters);
  if (report.model->objective) json["objective"] = objective(report);
  json["variables"] = variables(report);
  json["conditions"] = conditions(report);
  if (!outcome.certificate.empty()) json["certificate"] = certificate(report);
  json["engine"] = outcome.engine;
  json["fallbacks"] = outcome.fallbacks;
  json["iterations"] = outcome.iterations;
  json["times"] = times(report.times);
  return json;
}

std::string line_text(const Json& json) {
  // A name of a file may be any bytes.
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

/// A member or an object of a list on each line: made for people as well, and for
/// programs that go by lines.
std::string json_text(const Report& report) {
  std::string text = "{";
  const Json json = whole(report);
  for (const auto& [key, value] : json.items()) {
    text += (text.size() > 1 ? ",\n  \"" : "\n  \"") + key + "\": ";
    if (!value.is_array() || value.empty() || !value[0].is_object()) {
      text += line_text(value);
      continue;
    }
    text += "[";
    for (const Json& one : value)
      text += (&one == &value[0] ? "\n    " : ",\n    ") + line_text(one);
    text += "\n  ]";
  }
  return text + "\n}\n";
}

}  // namespace sdpsol
