// A line on the terminal that says how far a long run has come.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "solver/engine/watched_engine.h"

namespace sdpsol {

/// The line, without anything that moves the cursor.
/// @param step nothing before the engine's first.
/// @param minimized the objective is told as its author wrote it.
/// @param width at most as many characters.
std::string progress_line(const std::optional<EngineStep>& step, bool minimized, double seconds,
                          std::size_t width);

/// While it lives, and after the first second, the line stands on the terminal and is
/// drawn again ten times a second; it is gone afterwards, so that messages find an
/// empty line. Does nothing where standard error is no terminal.
class Progress {
 public:
  /// @param begun since when the seconds are counted.
  /// @param quiet nothing is ever drawn.
  Progress(std::chrono::steady_clock::time_point begun, bool minimized, bool quiet);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  Progress(Progress&&) = delete;
  Progress& operator=(Progress&&) = delete;

  /// False where nobody would see it: there is no need to tell of steps.
  bool is_watched() const { return thread_.joinable(); }
  void tell(const EngineStep& step);
  /// Removes the line; it does not come again. Called twice, does nothing.
  void end();

 private:
  void draw();

  std::chrono::steady_clock::time_point begun_;
  bool minimized_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool has_ended_ = false;
  std::optional<EngineStep> step_;
  std::thread thread_;
};

}  // namespace sdpsol
