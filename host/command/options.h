// The command line of zelrun.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

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

/// How the program ends.
enum ExitStatus : int {
  kExitDone = 0,
  kExitFailed = 1,    ///< a network or a plug-in has an error, a method or a check failed
  kExitUsage = 2,     ///< the command line is wrong
  kExitFile = 3,      ///< a file could not be read or written
  kExitInternal = 4,  ///< out of memory or an internal error
};

struct ParsedCommandLine {
  std::optional<Options> options;  ///< nothing if the program is to end at once
  ExitStatus status = kExitDone;
  std::string output;  ///< for standard output: help or version
  std::string error;   ///< for standard error
};

/// Reads the command line. Prints nothing, exits never.
ParsedCommandLine parse_command_line(int argc, const char* const* argv);

}  // namespace zelrun
