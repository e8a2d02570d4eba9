// What is wrong with a definition, and where, collected while reading goes on.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "solver/language/source.h"

namespace sdpsol {

/// A place that explains a diagnostic, such as the declaration of an operand.
struct RelatedNote {
  Span span;
  std::string message;
};

/// One complaint or remark about the text.
struct Diagnostic {
  enum class Severity { kError, kNote };
  Severity severity = Severity::kError;
  Span span;  ///< shown with "^" and counted as its place
  std::string message;
  std::vector<Span> ranges;  ///< shown with "~", as far as they lie in the same line
  std::vector<RelatedNote> notes;
};

/// Errors and notes in the order in which they were found.
///
/// A text may earn far more of them than anyone reads: after kMaxErrors errors
/// the collection is full() and the reader stops, and notes beyond kMaxNotes are
/// only counted.
class Diagnostics {
 public:
  static constexpr std::size_t kMaxErrors = 20;
  static constexpr std::size_t kMaxNotes = 20;
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  /// Returns the position of the diagnostic, for explain(); kNowhere if not kept.
  std::size_t add(Diagnostic diagnostic);
  /// Adds a note to the diagnostic at `position`, when its cause is found later on.
  void explain(std::size_t position, RelatedNote note);

  std::size_t error_count() const { return error_count_; }
  bool full() const { return error_count_ >= kMaxErrors; }
  const std::vector<Diagnostic>& all() const { return all_; }

  /// The whole report, ready to print, "" where there is nothing to say:
  ///
  ///     lyapunov.def:7:9: error: '+' needs equal shapes: left is 2x2, right is 3x3
  ///         7 | F = A*Q + P;
  ///           |     ~~~ ^ ~
  ///     lyapunov.def:3:10: note: 'P' is declared 3x3 here
  std::string render(const Source& source) const;

 private:
  std::vector<Diagnostic> all_;
  std::size_t error_count_ = 0;
  std::size_t note_count_ = 0;
};

/// 'text' in quotes for a message: cut after 40 bytes, unprintable bytes as "?".
std::string in_quotes(std::string_view text);

/// "1 row", "2 rows".
std::string count_text(std::size_t number, const char* what);

}  // namespace sdpsol
