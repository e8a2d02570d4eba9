// The parameters of a run, as a definition assigns them.
#pragma once

#include <string_view>

#include "solver/language/model.h"
#include "solver/language/operand.h"

namespace sdpsol {

/// Assigns the parameter `name`, one of kParameterNames.
/// @throws LanguageError if the operand is no constant scalar or out of range:
/// MAXITER is a whole number from 1 on, every other one is above 0.
void set_parameter(Parameters& parameters, std::string_view name, const Operand& operand);

double get_parameter(const Parameters& parameters, std::string_view name);

}  // namespace sdpsol
