// From the text of a definition to its model: the language's front door.
#pragma once

#include <optional>

#include "solver/language/diagnostics.h"
#include "solver/language/model.h"
#include "solver/language/source.h"

namespace sdpsol {

/// Reads a definition in a single pass.
/// @param diagnostics receives every error, up to Diagnostics::kMaxErrors, and
///   notes about what was accepted but is worth knowing.
/// @return nothing when there was an error.
/// Reading goes on after an error with the next statement; what depends on a
/// name whose definition failed is left out without a second complaint.
/// Cost: linear in the text and in the terms of every value that is named; the
/// memory is that of the names' values and of the model.
std::optional<Model> read_definition(const Source& source, Diagnostics& diagnostics);

}  // namespace sdpsol
