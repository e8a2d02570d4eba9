// One run of the command.
#pragma once

#include "solver/command/options.h"

namespace sdpsol {

/// Reads the definition, decides it, writes the result. Messages go to standard
/// error. @return the exit status; throws nothing but std::bad_alloc.
ExitStatus run(const Options& options);

/// True while the engine's library is at work. It may end the process by itself
/// when it finds no memory; main's exit hook turns that into a report.
bool engine_is_running();

}  // namespace sdpsol
