#include "grasp/batch/window.h"

#include <utility>

namespace grasp {

void Window::add(WindowLine line) {
  bytes_ += line.bytes;
  if (!line.answer) waiting_.push_back(line.number);
  lines_.push_back(std::move(line));
}

WindowLine& Window::hand_out() {
  const std::uint64_t number = waiting_.front();
  waiting_.pop_front();
  return line(number);
}

void Window::answer(std::uint64_t number, LineAnswer answer) {
  WindowLine& answered = line(number);
  answered.answer = std::move(answer);
  // It is not needed again.
  answered.text = {};
}

std::optional<WindowLine> Window::take_answered() {
  if (lines_.empty() || !lines_.front().answer) return std::nullopt;
  WindowLine first = std::move(lines_.front());
  lines_.pop_front();
  bytes_ -= first.bytes;
  return first;
}

}  // namespace grasp
