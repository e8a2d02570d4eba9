// When two problems are the same.
#pragma once

#include "solver/problem/problem.h"

namespace fuzz {

/// To the last bit, in every block and in the objective.
bool same_problem(const sdpsol::Problem& a, const sdpsol::Problem& b);

/// What a file in the SDPA sparse format keeps of a problem is the same: which values stand
/// where in the connected pieces of the blocks, strict or not, equations as two opposite
/// rows, and the cost. Neither the order of blocks nor what is 0 counts, nor a row of zeros.
bool same_cone_program(const sdpsol::Problem& a, const sdpsol::Problem& b);

/// Are all numbers of the problem finite?
bool is_finite(const sdpsol::Problem& problem);

}  // namespace fuzz
