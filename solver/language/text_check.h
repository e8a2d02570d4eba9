// What can be told of a file before a word of it is read.
#pragma once

#include "solver/language/diagnostics.h"
#include "solver/language/source.h"

namespace sdpsol {

/// Whether the source can be a text at all: not larger than kMaxTextBytes, and
/// without a byte 0. If not, says so once, instead of a thousand complaints about
/// its bytes. Cost: a search through the text.
bool is_text(const Source& source, Diagnostics& diagnostics);

}  // namespace sdpsol
