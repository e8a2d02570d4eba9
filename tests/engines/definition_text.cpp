#include "tests/engines/definition_text.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "solver/language/number.h"

namespace sdpsol::testing {
namespace {

void append_term(std::string& sum, double factor, std::int32_t unknown) {
  if (factor == 0) return;
  sum += (factor < 0 ? "" : "+") + number_text(factor);
  if (unknown != kConstant) sum += "*v" + std::to_string(unknown);
}

const char* relation(Sense sense) {
  switch (sense) {
    case Sense::kStrict:
      return " > 0;\n";
    case Sense::kNonStrict:
      return " >= 0;\n";
    case Sense::kEqual:
      return " == 0;\n";
  }
  return "";
}

std::string matrix_text(const Block& block) {
  const auto n = static_cast<std::size_t>(block.size);
  std::vector<std::string> entries(n * n);
  for (const AffineTerm& t : block.terms) {
    append_term(entries[static_cast<std::size_t>(t.row) * n + static_cast<std::size_t>(t.column)],
                t.value, t.unknown);
  }
  std::string text = n > 1 ? "[" : "";
  for (std::size_t i = 0; i < n; ++i) {
    if (i > 0) text += ";\n ";
    for (std::size_t j = 0; j < n; ++j) {
      const std::string& entry = entries[std::min(i, j) * n + std::max(i, j)];
      text += (j > 0 ? ", " : "") + (entry.empty() ? "0" : entry);
    }
  }
  return text + (n > 1 ? "]" : "");
}

}  // namespace

std::string definition_text(const Problem& problem) {
  std::string text = "BIGM=" + number_text(problem.big_m) + ";\n";
  for (std::int32_t k = 0; k < problem.unknowns; ++k) {
    text += "variable v" + std::to_string(k) + ";\n";
  }
  for (const Block& block : problem.blocks) text += matrix_text(block) + relation(block.sense);
  if (problem.objective) {
    std::string sum = number_text(problem.objective->constant);
    for (std::size_t k = 0; k < problem.objective->cost.size(); ++k) {
      append_term(sum, problem.objective->cost[k], static_cast<std::int32_t>(k));
    }
    text += "maximize objective = " + sum + ";\n";
  }
  return text;
}

}  // namespace sdpsol::testing
