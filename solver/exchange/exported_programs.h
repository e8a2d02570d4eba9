// What of a problem is written to files for other programs (see sdpa_writer.h).
#pragma once

#include <string>

#include "solver/engine/engine.h"
#include "solver/problem/problem.h"

namespace sdpsol {

/// The problem itself, not scaled: strict inequalities as non-strict ones, the
/// objective without its constant, 0 where there is none, and without the box.
ConeProgram cone_program_of(const Problem& problem);

/// What the first phase asks an engine when it begins: for the largest margin.
/// Unknowns and inequalities are in the first phase's own units.
ConeProgram margin_program_of(const Problem& problem);

/// What a reader of the file of cone_program_of(problem) needs to know, as a
/// comment of a few lines.
std::string cone_program_comment(const Problem& problem);

/// Likewise for margin_program_of(problem).
std::string margin_program_comment(const Problem& problem);

}  // namespace sdpsol
