// The one exception of the language: something is wrong at a place of the text.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "solver/language/diagnostics.h"

namespace sdpsol {

/// Thrown where a statement cannot be read or evaluated any further; caught at
/// the end of that statement, so it never leaves read_definition().
class LanguageError : public std::exception {
 public:
  LanguageError(Span span, std::string message) {
    diagnostic.span = span;
    diagnostic.message = std::move(message);
  }
  LanguageError with_note(Span span, std::string message) && {
    diagnostic.notes.push_back({span, std::move(message)});
    return std::move(*this);
  }
  LanguageError with_unknown(std::int32_t unknown) && {
    unknowns.push_back(unknown);
    return std::move(*this);
  }
  const char* what() const noexcept override { return diagnostic.message.c_str(); }

  Diagnostic diagnostic;
  /// Unknowns that are to blame. Arithmetic knows unknowns by number only; the
  /// reader, which knows their names, turns them into notes.
  std::vector<std::int32_t> unknowns;
};

}  // namespace sdpsol
