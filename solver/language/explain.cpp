#include "solver/language/explain.h"

#include <algorithm>
#include <set>

#include "solver/language/arithmetic.h"

namespace sdpsol {
namespace {

// Where the name that stands at `span` got its value, once.
void explain_span(LanguageError& error, std::string_view text, const SymbolTable& symbols,
                  Span span) {
  const std::string_view name = text.substr(span.begin, span.end - span.begin);
  const Symbol* symbol = symbols.find(name);
  if (symbol == nullptr) return;
  const bool declared = symbol->kind == Symbol::Kind::kVariable;
  if (!declared && symbol->kind != Symbol::Kind::kAssigned) return;
  RelatedNote note{symbol->defined, in_quotes(name) + " is " +
                                        (declared ? "declared " : "assigned ") +
                                        shape_text(symbol->value) + " here"};
  std::vector<RelatedNote>& notes = error.diagnostic.notes;
  const bool known = std::any_of(notes.begin(), notes.end(),
                                 [&](const RelatedNote& other) { return other.span == note.span; });
  if (!known) notes.push_back(std::move(note));
}

}  // namespace

const Variable& owner_of(const std::vector<Variable>& variables, std::int32_t unknown) {
  const auto behind = std::upper_bound(
      variables.begin(), variables.end(), unknown,
      [](std::int32_t index, const Variable& variable) { return index < variable.first_unknown; });
  return *(behind - 1);
}

void explain_operands(LanguageError& error, std::string_view text, const SymbolTable& symbols,
                      Span left, Span right) {
  error.diagnostic.ranges = {left, right};
  if (!error.unknowns.empty() || !error.diagnostic.notes.empty()) return;
  for (const Span span : {left, right}) explain_span(error, text, symbols, span);
}

void explain_name(LanguageError& error, std::string_view text, const SymbolTable& symbols) {
  const Diagnostic& said = error.diagnostic;
  if (error.unknowns.empty() && said.notes.empty() && said.ranges.empty())
    explain_span(error, text, symbols, said.span);
}

LanguageError with_name_explained(LanguageError error, std::string_view text,
                                  const SymbolTable& symbols) {
  explain_name(error, text, symbols);
  return error;
}

void explain_unknowns(LanguageError& error, const std::vector<Variable>& variables) {
  std::set<std::string_view> explained;
  for (const std::int32_t unknown : error.unknowns) {
    const Variable& variable = owner_of(variables, unknown);
    if (!explained.insert(variable.name).second) continue;
    error.diagnostic.notes.push_back(
        {variable.declared, "variable " + in_quotes(variable.name) + " is declared here"});
  }
}

std::string entry_text(std::int32_t row, std::int32_t column) {
  std::string text(1, '(');
  text += std::to_string(row + 1);
  text += ',';
  text += std::to_string(column + 1);
  text += ')';
  return text;
}

std::string unknown_name(const std::vector<Variable>& variables, std::int32_t unknown) {
  if (unknown == kConstant) return "";
  const Variable& variable = owner_of(variables, unknown);
  if (variable.rows == 1 && variable.columns == 1) return variable.name;
  const std::int32_t index = unknown - variable.first_unknown;
  switch (variable.shape) {
    case Variable::Shape::kGeneral:
      return variable.name + entry_text(index / variable.columns, index % variable.columns);
    case Variable::Shape::kDiagonal:
      return variable.name + entry_text(index, index);
    case Variable::Shape::kSymmetric:
      break;
  }
  // Row r of the lower triangle begins at r*(r+1)/2.
  std::int32_t row = 0;
  while ((row + 1) * (row + 2) / 2 <= index) ++row;
  return variable.name + entry_text(row, index - row * (row + 1) / 2);
}

}  // namespace sdpsol
