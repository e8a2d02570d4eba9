// The reference engine: the CSDP library.
#pragma once

#include <memory>

#include "solver/engine/engine.h"

namespace sdpsol {

/// Predictor-corrector interior-point method of CSDP (Borchers, "CSDP, a C
/// library for semidefinite programming", Optimization Methods and Software
/// 11(1), 1999). Equations are eliminated first, CSDP knows none.
/// Not reentrant: the library has one observer hook per process.
std::unique_ptr<Engine> make_csdp_engine();

}  // namespace sdpsol
