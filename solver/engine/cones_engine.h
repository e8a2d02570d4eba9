// The engine for what grasps are made of: linear rows, second-order cones and small
// dense blocks. Tiny problems take it microseconds; where the unknowns only move a few
// forces for each cone, as in a grasp, what it takes grows linearly with the contacts.
#pragma once

#include <memory>

#include "solver/engine/engine.h"

namespace sdpsol {

std::unique_ptr<Engine> make_cones_engine();

/// True if the cones engine can be expected to be faster than CSDP.
bool suits_cones_engine(const ConeProgram& program);

}  // namespace sdpsol
