// Work against its floor: how many times the least that the work could cost.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

namespace bench {

/// Time that passes: for work that other processes do.
inline double wall_seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Time of this thread only: what else the machine does would hit the longer
/// piece of work harder than its floor.
inline double thread_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// @param times at least one.
inline double median(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

/// Work and floor take turns, so that a machine that slows down slows both.
/// Counters: ratio = median of the work / median of the floor, the floor's median
/// and what the work takes beyond it, in seconds. The benchmark must use manual
/// time, which is the work's.
/// @param clock one of those above.
/// @param prepare runs before each next round, outside of all times.
template <class Work, class Floor, class Prepare>
void compare(benchmark::State& state, double (*clock)(), const Work& work, const Floor& floor,
             const Prepare& prepare) {
  const auto seconds = [clock](const auto& call) {
    const double start = clock();
    call();
    return clock() - start;
  };
  std::vector<double> work_times;
  std::vector<double> floor_times;
  for ([[maybe_unused]] auto iteration : state) {
    work_times.push_back(seconds(work));
    floor_times.push_back(seconds(floor));
    state.SetIterationTime(work_times.back());
    prepare();
  }
  state.counters["ratio"] = median(work_times) / median(floor_times);
  state.counters["floor"] = median(floor_times);
  state.counters["beyond"] = median(work_times) - median(floor_times);
}

template <class Work, class Floor>
void compare(benchmark::State& state, double (*clock)(), const Work& work, const Floor& floor) {
  compare(state, clock, work, floor, [] {});
}

}  // namespace bench
