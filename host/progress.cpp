#include "host/progress.h"

#include <algorithm>
#include <utility>

#include "host/terminal_line.h"
#include "host/text.h"

namespace zelhost {
namespace {

using namespace std::chrono_literals;

// What runs is cut rather than the time.
std::string line_of(const std::string& what, const std::string& time) {
  constexpr std::string_view kEllipsis = "...";
  const std::size_t columns = terminal_columns();
  if (what.size() + time.size() <= columns) return what + time;
  const std::size_t least = time.size() + kEllipsis.size();
  return on_one_line(what, columns > least ? columns - least : 0) + time;
}

}  // namespace

Progress::Progress(std::string what) : what_(std::move(what)) {
  if (has_terminal()) thread_ = std::thread(&Progress::count, this);
}

Progress::~Progress() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    has_ended_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void Progress::count() {
  std::unique_lock lock(mutex_);
  const auto ended = [this] { return has_ended_; };
  if (ended_.wait_for(lock, 1s, ended)) return;
  while (!ended_.wait_for(lock, 100ms, ended)) {
    const auto tenths = (std::chrono::steady_clock::now() - start_) / 100ms;
    draw_terminal_line(line_of(
        what_, "  " + std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s "));
  }
  clear_terminal_line();
}

}  // namespace zelhost
