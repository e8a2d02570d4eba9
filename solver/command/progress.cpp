// A thread draws the line, because an iteration of a large problem takes longer than
// people wait before they ask themselves whether anything is going on.
#include "solver/command/progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <system_error>

#include "solver/command/words.h"

namespace sdpsol {
namespace {

using namespace std::chrono_literals;

constexpr auto kQuietTime = 1s;
constexpr auto kPace = 100ms;

/// One less than the terminal's columns: a character in the last one may wrap.
std::size_t columns() {
  constexpr std::size_t kUsual = 79;
  struct winsize size {};
  if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col < 2) return kUsual;
  return size.ws_col - std::size_t{1};
}

void put(const std::string& text) {
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
}

}  // namespace

std::string progress_line(const std::optional<EngineStep>& step, bool minimized, double seconds,
                          std::size_t width) {
  std::string line = "iteration " + std::to_string(step ? step->iteration : 0);
  if (step) {
    const double sign = minimized && !step->is_margin ? -1 : 1;
    line += (step->is_margin ? "  margin " : "  objective ") + rounded(sign * step->value, 6) +
            "  gap " + rounded(step->gap, 2);
  }
  const auto tenths = static_cast<long long>(seconds * 10);
  line += "  " + std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
  if (line.size() > width) line.resize(width);
  return line;
}

Progress::Progress(std::chrono::steady_clock::time_point begun, bool minimized, bool quiet)
    : begun_(begun), minimized_(minimized) {
  if (quiet || ::isatty(STDERR_FILENO) != 1) return;
  try {
    thread_ = std::thread(&Progress::draw, this);
  } catch (const std::system_error&) {
    // Without room for a thread there may still be enough for the problem.
  }
}

Progress::~Progress() {
  end();
}

void Progress::tell(const EngineStep& step) {
  const std::lock_guard lock(mutex_);
  step_ = step;
}

void Progress::end() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    has_ended_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void Progress::draw() {
  std::unique_lock lock(mutex_);
  const auto ended = [this] { return has_ended_; };
  if (ended_.wait_until(lock, begun_ + kQuietTime, ended)) return;
  do {
    const std::chrono::duration<double> past = std::chrono::steady_clock::now() - begun_;
    put("\r" + progress_line(step_, minimized_, past.count(), columns()) + "\033[K");
  } while (!ended_.wait_for(lock, kPace, ended));
  put("\r\033[K");
}

}  // namespace sdpsol
