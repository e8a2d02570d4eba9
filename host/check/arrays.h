// What methods hand over as arrays, looked at before anybody reads it.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "host/port.h"

namespace zelcheck {

/// What is wrong with the arrays at these outputs: "output 0: the array ...". Those that
/// something is wrong with may be no memory to read.
std::vector<std::string> unsound_arrays(const std::deque<zelhost::Port>& outputs);

}  // namespace zelcheck
