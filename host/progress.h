// A line on the terminal that says what is running, and for how long.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace zelhost {

/// While it lives, and after the first second, a line on the terminal counts the
/// seconds; it is gone afterwards. Does nothing where standard error is no terminal.
class Progress {
 public:
  /// @param what on one line; as much of it is shown as the terminal has room for.
  explicit Progress(std::string what);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  Progress(Progress&&) = delete;
  Progress& operator=(Progress&&) = delete;

 private:
  void count();

  std::string what_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::mutex mutex_;
  std::condition_variable ended_;
  bool has_ended_ = false;
  std::thread thread_;
};

}  // namespace zelhost
