#include "solver/command/words.h"

#include <array>
#include <charconv>

#include "solver/language/number.h"

namespace sdpsol {

const char* verdict_words(Verdict verdict) {
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

std::string shortest(double value) {
  return number_text(value + 0.0);
}

std::string rounded(double value, int digits) {
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                          std::chars_format::general, digits);
  return {buffer.data(), end};
}

}  // namespace sdpsol
