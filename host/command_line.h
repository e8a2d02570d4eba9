// Reading a command line with the library for that, which prints and exits nothing here.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "host/program.h"

namespace zelhost {

/// @param app with the name of the program. @param options gives what the options and
/// arguments say, once they are read; it may throw CLI::ParseError.
template <class Options, class GetOptions>
ParsedCommandLine<Options> parse_with(CLI::App& app, int argc, const char* const* argv,
                                      const GetOptions& options) {
  ParsedCommandLine<Options> parsed;
  try {
    app.parse(argc, argv);
    parsed.options = options();
  } catch (const CLI::CallForHelp&) {
    parsed.output = app.help();
  } catch (const CLI::CallForVersion& version) {
    parsed.output = std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    parsed.status = kExitUsage;
    parsed.error =
        app.get_name() + ": " + error.what() + "\nTry '" + app.get_name() + " --help'.\n";
  }
  return parsed;
}

}  // namespace zelhost
