#include "solver/command/words.h"

#include <array>
#include <charconv>

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
  if (value == 0) return "0";
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end};
}

std::string rounded(double value, int digits) {
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                          std::chars_format::general, digits);
  return {buffer.data(), end};
}

}  // namespace sdpsol
