// The command line.
#pragma once

#include <optional>
#include <string>

namespace sdpsol {

inline constexpr const char* kStandardStream = "-";

/// Of files in the SDPA sparse format.
inline constexpr const char* kSdpaSuffix = ".dat-s";

/// The language of the definition.
enum class Format { kSdpsol, kSdpa };

/// Which engine proposes.
enum class EngineChoice {
  kAuto,   ///< whichever is expected to be faster, the general one where it is not enough
  kCones,  ///< that of second-order cones and small blocks, alone
  kCsdp,   ///< the general one, alone
};

/// Every output is a file name or kStandardStream; nothing where it is not asked for.
struct Options {
  std::string definition;             ///< a file name, or kStandardStream
  std::optional<std::string> result;  ///< not asked for: see prints_result()
  std::optional<std::string> json;
  std::optional<std::string> exported;         ///< the problem as an SDPA file
  std::optional<std::string> exported_margin;  ///< its first phase as an SDPA file
  Format format = Format::kSdpsol;
  EngineChoice engine = EngineChoice::kAuto;
  bool check = false;
  bool quiet = false;
  friend bool operator==(const Options&, const Options&) = default;
};

/// True if the text for people goes to standard output: it was not asked for
/// elsewhere, and nothing else goes there.
bool prints_result(const Options& options);

/// How the program ends.
enum ExitStatus : int {
  kExitVerdict = 0,     ///< a verdict was written, any of the three; or nothing to complain
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
