// The command line of zelrun.
#pragma once

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "host/program.h"

namespace zelrun {

/// Where plug-ins without a path are looked for, beside the places that are looked
/// at anyway.
using Folders = std::vector<std::filesystem::path>;

struct ListOptions {
  std::string plugin;
};

struct RunOptions {
  std::filesystem::path network;
  bool json = false;
};

struct CheckOptions {
  std::string plugin;
  double time_limit = 60;  ///< of one check [s]
};

struct Options {
  std::variant<ListOptions, RunOptions, CheckOptions> what;
  Folders plugin_folders;
};

/// Reads the command line. Prints nothing, exits never.
zelhost::ParsedCommandLine<Options> parse_command_line(int argc, const char* const* argv);

}  // namespace zelrun
