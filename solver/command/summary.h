// What a definition holds, in words for people.
#pragma once

#include <string>

#include "solver/language/model.h"
#include "solver/language/source.h"
#include "solver/problem/problem.h"

namespace sdpsol {

/// Variables with their shapes, conditions with their lines, the blocks they fall into,
/// the objective, and the parameters that differ from their defaults. Neighbours of one
/// kind share a line.
std::string summary_text(const Source& source, const Model& model, const Problem& problem);

}  // namespace sdpsol
