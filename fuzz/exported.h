// The way of a problem into a file and back.
#pragma once

#include "solver/problem/problem.h"

namespace fuzz {

/// What is read of the file in the SDPA sparse format that the problem is written to. That it
/// is read without a remark is required.
sdpsol::Problem exported_and_read(const sdpsol::Problem& problem);

}  // namespace fuzz
