#include "solver/command/run.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <utility>

#include "solver/command/files.h"
#include "solver/command/json_report.h"
#include "solver/command/outputs.h"
#include "solver/command/progress.h"
#include "solver/command/report.h"
#include "solver/command/result_text.h"
#include "solver/command/summary.h"
#include "solver/decide/decide.h"
#include "solver/engine/auto_engine.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"
#include "solver/engine/watched_engine.h"
#include "solver/exchange/exported_programs.h"
#include "solver/exchange/sdpa_reader.h"
#include "solver/exchange/sdpa_writer.h"
#include "solver/language/limits.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"
#include "solver/start/large_pages.h"

namespace sdpsol {
namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::duration duration) {
  return std::chrono::duration<double>(duration).count();
}

void complain(const std::string& text) {
  std::fputs(text.c_str(), stderr);
}

// While the library may end the process: what the exit hook, which gets no
// arguments, has to clear away.
Progress* g_progress = nullptr;

struct EngineScope {
  explicit EngineScope(Progress& progress) { g_progress = &progress; }
  EngineScope(const EngineScope&) = delete;
  EngineScope& operator=(const EngineScope&) = delete;
  ~EngineScope() { g_progress = nullptr; }
};

/// One definition on its way through the program.
class Run {
 public:
  Run(const Options& options, Outputs& outputs)
      : options_(options),
        outputs_(outputs),
        source_(options.definition == kStandardStream ? "<standard input>" : options.definition,
                read_whole_file(options.definition, kMaxTextBytes)) {}

  ExitStatus go() {
    use_large_pages(source_.text().size());
    Diagnostics diagnostics;
    const auto model = options_.format == Format::kSdpa ? read_sdpa(source_, diagnostics)
                                                        : read_definition(source_, diagnostics);
    if (!model || !options_.quiet) complain(diagnostics.render(source_));
    if (!model) return kExitDefinition;
    times_.reading = lap();
    const Problem problem = build_problem(*model);
    times_.structure = lap();
    write_exports(problem);
    if (options_.check) {
      check(*model, problem);
    } else {
      solve(*model, problem);
    }
    return kExitVerdict;
  }

 private:
  /// Seconds since the last call.
  double lap() {
    const Clock::time_point now = Clock::now();
    return seconds(now - std::exchange(lap_begun_, now));
  }

  /// Before anything is solved: another program may be what is asked to do that.
  void write_exports(const Problem& problem) {
    Outputs::Texts texts;
    if (outputs_.wants(Output::kExport)) {
      texts.emplace_back(Output::kExport,
                         sdpa_text(cone_program_of(problem), cone_program_comment(problem)));
    }
    if (outputs_.wants(Output::kExportMargin)) {
      texts.emplace_back(Output::kExportMargin,
                         sdpa_text(margin_program_of(problem), margin_program_comment(problem)));
    }
    if (texts.empty()) return;
    outputs_.write(std::move(texts));
    lap();
  }

  void check(const Model& model, const Problem& problem) {
    if (options_.quiet || !outputs_.wants(Output::kResult)) return;
    outputs_.write({{Output::kResult, summary_text(source_, model, problem)}});
  }

  void solve(const Model& model, const Problem& problem) {
    Outcome outcome = decide_with_engines(model, problem);
    Report report = make_report(source_, model, problem, std::move(outcome));
    times_.total = seconds(Clock::now() - begun_);
    report.times = times_;
    for (const std::string& warning : report.warnings) {
      complain("sdpsol: warning: " + warning + "\n");
    }
    Outputs::Texts texts;
    if (outputs_.wants(Output::kResult)) {
      texts.emplace_back(Output::kResult, result_text(report));
    }
    if (outputs_.wants(Output::kJson)) texts.emplace_back(Output::kJson, json_text(report));
    outputs_.write(std::move(texts));
  }

  Outcome decide_with_engines(const Model& model, const Problem& problem) {
    const bool minimized = model.objective && !model.objective->maximize;
    Progress progress(begun_, minimized, options_.quiet);
    const EngineScope scope(progress);
    WatchedEngine::Watch watch;
    if (progress.is_watched()) watch = [&](const EngineStep& step) { progress.tell(step); };
    EngineLog log;
    Outcome outcome =
        decide_watched(problem, {.max_iterations = model.parameters.max_iterations}, log, watch);
    times_.engine = seconds(log.inside);
    times_.checking = lap() - times_.engine;
    return outcome;
  }

  Outcome decide_watched(const Problem& problem, const Limits& limits, EngineLog& log,
                         const WatchedEngine::Watch& watch) const {
    const auto cones = make_cones_engine();
    const auto csdp = make_csdp_engine();
    AutoEngine fastest(*cones, *csdp);
    WatchedEngine watched_fastest(fastest, log, watch);
    WatchedEngine watched_cones(*cones, log, watch);
    WatchedEngine watched_csdp(*csdp, log, watch);
    switch (options_.engine) {
      case EngineChoice::kAuto:
        return decide_with_fallback(problem, watched_fastest, watched_csdp, limits);
      case EngineChoice::kCones:
        return decide(problem, watched_cones, limits);
      case EngineChoice::kCsdp:
        return decide(problem, watched_csdp, limits);
    }
    return {};
  }

  const Options& options_;
  Outputs& outputs_;
  Clock::time_point begun_ = Clock::now();
  Clock::time_point lap_begun_ = begun_;
  Times times_;
  Source source_;
};

}  // namespace

bool ends_inside_engine() {
  if (g_progress == nullptr) return false;
  g_progress->end();
  return true;
}

ExitStatus run(const Options& options) {
  try {
    Outputs outputs(options);
    return Run(options, outputs).go();
  } catch (const UsageError& error) {
    complain(std::string("sdpsol: ") + error.what() + "\nTry 'sdpsol --help'.\n");
    return kExitUsage;
  } catch (const FileError& error) {
    complain(std::string("sdpsol: ") + error.what() + "\n");
    return kExitFile;
  }
}

}  // namespace sdpsol
