// Statements: what each of them adds to the model and to the names in use.
#pragma once

#include <cstddef>
#include <string_view>

#include "solver/language/diagnostics.h"
#include "solver/language/expression_reader.h"
#include "solver/language/forms.h"
#include "solver/language/language_error.h"
#include "solver/language/lexer.h"
#include "solver/language/model.h"
#include "solver/language/symbols.h"

namespace sdpsol {

/// A statement ends with its line and not with ";".
class MissingSemicolon : public LanguageError {
 public:
  MissingSemicolon(Span span, bool next_statement_begins)
      : LanguageError(span, "';' is missing at the end of this statement"),
        next_begins(next_statement_begins) {}
  /// What follows looks like a statement: there is nothing to recover from.
  bool next_begins;
};

/// Reads one statement at a time into a model. A statement takes effect as soon
/// as it has been read up to its ";", so that a missing ";" is one error and not
/// the first of many.
class StatementReader {
 public:
  /// `lexer` and `diagnostics` must outlive the reader; diagnostics only receives
  /// notes here.
  StatementReader(Lexer& lexer, Diagnostics& diagnostics);

  /// Reads the statement at the current token and its ";".
  /// @throws LanguageError (UndefinedName), AlreadyReported.
  void read();

  /// After an exception: what the statement was to define counts as failed.
  /// Returns the number of "[" that were open.
  int abandon();
  /// The use of an undefined name has been reported as number `complaint`.
  void mark_missing(std::string_view name, std::size_t complaint);

  const Model& model() const { return model_; }
  Model take_model();

 private:
  void require_statement(const Token& first);
  void require_assignment(Span equals_sign) const;
  void assignment();
  void objective(bool maximize);
  void relations();
  void end_statement();
  bool at_new_line() const;
  bool breaks_line(Span between) const;
  LanguageError wrong_end() const;

  // In declarations.cpp.
  void declarations();
  void fail_further_declarations(std::string_view word);
  void declaration();
  Variable declared_shape(const Token& name);
  void require_declaration_end(const Variable& variable) const;
  void declare(Variable variable);

  void require_free(const Token& name, const char* use) const;
  void require_not_variable(const Token& name, const char* rule) const;
  void require_memory(std::size_t terms, Span at) const;
  void publish(std::string_view name, Symbol symbol);
  void publish_parameter(std::string_view name, Span where);
  void assign(const Token& name, AffineMatrix value);

  Lexer& lexer_;
  Diagnostics& diagnostics_;
  SymbolTable symbols_;
  FormTable forms_;
  ExpressionReader expressions_;
  Model model_;
  std::size_t condition_terms_ = 0;
  /// The name that the statement at hand defines, else kEnd. What it has defined is
  /// taken back if it does not end as it should.
  Token target_;
  /// The name that the statement at hand uses without a definition, else "".
  std::string_view missing_;
};

}  // namespace sdpsol
