// A line on the terminal that says how far a batch has come.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace grasp {

/// How far it is. What another run has done does not count for the rate.
struct BatchState {
  std::uint64_t lines = 0;                   ///< that have their result, in this run
  std::uint64_t bytes = 0;                   ///< of the input, that those are
  std::uint64_t lines_before = 0;            ///< that had it before
  std::optional<std::uint64_t> bytes_ahead;  ///< of the input, that this run is to do; if known
};

/// "1234 grasps  56 %  210.3 per second  4:07 left", without anything that moves the
/// cursor. @param width at most as many characters.
std::string batch_progress_line(const BatchState& state, double seconds, std::size_t width);

/// Draws the line about five times a second, if standard error is a terminal; it is
/// gone when the object goes.
class BatchProgress {
 public:
  explicit BatchProgress(bool quiet);
  ~BatchProgress();
  BatchProgress(const BatchProgress&) = delete;
  BatchProgress& operator=(const BatchProgress&) = delete;
  BatchProgress(BatchProgress&&) = delete;
  BatchProgress& operator=(BatchProgress&&) = delete;

  /// To be called at least as often as is_due_in() says.
  void tell(const BatchState& state);

  /// For poll(): milliseconds, -1 if it is never due.
  [[nodiscard]] int is_due_in() const;

 private:
  using Clock = std::chrono::steady_clock;

  bool is_watched_;
  bool is_drawn_ = false;
  Clock::time_point begun_ = Clock::now();
  Clock::time_point next_ = begun_;
};

}  // namespace grasp
