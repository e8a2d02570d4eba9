#include "solver/language/names.h"

#include <algorithm>

#include "solver/language/characters.h"
#include "solver/language/diagnostics.h"
#include "solver/language/functions.h"

namespace sdpsol {
namespace {

constexpr std::array<std::string_view, 5> kKeywords = {"variable", "maximize", "minimize",
                                                       "symmetric", "diagonal"};

// Programs find their way through a result file by searching for these words;
// a variable of that name would mislead them.
constexpr std::array<std::string_view, 2> kMarkers = {"Variable", "INFEASIBLE"};

template <std::size_t n>
bool contains(const std::array<std::string_view, n>& words, std::string_view name) {
  return std::find(words.begin(), words.end(), name) != words.end();
}

}  // namespace

bool is_parameter(std::string_view name) {
  return contains(kParameterNames, name);
}

bool is_keyword(std::string_view name) {
  return contains(kKeywords, name);
}

bool is_not_finite(std::string_view name) {
  return equal_but_for_case(name, "inf") || equal_but_for_case(name, "nan");
}

std::optional<std::string> why_reserved(std::string_view name) {
  if (is_keyword(name)) return in_quotes(name) + " is a keyword and cannot be a name";
  if (function_named(name)) return in_quotes(name) + " is a function and cannot be a name";
  if (is_not_finite(name)) return in_quotes(name) + " is not a finite number and cannot be a name";
  for (const std::string_view marker : kMarkers) {
    if (name.find(marker) == std::string_view::npos) continue;
    return in_quotes(name) + " cannot be a name: result files are searched for " +
           in_quotes(marker);
  }
  return std::nullopt;
}

}  // namespace sdpsol
