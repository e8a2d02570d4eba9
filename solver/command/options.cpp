#include "solver/command/options.h"

#include <CLI/CLI.hpp>

#include "version.h"

namespace sdpsol {

ParsedCommandLine parse_command_line(int argc, const char* const* argv) {
  CLI::App app{
      "Solves the semidefinite program of a definition file and writes a result file.\n"
      "The verdict is FEASIBLE, INFEASIBLE or FEASIBILITY CANNOT BE DETERMINED; the first\n"
      "two are proven.",
      "sdpsol"};
  Options options;
  app.add_flag("-q,--quiet", options.quiet, "Print nothing but warnings and errors")
      ->disable_flag_override();
  app.add_option("-o,--output", options.result,
                 "Result file, \"-\" for standard output (the default)")
      ->type_name("FILE");
  app.add_option("DEFINITION", options.definition, "Definition file, \"-\" for standard input")
      ->required()
      ->type_name("");
  app.set_version_flag("--version", std::string("sdpsol ") + project::kVersion);
  app.footer(
      "Exit status: 0 a verdict was written, 1 error in the definition, 2 wrong usage,\n"
      "3 a file could not be read or written, 4 out of memory or an internal error.");

  ParsedCommandLine parsed;
  try {
    app.parse(argc, argv);
    parsed.options = std::move(options);
  } catch (const CLI::CallForHelp&) {
    parsed.output = app.help();
  } catch (const CLI::CallForVersion& version) {
    parsed.output = std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    parsed.status = kExitUsage;
    parsed.error = std::string("sdpsol: ") + error.what() + "\nTry 'sdpsol --help'.\n";
  }
  return parsed;
}

}  // namespace sdpsol
