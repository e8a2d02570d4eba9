// What the commands of this house that are hosts have in common: how they begin, and how
// they end.
#pragma once

#include <functional>
#include <iostream>
#include <optional>
#include <string>

#include "host/error.h"
#include "host/standard_output.h"

namespace zelhost {

/// How a program ends; the manual of each says what has failed with kExitFailed.
enum ExitStatus : int {
  kExitDone = 0,
  kExitFailed = 1,    ///< what the program was given has an error, or did not do its work
  kExitUsage = 2,     ///< the command line is wrong
  kExitFile = 3,      ///< a file could not be read or written
  kExitInternal = 4,  ///< out of memory or an internal error
};

/// The command line asks for what cannot be; what() says why.
class UsageError : public HostError {
 public:
  using HostError::HostError;
};

/// A command line that has been read.
template <class Options>
struct ParsedCommandLine {
  std::optional<Options> options;  ///< nothing if the program is to end at once
  ExitStatus status = kExitDone;
  std::string output;  ///< for standard output: help or version
  std::string error;   ///< for standard error
};

/// Runs the work and turns what it throws into an exit status, and one line on standard
/// error that begins with the program's name.
int report_failures(const std::string& program, const std::function<int()>& work);

/// For a process at its start, before it opens anything.
void begin_program();

/// A whole main function: reads the command line, and carries out what it asks for.
/// @param parse returns a ParsedCommandLine. @param carry_out takes its options and returns
/// the exit status.
template <class Parse, class CarryOut>
int run_program(const std::string& program, const Parse& parse, const CarryOut& carry_out) {
  begin_program();
  return report_failures(program, [&]() -> int {
    const auto parsed = parse();
    print(std::cout, [&parsed](std::ostream& out) { out << parsed.output; });
    std::cerr << parsed.error;
    return parsed.options ? carry_out(*parsed.options) : parsed.status;
  });
}

}  // namespace zelhost
