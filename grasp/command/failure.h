// What ends the program, as its exit status and one line on the error stream.
#pragma once

#include <functional>

#include "host/error.h"

namespace grasp::command {

/// The command line asks for what cannot be; what() says why.
class UsageError : public zelhost::HostError {
 public:
  using HostError::HostError;
};

/// Runs the work and turns what it throws into an exit status.
int report_failures(const std::function<int()>& work);

}  // namespace grasp::command
