// One run of the command.
#pragma once

#include "solver/command/options.h"

namespace sdpsol {

/// Reads the definition, decides it, writes the result, or as much of that as is asked
/// for. Messages go to standard error.
/// @return the exit status; throws nothing but std::bad_alloc.
ExitStatus run(const Options& options);

/// To be called when the process ends. Returns true if it ends inside the engine's
/// library, which does so by itself when it finds no memory: no result file has been
/// written then, and what is left to do is to say so, on an empty line of the terminal.
bool ends_inside_engine();

}  // namespace sdpsol
