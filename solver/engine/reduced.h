// What every engine leaves out before it begins: equations, unknowns that no cone holds,
// programs that are empty or whose numbers are absurd.
#pragma once

#include <functional>

#include "solver/engine/engine.h"

namespace sdpsol {

/// Solves a program in which every unknown occurs in a cone, there is at least one, and
/// there are no equations.
using SolveCones =
    std::function<Candidate(const ConeProgram&, const Limits&, const Observer& observer)>;

/// Solves a program by solving what is left of it.
Candidate solve_reduced(const ConeProgram& program, const Limits& limits, const Observer& observer,
                        const SolveCones& solve);

}  // namespace sdpsol
