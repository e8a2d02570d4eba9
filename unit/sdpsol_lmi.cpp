// The linear matrix inequality P0 + x1*P1 + ... > 0 as a definition.
#include "unit/sdpsol_compose.h"
#include "unit/sdpsol_solve.h"
#include "unit/sdpsol_text.h"
#include "unit/sdpsol_wrapper.h"

namespace sdpsol_internal {
namespace {

// An empty row reads as 0: the text needs one element, and there is none to read.
void append_row(std::string& text, std::span<const double> row) {
  append(text, row.empty() ? 0.0 : row.front());
  for (std::size_t column = 1; column < row.size(); ++column) append(text, ",", row[column]);
}

std::size_t append_matrix(std::string& text, std::span<const std::vector<double>> rows) {
  std::size_t empty_rows = 0;
  for (std::size_t r = 0; r < rows.size(); ++r) {
    if (r > 0) append(text, ";");
    append_row(text, rows[r]);
    if (rows[r].empty()) ++empty_rows;
  }
  return empty_rows;
}

}  // namespace

Composed compose_lmi(std::span<const std::vector<std::vector<double>>> matrices, bool strict) {
  Composed composed;
  std::string& text = composed.definition.emplace();
  std::size_t empty_rows = 0;
  for (std::size_t i = 0; i < matrices.size(); ++i) {
    append(text, "P", i, "=[");
    empty_rows += append_matrix(text, matrices[i]);
    append(text, "];\n");
  }
  for (std::size_t k = 1; k < matrices.size(); ++k) append(text, "variable x", k, ";\n");
  append(text, "P=P0");
  for (std::size_t k = 1; k < matrices.size(); ++k) append(text, "+P", k, "*x", k);
  append(text, ";\nP", strict ? ">" : ">=", "0;\n");

  if (empty_rows > 0) {
    append(composed.warnings,
           "sdpsol_wrapper-warning: matrix rows without elements are read as 0; ",
           "number of such rows is ", empty_rows, "\n");
  }
  return composed;
}

}  // namespace sdpsol_internal

bool sdpsol_wrapper::isFeasible(std::vector<std::vector<std::vector<double>>> matrices,
                                bool strict) {
  sdpsol_internal::solve(*this, sdpsol_internal::compose_lmi(matrices, strict));
  return lastResult.feasible;
}
