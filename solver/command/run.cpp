#include "solver/command/run.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "solver/command/files.h"
#include "solver/command/report.h"
#include "solver/command/result_text.h"
#include "solver/decide/decide.h"
#include "solver/engine/csdp_engine.h"
#include "solver/engine/engine_memory.h"
#include "solver/language/limits.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"

namespace sdpsol {
namespace {

// The tightest conditions are what a reader looks for; a grasp has hundreds.
constexpr std::size_t kMarginsInHeading = 5;

bool g_engine_is_running = false;  // read by the exit hook, which gets no arguments

void complain(const std::string& text) {
  std::fputs(text.c_str(), stderr);
}

/// Marks the time in which the library may end the process.
struct EngineScope {
  EngineScope() { g_engine_is_running = true; }
  EngineScope(const EngineScope&) = delete;
  EngineScope& operator=(const EngineScope&) = delete;
  ~EngineScope() { g_engine_is_running = false; }
};

Outcome decide_with_csdp(const Problem& problem, const Parameters& parameters,
                         std::string& engine_name) {
  reserve_engine_memory();
  const EngineScope scope;
  const auto engine = make_csdp_engine();
  engine_name = engine->name();
  return decide(problem, *engine, {.max_iterations = parameters.max_iterations});
}

ExitStatus solve(const Source& source, const ResultFile& result, bool quiet) {
  Diagnostics diagnostics;
  const auto model = read_definition(source, diagnostics);
  if (!model || !quiet) complain(diagnostics.render(source));
  if (!model) return kExitDefinition;

  const Problem problem = build_problem(*model);
  std::string engine;
  Outcome outcome = decide_with_csdp(problem, model->parameters, engine);
  const Report report = make_report(source, *model, problem, std::move(outcome), std::move(engine),
                                    kMarginsInHeading);
  for (const std::string& warning : report.warnings) complain("sdpsol: warning: " + warning + "\n");
  result.write(result_text(report));
  return kExitVerdict;
}

}  // namespace

bool engine_is_running() {
  return g_engine_is_running;
}

ExitStatus run(const Options& options) {
  try {
    const ResultFile result(options.result, options.definition);
    const bool standard = options.definition == kStandardStream;
    const Source source(standard ? "<standard input>" : options.definition,
                        read_whole_file(options.definition, kMaxTextBytes));
    return solve(source, result, options.quiet);
  } catch (const UsageError& error) {
    complain(std::string("sdpsol: ") + error.what() + "\nTry 'sdpsol --help'.\n");
    return kExitUsage;
  } catch (const FileError& error) {
    complain(std::string("sdpsol: ") + error.what() + "\n");
    return kExitFile;
  }
}

}  // namespace sdpsol
