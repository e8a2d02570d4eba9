// Constructors of libraries that only some runs need.
//
// A library's constructors run at every start, needed or not: one asks the processor
// what it can do, one prepares streams that nothing is written to. Both take longer
// than solving a small problem. The static command's linker script puts them aside, and
// whoever is about to use the library calls them; elsewhere they have run before main,
// and nothing is left to do here.
#pragma once

namespace sdpsol {

/// Before the first call into the library of the engine.
void construct_engine_library();

/// Before the first use of the library that reads command lines.
void construct_options_library();

}  // namespace sdpsol
