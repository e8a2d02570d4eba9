#include "fuzz/exported.h"

#include "fuzz/oracle.h"
#include "solver/exchange/exported_programs.h"
#include "solver/exchange/sdpa_reader.h"
#include "solver/exchange/sdpa_writer.h"
#include "solver/problem/structure.h"

namespace fuzz {

sdpsol::Problem exported_and_read(const sdpsol::Problem& problem) {
  const sdpsol::Source source("export.dat-s",
                              sdpa_text(cone_program_of(problem), cone_program_comment(problem)));
  sdpsol::Diagnostics diagnostics;
  const auto model = read_sdpa(source, diagnostics);
  require(model.has_value(), "the export is refused: " + diagnostics.render(source));
  require(diagnostics.all().empty(), "the export gets remarks");
  return build_problem(*model);
}

}  // namespace fuzz
