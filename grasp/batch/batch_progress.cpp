#include "grasp/batch/batch_progress.h"

#include <algorithm>
#include <cmath>

#include "host/terminal_line.h"

namespace grasp {
namespace {

using namespace std::chrono_literals;

constexpr auto kPace = 200ms;

std::string two_digits(std::int64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

// "4:07", "2:04:07".
std::string clock_time(double seconds) {
  const std::int64_t whole = std::llround(seconds);
  const std::string minutes_behind = ":" + two_digits(whole % 60);
  const std::int64_t minutes = whole / 60;
  if (minutes < 60) return std::to_string(minutes) + minutes_behind;
  return std::to_string(minutes / 60) + ":" + two_digits(minutes % 60) + minutes_behind;
}

}  // namespace

std::string batch_progress_line(const BatchState& state, double seconds, std::size_t width) {
  std::string line = std::to_string(state.lines_before + state.lines) + " grasps";
  const double share = state.bytes_ahead && *state.bytes_ahead > 0
                           ? std::min(1.0, static_cast<double>(state.bytes) /
                                               static_cast<double>(*state.bytes_ahead))
                           : 0;
  if (state.bytes_ahead) line += "  " + std::to_string(static_cast<int>(100 * share)) + " %";
  if (seconds > 0) {
    const std::int64_t tenths = std::llround(10 * static_cast<double>(state.lines) / seconds);
    line += "  " + std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " per second";
  }
  if (share > 0) line += "  " + clock_time(seconds * (1 - share) / share) + " left";
  if (line.size() > width) line.resize(width);
  return line;
}

BatchProgress::BatchProgress(bool quiet) : is_watched_(!quiet && zelhost::has_terminal()) {}

BatchProgress::~BatchProgress() {
  if (is_drawn_) zelhost::clear_terminal_line();
}

void BatchProgress::tell(const BatchState& state) {
  const Clock::time_point now = Clock::now();
  if (!is_watched_ || now < next_) return;
  next_ = now + kPace;
  is_drawn_ = true;
  const std::chrono::duration<double> past = now - begun_;
  zelhost::draw_terminal_line(
      batch_progress_line(state, past.count(), zelhost::terminal_columns()));
}

int BatchProgress::is_due_in() const {
  if (!is_watched_) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(next_ - Clock::now());
  return static_cast<int>(std::max(left, 0ms).count());
}

}  // namespace grasp
