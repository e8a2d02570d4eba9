#include "solver/language/test_model_dump.h"

#include <cmath>

#include "solver/language/arithmetic.h"
#include "solver/language/explain.h"
#include "solver/language/number.h"
#include "solver/language/relation.h"
#include "solver/language/variables.h"

namespace sdpsol {
namespace {

std::string term_text(const AffineTerm& term, const std::vector<Variable>& variables) {
  std::string text = number_text(term.value);
  if (term.magnitude != std::abs(term.value)) text += "{" + number_text(term.magnitude) + "}";
  if (term.unknown != kConstant) text += "*" + unknown_name(variables, term.unknown);
  return text;
}

std::string entries(const AffineMatrix& matrix, const std::vector<Variable>& variables) {
  std::string text;
  const AffineTerm* previous = nullptr;
  for (const AffineTerm& term : matrix.terms) {
    const bool same_entry =
        previous != nullptr && previous->row == term.row && previous->column == term.column;
    if (!same_entry) {
      if (previous != nullptr) text += "\n";
      text += "  " + entry_text(term.row, term.column) + " = ";
    } else {
      text += " + ";
    }
    text += term_text(term, variables);
    previous = &term;
  }
  return previous == nullptr ? text : text + "\n";
}

std::string heading(Span where, const Source& source) {
  return "line " + std::to_string(source.place(where.begin).line) + ": ";
}

std::string words(Span where, const Source& source) {
  std::string text(source.text().substr(where.begin, where.end - where.begin));
  for (char& c : text) {
    if (c == '\n' || c == '\r') c = ' ';
  }
  return text + "\n";
}

}  // namespace

std::string dump(const Model& model, const Source& source) {
  std::string text;
  const Parameters& p = model.parameters;
  if (p != Parameters{}) {
    text += "parameters NU " + number_text(p.nu) + " GAMMA " + number_text(p.gamma) + " MAXITER " +
            std::to_string(p.max_iterations) + " ABSTOL " + number_text(p.absolute_tolerance) +
            " RELTOL " + number_text(p.relative_tolerance) + " BIGM " + number_text(p.big_m) + "\n";
  }
  for (const Variable& variable : model.variables) {
    const std::int64_t last = variable.first_unknown + unknown_count(variable) - 1;
    text += heading(variable.declared, source) + "variable " + variable.name + " " +
            shape_text(variable) + ", unknowns " + std::to_string(variable.first_unknown) + " to " +
            std::to_string(last) + "\n";
  }
  text += std::to_string(model.unknown_count) + " unknowns\n";
  for (const Condition& condition : model.conditions) {
    const AffineMatrix difference = written_out(condition.difference, model.forms);
    text += heading(condition.where, source) + shape_text(difference) +
            (condition.is_matrix ? " matrix " : " ") + relation_text(condition.sense) + ": " +
            words(condition.where, source) + entries(difference, model.variables);
  }
  if (model.objective) {
    text += heading(model.objective->where, source) +
            (model.objective->maximize ? "maximize " : "minimize ") + model.objective->name + ": " +
            words(model.objective->where, source) +
            entries(model.objective->value, model.variables);
  }
  return text;
}

}  // namespace sdpsol
