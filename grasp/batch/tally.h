// How many grasps had which verdict.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace grasp {

class Tally {
 public:
  /// A line with an answer. @param verdict as it stands in the line.
  void count(std::string_view verdict);
  void count_error() { ++errors_; }

  [[nodiscard]] std::uint64_t errors() const { return errors_; }

  /// "5 grasps: 3 FEASIBLE, 1 INFEASIBLE, 1 line with an error"; a line that holds no
  /// grasp is a grasp here.
  [[nodiscard]] std::string summary() const;

 private:
  // FEASIBLE, INFEASIBLE, and all that is neither.
  std::array<std::uint64_t, 3> verdicts_ = {};
  std::uint64_t errors_ = 0;
};

}  // namespace grasp
