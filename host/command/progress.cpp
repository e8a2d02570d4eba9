#include "host/command/progress.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace zelrun {
namespace {

using namespace std::chrono_literals;

void put(const std::string& line) {
  std::fputs(line.c_str(), stderr);
  std::fflush(stderr);
}

}  // namespace

Progress::Progress(std::string what) : what_(std::move(what)) {
  if (isatty(STDERR_FILENO) == 1) thread_ = std::thread(&Progress::count, this);
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
    put("\r" + what_ + "  " + std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) +
        " s ");
  }
  put("\r\033[K");
}

}  // namespace zelrun
