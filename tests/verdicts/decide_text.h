// From the text of a definition to its outcome, without files and commands.
#pragma once

#include <string>

#include "solver/decide/outcome.h"

namespace sdpsol::testing {

/// @param text must be a definition without errors; a test fails over one that is not.
Outcome decide_text(const std::string& text);

/// The verdict as the result file words it.
const char* word_for(Verdict verdict);

}  // namespace sdpsol::testing
