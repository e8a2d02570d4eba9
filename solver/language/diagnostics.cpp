#include "solver/language/diagnostics.h"

#include <algorithm>
#include <utility>

#include "solver/language/excerpt.h"

namespace sdpsol {
namespace {

std::string heading(const Source& source, Span span, std::string_view kind,
                    std::string_view message) {
  const Place place = source.place(span.begin);
  std::string line =
      source.name() + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": ";
  line += kind;
  line += ": ";
  line += message;
  line += '\n';
  return line;
}

}  // namespace

std::size_t Diagnostics::add(Diagnostic diagnostic) {
  if (diagnostic.severity == Diagnostic::Severity::kError) {
    ++error_count_;
  } else if (++note_count_ > kMaxNotes) {
    return kNowhere;
  }
  all_.push_back(std::move(diagnostic));
  return all_.size() - 1;
}

void Diagnostics::explain(std::size_t position, RelatedNote note) {
  if (position < all_.size()) all_[position].notes.push_back(std::move(note));
}

std::string Diagnostics::render(const Source& source) const {
  std::string text;
  for (const Diagnostic& diagnostic : all_) {
    const bool is_error = diagnostic.severity == Diagnostic::Severity::kError;
    text += heading(source, diagnostic.span, is_error ? "error" : "note", diagnostic.message);
    text += excerpt(source, diagnostic.span, diagnostic.ranges);
    for (const RelatedNote& note : diagnostic.notes) {
      text += heading(source, note.span, "note", note.message);
    }
  }
  if (note_count_ > kMaxNotes) {
    text += source.name() + ": note: " + std::to_string(note_count_ - kMaxNotes) +
            " more notes are not shown\n";
  }
  if (full()) {
    text += source.name() + ": note: stopped after " + std::to_string(error_count_) + " errors\n";
  }
  return text;
}

std::string in_quotes(std::string_view text) {
  constexpr std::size_t kMaxLength = 40;
  std::string inside;
  std::size_t at = 0;
  while (at < text.size() && at < kMaxLength) {
    const std::size_t length = printable_length(text.substr(at));
    inside += length > 0 ? text.substr(at, length) : std::string_view("?");
    at += std::max<std::size_t>(length, 1);
  }
  return "'" + inside + (at < text.size() ? "...'" : "'");
}

std::string count_text(std::size_t number, const char* what) {
  return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

}  // namespace sdpsol
