// For tests: reads a text as the file "t.dat-s".
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "solver/exchange/sdpa_reader.h"

namespace sdpsol::testing {

struct ReadSdpa {
  std::optional<Model> model;
  std::string report;  ///< everything that is printed about the text
};

inline ReadSdpa read_sdpa_text(std::string text) {
  const Source source("t.dat-s", std::move(text));
  Diagnostics diagnostics;
  ReadSdpa result;
  result.model = read_sdpa(source, diagnostics);
  result.report = diagnostics.render(source);
  return result;
}

}  // namespace sdpsol::testing
