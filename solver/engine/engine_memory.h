// Memory that the engine's library must find before it starts.
#pragma once

namespace sdpsol {

/// Lets the library take its working buffer, or finds out that there is no room
/// for it: left alone, the library would ask for the buffer again and again,
/// for ever.
/// @throws std::bad_alloc. Cost: microseconds; the pages are not touched.
void reserve_engine_memory();

}  // namespace sdpsol
