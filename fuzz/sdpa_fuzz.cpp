// Files in the SDPA sparse format: refused with a place, or read as a problem that is the
// same when it is written and read again.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/exported.h"
#include "fuzz/oracle.h"
#include "fuzz/same_problem.h"
#include "fuzz/sound_diagnostics.h"
#include "solver/exchange/sdpa_reader.h"
#include "solver/problem/structure.h"

namespace {

// A few digits may claim a million rows.
constexpr std::size_t kManyBlocks = 5'000;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const sdpsol::Source source("fuzz.dat-s", fuzz::text_of(data, size));
  sdpsol::Diagnostics diagnostics;
  const auto model = read_sdpa(source, diagnostics);
  fuzz::require_sound(diagnostics, source, model.has_value());
  if (!model) return 0;
  const sdpsol::Problem problem = build_problem(*model);
  fuzz::require(fuzz::is_finite(problem), "a number that is not finite");
  if (problem.blocks.size() > kManyBlocks) return 0;
  const sdpsol::Problem again = fuzz::exported_and_read(problem);
  fuzz::require(fuzz::same_cone_program(problem, again), "another problem");
  // Pieces have found their order the first time.
  fuzz::require(fuzz::same_problem(again, fuzz::exported_and_read(again)),
                "another problem the second time");
  return 0;
}
