// Memory for large definitions.
#pragma once

#include <cstddef>

namespace sdpsol {

/// Lets the heap grow into large pages where a text of so many bytes is about to be read,
/// and keep what it is given back. A hundred contacts take ten thousand pages of the usual
/// size, and to ask for each of them costs a third of the time. For a small text nothing
/// changes: clearing a single large page takes longer than all of its small ones.
/// Cost: nothing is touched; where memory is short or has no large pages, nothing happens.
void use_large_pages(std::size_t text_bytes);

}  // namespace sdpsol
