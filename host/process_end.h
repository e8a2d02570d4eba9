// How processes end, for people.
#pragma once

#include <string>

namespace zelhost {

/// @param status as waitpid() has it.
/// @return "killed by signal 11 (Segmentation fault)", "the process ended with status 3".
std::string how_it_ended(int status);

}  // namespace zelhost
