// What ends the program, as its exit status and one line on the error stream.
#pragma once

#include <functional>

namespace grasp::command {

/// Runs the work and turns what it throws into an exit status.
int report_failures(const std::function<int()>& work);

}  // namespace grasp::command
