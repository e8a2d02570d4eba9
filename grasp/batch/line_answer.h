// What a batch makes of a line.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "grasp/process/printed_text.h"

namespace grasp {

struct LineAnswer {
  /// As the line has it; empty if the line is an error.
  std::string verdict;
  /// A line of the result, without its line break: one JSON object that begins with
  /// "line", its number.
  std::string text;

  friend bool operator==(const LineAnswer&, const LineAnswer&) = default;
};

/// @param number of the line. @param text without its line break.
using AnswerLine = std::function<LineAnswer(std::uint64_t number, const std::string& text)>;

/// Runs in each worker, in a folder of its own. What it throws ends the batch.
/// @param printed what the worker has printed for the line at hand.
using MakeAnswerLine = std::function<AnswerLine(const PrintedText& printed)>;

/// A line that has no answer: {"line": 7, "name": "pinch", "error": "WHY"}.
/// @param name left out if it is empty.
LineAnswer error_line(std::uint64_t number, std::string_view name, std::string_view why);

}  // namespace grasp
