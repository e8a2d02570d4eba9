// The command lines that other programs write.
#pragma once

#include <optional>

#include "solver/command/options.h"

namespace sdpsol {

/// Reads a command line that has nothing in it to explain: -q, -o, --json, a definition,
/// and file names that can be nothing else.
/// @return what parse_command_line() returns, without the library that it takes, which
///     costs as much as reading a small definition; nothing for any other command line,
///     right or wrong.
std::optional<Options> read_plain_options(int argc, const char* const* argv);

/// Reads any command line.
ParsedCommandLine read_command_line(int argc, const char* const* argv);

}  // namespace sdpsol
