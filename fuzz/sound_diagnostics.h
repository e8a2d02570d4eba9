// What holds of everything that is said about a text, whatever the text.
#pragma once

#include "solver/language/diagnostics.h"
#include "solver/language/source.h"

namespace fuzz {

/// Every message says something, every place lies in the text, the report can be shown on a
/// terminal, and there is a model unless there is an error.
void require_sound(const sdpsol::Diagnostics& diagnostics, const sdpsol::Source& source,
                   bool has_model);

}  // namespace fuzz
