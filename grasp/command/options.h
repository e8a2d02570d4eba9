// The command line of grasp.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "grasp/batch/batch.h"
#include "grasp/batch/grasp_line.h"
#include "host/program.h"

namespace grasp::command {

/// One grasp.
struct SingleOptions {
  std::string grasp;  ///< "-" is standard input
  bool json = false;
  std::optional<std::filesystem::path> svg;
  std::optional<std::filesystem::path> html;
};

/// Makes grasps.
struct RandomOptions {
  std::uint64_t count = 0;
  std::uint64_t seed = 1;
  /// Of each grasp; a mixture if not given.
  std::optional<std::size_t> contacts;
};

struct Options {
  std::variant<SingleOptions, BatchOptions, RandomOptions> what;
  LineQuestion asked;
  /// Where the user wants the plug-in and the solver taken from.
  std::string plugin = "sdpsol";
  std::optional<std::string> solver;
};

/// Reads the command line. Prints nothing, exits never.
zelhost::ParsedCommandLine<Options> parse_command_line(int argc, const char* const* argv);

}  // namespace grasp::command
