// Verdicts and numbers as people and programs read them.
#pragma once

#include <string>

#include "solver/decide/outcome.h"

namespace sdpsol {

/// Also what programs search a result file for.
const char* verdict_words(Verdict verdict);

/// The shortest text that reads back as the same double; "0" for both zeros.
std::string shortest(double value);

/// At most so many significant digits.
std::string rounded(double value, int digits);

}  // namespace sdpsol
