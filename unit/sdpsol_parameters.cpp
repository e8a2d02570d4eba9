// The runtime parameters, which travel as assignments in the definition itself.
#include <array>
#include <string_view>

#include "unit/sdpsol_text.h"
#include "unit/sdpsol_wrapper.h"

using sdpsol_internal::append;

namespace {

constexpr std::array<std::string_view, 6> kKeywords{"NU",     "GAMMA",  "MAXITER",
                                                    "ABSTOL", "RELTOL", "BIGM"};

// The text is copied once instead of being closed up after every cut: a search
// that resumes at a cut never looks back, so what stands before it is final.
std::string without(std::string_view keyword, const std::string& text) {
  std::string kept;
  kept.reserve(text.size());
  std::size_t done = 0;
  for (;;) {
    const std::size_t start = text.find(keyword, done);
    const std::size_t semicolon =
        start == std::string::npos ? std::string::npos : text.find(';', start);
    if (semicolon == std::string::npos) break;
    kept.append(text, done, start - done);
    done = semicolon + 1;
    // An assignment with a line of its own takes its line break along.
    const bool starts_line = kept.empty() || kept.back() == '\n';
    if (starts_line && done < text.size() && text[done] == '\n') ++done;
  }
  kept.append(text, done);
  return kept;
}

}  // namespace

sdpsol_wrapper::parameters sdpsol_wrapper::getDefaultParameters() {
  return {.NU = 10.0,
          .GAMMA = 100.0,
          .MAXITER = 100,
          .ABSTOL = 4.4e-06,
          .RELTOL = 4.4e-06,
          .BIGM = 15000.0};
}

void sdpsol_wrapper::setParameters(parameters p) {
  for (const std::string_view keyword : kKeywords) definition = without(keyword, definition);
  std::string block;
  append(block, "NU=", p.NU, ";\n");
  append(block, "GAMMA=", p.GAMMA, ";\n");
  append(block, "MAXITER=", p.MAXITER, ";\n");
  append(block, "ABSTOL=", p.ABSTOL, ";\n");
  append(block, "RELTOL=", p.RELTOL, ";\n");
  append(block, "BIGM=", p.BIGM, ";\n");
  definition.insert(0, block);
}
