#include "solver/command/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <initializer_list>

#include "version.h"

namespace sdpsol {
namespace {

/// Accepts one of a few words.
CLI::Validator one_of(std::initializer_list<const char*> words) {
  std::string list;
  for (const char* word : words) list += (list.empty() ? "" : " or ") + std::string(word);
  const std::vector<std::string> known(words.begin(), words.end());
  return CLI::Validator(
      [known, list](std::string& word) {
        const bool found = std::find(known.begin(), known.end(), word) != known.end();
        return found ? "" : "'" + word + "' is not " + list;
      },
      "");
}

/// Takes a name as it is given: an empty one is an error of its own, found where files are.
void add_file(CLI::App& app, const std::string& flags, std::optional<std::string>& name,
              const std::string& help) {
  const auto take = [&name](const std::string& given) { name = given; };
  app.add_option_function<std::string>(flags, take, help)->type_name("FILE");
}

ParsedCommandLine wrong_usage(const CLI::Error& error) {
  ParsedCommandLine parsed;
  parsed.status = kExitUsage;
  parsed.error = std::string("sdpsol: ") + error.what() + "\nTry 'sdpsol --help'.\n";
  return parsed;
}

}  // namespace

bool prints_result(const Options& options) {
  if (options.result) return *options.result == kStandardStream;
  const auto elsewhere = [](const std::optional<std::string>& name) {
    return name != kStandardStream;
  };
  return elsewhere(options.json) && elsewhere(options.exported) &&
         elsewhere(options.exported_margin);
}

ParsedCommandLine parse_command_line(int argc, const char* const* argv) {
  CLI::App app{
      "Solves the semidefinite program of a definition file and writes a result file.\n"
      "The verdict is FEASIBLE, INFEASIBLE or FEASIBILITY CANNOT BE DETERMINED; the first\n"
      "two are proven.",
      "sdpsol"};
  Options options;
  std::string format;
  std::string engine;
  app.add_flag("-q,--quiet", options.quiet, "Print nothing but warnings and errors")
      ->disable_flag_override();
  add_file(app, "-o,--output", options.result,
           "Result file, \"-\" for standard output: the default,\n"
           "unless another output goes there");
  add_file(app, "--json", options.json, "Write everything about the result as JSON");
  app.add_flag("--check", options.check, "Read the definition, say what it holds, solve nothing")
      ->disable_flag_override();
  app.add_option("--format", format,
                 "What the definition is written in: sdpsol or sdpa\n"
                 "(default: sdpa if its name ends in .dat-s)")
      ->type_name("NAME")
      ->check(one_of({"sdpsol", "sdpa"}));
  add_file(app, "--export-sdpa", options.exported,
           "Write the problem in the SDPA sparse format, then go on");
  add_file(app, "--export-sdpa-margin", options.exported_margin,
           "Write the search for the largest margin likewise");
  app.add_option("--engine", engine,
                 "Who proposes answers: auto, cones or csdp\n"
                 "(default: auto, cones for small blocks and csdp where that is not enough)")
      ->type_name("NAME")
      ->check(one_of({"auto", "cones", "csdp"}));
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
    if (options.check && (options.result || options.json)) {
      throw CLI::ParseError("--check writes no result, -o and --json have no place beside it",
                            kExitUsage);
    }
    const bool named_so = format.empty() && options.definition.ends_with(kSdpaSuffix);
    options.format = named_so || format == "sdpa" ? Format::kSdpa : Format::kSdpsol;
    if (engine == "cones") options.engine = EngineChoice::kCones;
    if (engine == "csdp") options.engine = EngineChoice::kCsdp;
    parsed.options = std::move(options);
  } catch (const CLI::CallForHelp&) {
    parsed.output = app.help();
  } catch (const CLI::CallForVersion& version) {
    parsed.output = std::string(version.what()) + "\n";
  } catch (const CLI::RequiredError& error) {
    // The library looks for what is missing before it looks at what it does not know.
    const std::vector<std::string> unknown = app.remaining();
    parsed = unknown.empty() ? wrong_usage(error) : wrong_usage(CLI::ExtrasError(unknown));
  } catch (const CLI::ParseError& error) {
    parsed = wrong_usage(error);
  }
  return parsed;
}

}  // namespace sdpsol
