#include "fuzz/sound_diagnostics.h"

#include <algorithm>
#include <string>

#include "fuzz/oracle.h"

namespace fuzz {
namespace {

using sdpsol::Diagnostic;
using sdpsol::Place;
using sdpsol::Source;
using sdpsol::Span;

// A place may stand behind the last byte: where something is missing.
void require_inside(Span span, const Source& source) {
  require(span.begin <= span.end && span.end <= source.text().size(), "a place outside the text");
  const Place place = source.place(span.begin);
  const auto& text = source.text();
  const auto lines = 1 + std::count(text.begin(), text.end(), '\n');
  require(place.line >= 1 && place.line <= lines, "a line that the text does not have");
  require(place.column >= 1 && place.column <= source.line(place.line).size() + 2,
          "a column that the line does not have");
}

bool is_shown_as_it_is(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return byte == '\n' || (code >= 0x20U && code != 0x7FU);
}

}  // namespace

void require_sound(const sdpsol::Diagnostics& diagnostics, const Source& source, bool has_model) {
  std::size_t errors = 0;
  for (const Diagnostic& each : diagnostics.all()) {
    if (each.severity == Diagnostic::Severity::kError) ++errors;
    require(!each.message.empty(), "an empty message");
    require_inside(each.span, source);
    for (const Span range : each.ranges) require_inside(range, source);
    for (const auto& note : each.notes) {
      require(!note.message.empty(), "an empty note");
      require_inside(note.span, source);
    }
  }
  require(errors == diagnostics.error_count(), "errors that were not kept");
  require(has_model == (errors == 0), "a model with an error, or none without");
  const std::string report = diagnostics.render(source);
  require(report.empty() == diagnostics.all().empty(), "an empty report");
  require(std::all_of(report.begin(), report.end(), is_shown_as_it_is),
          "a control character in a report");
}

}  // namespace fuzz
