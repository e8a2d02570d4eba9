// The line of a source that a diagnostic is about, with marks under it.
#pragma once

#include <string>
#include <vector>

#include "solver/language/source.h"

namespace sdpsol {

/// Two lines, each with its line break: the line of `mark.begin` after its
/// number, and "^" with "~" under `mark`, "~" under the parts of `ranges` in it.
/// Of a long line only a window around the mark is shown, "..." on either side.
/// Every character takes one column: tabs are shown as blanks, bytes that are no
/// printable text as "?". Cost: the width of the window.
std::string excerpt(const Source& source, Span mark, const std::vector<Span>& ranges);

/// Length in bytes of the UTF-8 character `text` begins with; 0 if it is none or
/// a control character.
std::size_t printable_length(std::string_view text);

}  // namespace sdpsol
