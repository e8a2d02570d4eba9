// Where the plug-in is, and the command that it starts.
#pragma once

#include <filesystem>
#include <string>

#include "host/error.h"

namespace grasp {

/// The plug-in or the solver did not do its work; what() says what they said.
class AskError : public zelhost::HostError {
 public:
  using HostError::HostError;
};

struct Road {
  std::filesystem::path plugin;
  /// A text for the shell, as a network would have it.
  std::string command;
};

}  // namespace grasp
