// The command line.
#pragma once

#include <optional>
#include <string>

namespace sdpsol {

inline constexpr const char* kStandardStream = "-";

struct Options {
  std::string definition;                ///< a file name, or kStandardStream
  std::string result = kStandardStream;  ///< a file name, or kStandardStream
  bool quiet = false;
};

/// How the program ends.
enum ExitStatus : int {
  kExitVerdict = 0,     ///< a verdict was written, any of the three
  kExitDefinition = 1,  ///< the definition has an error
  kExitUsage = 2,       ///< the command line is wrong
  kExitFile = 3,        ///< a file could not be read or written
  kExitInternal = 4,    ///< out of memory or an internal error
};

struct ParsedCommandLine {
  std::optional<Options> options;  ///< nothing if the program is to end at once
  ExitStatus status = kExitVerdict;
  std::string output;  ///< for standard output: help or version
  std::string error;   ///< for standard error
};

/// Reads the command line. Prints nothing, exits never.
ParsedCommandLine parse_command_line(int argc, const char* const* argv);

}  // namespace sdpsol
