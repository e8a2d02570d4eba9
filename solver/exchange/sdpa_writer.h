// From a problem to a file in the SDPA sparse format (see sdpa_reader.h).
#pragma once

#include <string>

#include "solver/engine/engine.h"

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

}  // namespace sdpsol
