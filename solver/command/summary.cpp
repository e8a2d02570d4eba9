#include "solver/command/summary.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "solver/command/words.h"
#include "solver/language/arithmetic.h"
#include "solver/language/diagnostics.h"
#include "solver/language/names.h"
#include "solver/language/parameters.h"
#include "solver/language/relation.h"
#include "solver/language/variables.h"

namespace sdpsol {
namespace {

/// Calls visit(first, last) for every run of neighbours that are alike.
template <typename T, typename Alike, typename Visitor>
void for_each_run(const std::vector<T>& all, Alike alike, Visitor visit) {
  for (std::size_t first = 0; first < all.size();) {
    std::size_t last = first + 1;
    while (last < all.size() && alike(all[first], all[last])) ++last;
    visit(first, last);
    first = last;
  }
}

void append_variables(const Model& model, std::string& text) {
  const std::vector<Variable>& all = model.variables;
  text += count_text(all.size(), "variable") + ", " +
          count_text(static_cast<std::size_t>(model.unknown_count), "unknown") + "\n";
  const auto alike = [](const Variable& a, const Variable& b) {
    return shape_text(a) == shape_text(b);
  };
  for_each_run(all, alike, [&](std::size_t first, std::size_t last) {
    constexpr std::size_t kMaxNames = 4;
    text += "  ";
    if (last - first > kMaxNames) {
      text += all[first].name + ", " + all[first + 1].name + ", ..., " + all[last - 1].name + " (" +
              std::to_string(last - first) + ")";
    } else {
      for (std::size_t i = first; i < last; ++i) text += (i > first ? ", " : "") + all[i].name;
    }
    const Variable& one = all[first];
    text += ": " + (one.rows == 1 && one.columns == 1 ? "scalar" : shape_text(one)) + "\n";
  });
}

std::string form_text(const Condition& condition) {
  const AffineMatrix& m = condition.difference;
  const std::string relation = relation_text(condition.sense);
  if (is_scalar(m)) return "scalar " + relation;
  return shape_text(m) + (condition.is_matrix ? " matrix " : " entries ") + relation;
}

void append_blocks(const Problem& problem, std::string& text) {
  std::size_t rows = 0;
  std::size_t equations = 0;
  std::size_t matrices = 0;
  std::int32_t largest = 0;
  for (const Block& block : problem.blocks) {
    ++(block.sense == Sense::kEqual ? equations : block.size == 1 ? rows : matrices);
    largest = std::max(largest, block.size);
  }
  text += count_text(rows, "row");
  if (equations > 0) text += ", " + count_text(equations, "equation");
  if (matrices == 0) return;
  const std::string size = std::to_string(largest);
  text += ", " + count_text(matrices, "matrix block") + " up to " + size + "x" + size;
}

void append_conditions(const Source& source, const Model& model, const Problem& problem,
                       std::string& text) {
  const std::vector<Condition>& all = model.conditions;
  text += count_text(all.size(), "condition");
  if (!all.empty()) {
    text += ": ";
    append_blocks(problem, text);
  }
  text += "\n";
  const auto alike = [](const Condition& a, const Condition& b) {
    return form_text(a) == form_text(b);
  };
  for_each_run(all, alike, [&](std::size_t first, std::size_t last) {
    const auto from = source.place(all[first].where.begin).line;
    const auto to = source.place(all[last - 1].where.begin).line;
    text += from == to ? "  line " + std::to_string(from)
                       : "  lines " + std::to_string(from) + " to " + std::to_string(to);
    text += ": ";
    if (last - first > 1) text += std::to_string(last - first) + " of ";
    text += form_text(all[first]) + "\n";
  });
}

void append_parameters(const Parameters& p, std::string& text) {
  for (const std::string_view name : kParameterNames) {
    const double value = get_parameter(p, name);
    const double usual = get_parameter({}, name);
    if (value == usual) continue;
    text += std::string(name) + " = " + shortest(value) + " instead of " + shortest(usual) + "\n";
  }
}

}  // namespace

std::string summary_text(const Source& source, const Model& model, const Problem& problem) {
  std::string text;
  append_variables(model, text);
  append_conditions(source, model, problem, text);
  if (model.objective) {
    text += std::string(model.objective->maximize ? "maximize " : "minimize ") +
            model.objective->name + ", line " +
            std::to_string(source.place(model.objective->where.begin).line) + "\n";
  } else {
    text += "no objective\n";
  }
  append_parameters(model.parameters, text);
  return text;
}

}  // namespace sdpsol
