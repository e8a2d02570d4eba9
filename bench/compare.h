// Work against its floor: how many times the least that the work could cost.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace bench {

/// Seconds that one call takes.
template <class Work>
double seconds(const Work& work) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// @param times at least one.
inline double median(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

/// Work and floor take turns, so that a machine that slows down slows both.
/// Counters: ratio = median of the work / median of the floor, and the floor's
/// median in seconds. The benchmark must use manual time, which is the work's.
template <class Work, class Floor>
void compare(benchmark::State& state, const Work& work, const Floor& floor) {
  std::vector<double> work_times;
  std::vector<double> floor_times;
  for ([[maybe_unused]] auto iteration : state) {
    work_times.push_back(seconds(work));
    floor_times.push_back(seconds(floor));
    state.SetIterationTime(work_times.back());
  }
  state.counters["ratio"] = median(work_times) / median(floor_times);
  state.counters["floor"] = median(floor_times);
}

}  // namespace bench
