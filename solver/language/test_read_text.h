// For tests: reads a text as the file "t.def".
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "solver/language/reader.h"

namespace sdpsol {

struct ReadText {
  std::optional<Model> model;
  std::string report;  ///< everything that is printed about the text
};

inline ReadText read_text(std::string text) {
  const Source source("t.def", std::move(text));
  Diagnostics diagnostics;
  ReadText result;
  result.model = read_definition(source, diagnostics);
  result.report = diagnostics.render(source);
  return result;
}

}  // namespace sdpsol
