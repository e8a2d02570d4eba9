#include "tests/verdicts/decide_text.h"

#include <gtest/gtest.h>

#include "solver/decide/decide.h"
#include "solver/engine/auto_engine.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"

namespace sdpsol::testing {

Outcome decide_text(const std::string& text) {
  const Source source("test.def", text);
  Diagnostics diagnostics;
  const auto model = read_definition(source, diagnostics);
  if (!model) {
    ADD_FAILURE() << diagnostics.render(source);
    return {};
  }
  const auto cones = make_cones_engine();
  const auto csdp = make_csdp_engine();
  AutoEngine fastest(*cones, *csdp);
  return decide_with_fallback(build_problem(*model), fastest, *csdp,
                              {.max_iterations = model->parameters.max_iterations});
}

const char* word_for(Verdict verdict) {
  switch (verdict) {
    case Verdict::kFeasible:
      return "FEASIBLE";
    case Verdict::kInfeasible:
      return "INFEASIBLE";
    case Verdict::kUndetermined:
      return "FEASIBILITY CANNOT BE DETERMINED";
  }
  return "";
}

}  // namespace sdpsol::testing
