// Definitions: refused with places in the text, or read as a problem that stays the same
//   - when every token is set apart by a comment, so that none of the short ways through
//     the text is taken,
//   - when it is exported to the SDPA sparse format and read from there.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/exported.h"
#include "fuzz/oracle.h"
#include "fuzz/same_problem.h"
#include "fuzz/sound_diagnostics.h"
#include "solver/language/lexer.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"

namespace {

using sdpsol::Problem;

// Beyond this a problem is only built.
constexpr std::int32_t kManyUnknowns = 1'000;
constexpr std::size_t kManyBlocks = 2'000;

std::string set_apart(const sdpsol::Source& source) {
  std::string text;
  sdpsol::Lexer lexer(source);
  for (; lexer.current().kind != sdpsol::TokenKind::kEnd; lexer.advance()) {
    text += lexer.text(lexer.current().span);
    text += " % a comment; and a line break\n";
  }
  return text;
}

Problem read_apart(const sdpsol::Source& source) {
  const sdpsol::Source apart("apart.def", set_apart(source));
  sdpsol::Diagnostics diagnostics;
  const auto model = read_definition(apart, diagnostics);
  fuzz::require(model.has_value(), "refused with comments: " + diagnostics.render(apart));
  return build_problem(*model);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const sdpsol::Source source("fuzz.def", fuzz::text_of(data, size));
  sdpsol::Diagnostics diagnostics;
  const auto model = read_definition(source, diagnostics);
  fuzz::require_sound(diagnostics, source, model.has_value());
  if (!model || model->unknown_count > kManyUnknowns) return 0;
  const Problem problem = build_problem(*model);
  fuzz::require(fuzz::is_finite(problem), "a number that is not finite");
  fuzz::require(fuzz::same_problem(problem, read_apart(source)), "another problem with comments");
  if (problem.blocks.size() > kManyBlocks) return 0;
  fuzz::require(fuzz::same_cone_program(problem, fuzz::exported_and_read(problem)),
                "another export");
  return 0;
}
