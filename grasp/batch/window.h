// The lines of a batch that are read and not yet written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "grasp/batch/line_answer.h"

namespace grasp {

/// A line on its way.
struct WindowLine {
  std::uint64_t number = 0;
  std::string text;
  std::uint64_t bytes = 0;  ///< that it has in the input
  int crashes = 0;          ///< of workers that had it
  std::optional<LineAnswer> answer;
};

/// Lines come in order, are handed out, get their answers in any order, and leave in
/// order. Bounded, so that one slow line does not make all others wait in memory.
class Window {
 public:
  /// @param most_lines, most_bytes of input: more are not taken in; one line always is.
  Window(std::size_t most_lines, std::uint64_t most_bytes)
      : most_lines_(most_lines), most_bytes_(most_bytes) {}

  [[nodiscard]] bool has_room() const {
    return lines_.empty() || (lines_.size() < most_lines_ && bytes_ < most_bytes_);
  }
  [[nodiscard]] bool is_empty() const { return lines_.empty(); }

  /// @param line numbered one higher than the one before. Waits to be handed out unless
  /// it has its answer.
  void add(WindowLine line);

  /// How many wait to be handed out.
  [[nodiscard]] std::size_t waiting() const { return waiting_.size(); }
  /// The next that waits, which does not any more. @pre waiting() > 0.
  WindowLine& hand_out();
  /// Lets a line wait again, before all others.
  void hand_back(std::uint64_t number) { waiting_.push_front(number); }

  WindowLine& line(std::uint64_t number) { return lines_[number - lines_.front().number]; }
  void answer(std::uint64_t number, LineAnswer answer);

  /// The first line, once it has its answer.
  std::optional<WindowLine> take_answered();

 private:
  std::size_t most_lines_;
  std::uint64_t most_bytes_;
  std::uint64_t bytes_ = 0;
  std::deque<WindowLine> lines_;
  std::deque<std::uint64_t> waiting_;
};

}  // namespace grasp
