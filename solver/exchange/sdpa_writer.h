// From a problem to a file in the SDPA sparse format (see sdpa_reader.h).
#pragma once

#include <string>

#include "solver/engine/engine.h"
#include "solver/problem/problem.h"

namespace sdpsol {

/// The cone program as the text of a file: c = -objective, F_k = A_k, F_0 = -C.
/// Cones larger than 1x1 become blocks in their order. One diagonal block behind
/// them holds all rows: first the 1x1 cones, then each equation as two opposite
/// rows. Its size is -1, without entries, where there is neither cone nor equation.
/// Numbers are the shortest that read back equal; entries are sorted.
/// @param program its numbers finite; coefficients that share place and unknown
///   are added up.
/// @param comment stands in front, each of its lines as a comment; may be empty.
/// Cost: sorting the coefficients.
std::string sdpa_text(const ConeProgram& program, const std::string& comment);

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
