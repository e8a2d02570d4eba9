// Cone programs for solvers that know second-order cones and no matrices.
#pragma once

#include <string>

#include "solver/engine/engine.h"

namespace bench {

/// The program as cvxopt_cones.py reads it: numbers with blanks between them.
///
///   UNKNOWNS ROWS CONES
///   the objective, one number per unknown
///   LINE UNKNOWN VALUE   as often as there are coefficients
///
/// The first ROWS lines are linear rows, the others three for each of CONES second-order
/// cones { (s0, s1, s2) : s0 >= |(s1, s2)| }; UNKNOWN is -1 for constants.
/// @param program of rows and friction cones [a,0,b;0,a,c;b,c,a], without equations.
/// @throws std::runtime_error if anything else is in it.
std::string second_order_text(const sdpsol::ConeProgram& program);

}  // namespace bench
