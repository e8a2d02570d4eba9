// Small definitions, decided by each engine and by the way that the command goes: whatever
// is claimed is confirmed in other ways, and no two claims contradict each other.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "fuzz/claims.h"
#include "fuzz/oracle.h"
#include "solver/decide/decide.h"
#include "solver/engine/auto_engine.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"
#include "tests/engines/judge.h"

namespace {

using sdpsol::Block;
using sdpsol::Outcome;
using sdpsol::Problem;

// What an engine decides in a few milliseconds.
bool is_small(const Problem& problem) {
  constexpr std::int32_t kUnknowns = 10;
  constexpr std::int32_t kLargest = 6;
  constexpr std::size_t kBlocks = 20;
  return problem.unknowns <= kUnknowns && problem.blocks.size() <= kBlocks &&
         std::all_of(problem.blocks.begin(), problem.blocks.end(),
                     [](const Block& block) { return block.size <= kLargest; });
}

void require_agreement(const Problem& problem, const Outcome& a, const Outcome& b) {
  using namespace sdpsol::testing;
  const EngineProblem drawn{problem};
  fuzz::require(!judge(drawn, a, Fallback::kNotAsked, b).against_each_other,
                "two claims that contradict each other");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const sdpsol::Source source("fuzz.def", fuzz::text_of(data, size));
  sdpsol::Diagnostics diagnostics;
  const auto model = read_definition(source, diagnostics);
  if (!model) return 0;
  const Problem problem = build_problem(*model);
  if (!is_small(problem)) return 0;

  static const auto csdp = sdpsol::make_csdp_engine();
  static const auto cones = sdpsol::make_cones_engine();
  sdpsol::AutoEngine fastest(*cones, *csdp);
  const sdpsol::Limits limits{.max_iterations = std::min(model->parameters.max_iterations, 200)};
  const std::array<Outcome, 3> outcomes = {decide(problem, *csdp, limits),
                                           decide(problem, *cones, limits),
                                           decide_with_fallback(problem, fastest, *csdp, limits)};
  for (const Outcome& outcome : outcomes) fuzz::require_true_claims(problem, outcome);
  require_agreement(problem, outcomes[0], outcomes[1]);
  require_agreement(problem, outcomes[0], outcomes[2]);
  require_agreement(problem, outcomes[1], outcomes[2]);
  return 0;
}
