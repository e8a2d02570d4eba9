// A problem as a definition, to look at it or to give it to the command.
#pragma once

#include <string>

#include "solver/problem/problem.h"

namespace sdpsol::testing {

/// One condition per block, numbers with all their digits. What a coefficient was
/// added up from is lost: a term that cancelled is left out.
std::string definition_text(const Problem& problem);

}  // namespace sdpsol::testing
