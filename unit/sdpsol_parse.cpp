// Parsing of a result text, by position arithmetic around a few markers:
//
//   *** Objective value
//   objective = 3.25          or the line NO OBJECTIVE.
//   ...
//   *** Variables
//   x = 2.5
//
//   X =
//   [
//     1,
//     2,
//   ]
//
//
// Positions are unsigned 32-bit numbers and wrap around: a search without a
// find gives 2^32-1, from where the next step lands at the front of the text.
// That is how a scan ends ("behind its start, so stop"), and also how a text
// without the expected markers can send it round in a circle. A position
// decides everything that follows, so a scan that comes back to one it has been
// at never ends; exactly this is noticed, and nothing is guessed.
//
// Each scan moves forward except where it wraps, and it can wrap to three
// places only, so the whole is linear although every search may miss.
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "unit/sdpsol_result.h"
#include "unit/sdpsol_text.h"
#include "unit/sdpsol_wrapper.h"

using sdpsol_internal::append;
using sdpsol_internal::read_number;

namespace {

using Position = std::uint32_t;
constexpr std::size_t kNowhere = std::string::npos;

Position wrapped(std::size_t position) {
  return static_cast<Position>(position);
}

// The start of the line after the first `marker`; the start of the text when
// there is no such line.
std::size_t line_after(const std::string& text, std::string_view marker) {
  return text.find('\n', text.find(marker)) + 1;
}

// std::string's own error when `start` lies behind the end, without its copy otherwise.
std::string_view piece(const std::string& text, std::size_t start, std::size_t length) {
  if (start > text.size()) static_cast<void>(text.substr(start, length));
  return std::string_view(text).substr(start, length);
}

bool read_feasible(const std::string& text) {
  return text.find("INFEASIBLE") == kNowhere &&
         text.find("FEASIBILITY CANNOT BE DETERMINED") == kNowhere;
}

void read_objective(const std::string& text, double& value) {
  const std::size_t line = line_after(text, "*** Objective value");
  const std::size_t newline = text.find('\n', line);
  const std::size_t length = newline == kNowhere ? kNowhere : newline - line;
  if (piece(text, line, length) == "NO OBJECTIVE.") return;
  value = read_number(piece(text, text.find(" = ", line) + 3, length));
}

class VariableScan {
 public:
  VariableScan(const std::string& text, sdpsol_wrapper::result& into) : text_(text), into_(into) {}

  // False when the text would keep it busy for ever.
  bool run() {
    const Position front = wrapped(line_after(text_, "Variable"));
    std::vector<bool> been(text_.size());
    for (Position at = front; Position{at + 4} < text_.size() && at >= front;) {
      if (been[at]) return false;
      been[at] = true;
      if (!entry(at)) return false;
    }
    return true;
  }

 private:
  Position find(char what, Position from) const { return wrapped(text_.find(what, from)); }

  double number(Position from, Position to) const {
    return read_number(piece(text_, from, Position{to - from}));
  }

  void append_entry(double value, std::string name) {
    into_.variableValues.push_back(value);
    into_.variableNames.push_back(std::move(name));
    ++into_.valueCount;
  }

  // Reads the entry at `at` and moves `at` on to where the next one starts.
  bool entry(Position& at) {
    const Position equals = find('=', at);
    const std::string_view name = piece(text_, at, Position{equals - 1 - at});
    if (ends_line(equals)) return matrix(name, equals, at);
    const Position newline = find('\n', equals + 2);
    append_entry(number(equals + 2, newline), std::string(name));
    at = newline + 2;
    return true;
  }

  // Is the first newline at or after the character before "=" the one right
  // after it? Without a "=", or with one that opens the text, there is no
  // character before it to start from.
  bool ends_line(Position equals) const {
    const Position before = equals - 1;
    return before < text_.size() && text_[before] != '\n' &&
           std::size_t{equals} + 1 < text_.size() && text_[equals + 1] == '\n';
  }

  bool matrix(std::string_view name, Position equals, Position& at) {
    Position start = equals + 6;
    Position comma = find(',', start);
    bool started_over = false;
    // The first "]" at or after any position of [searched_from, bracket].
    std::size_t searched_from = kNowhere;
    std::size_t bracket = 0;
    for (std::uint32_t k = 0;; ++k) {
      const double value = number(start, comma);
      std::string element(name);
      append(element, "_", k);
      append_entry(value, std::move(element));

      // Kept, because "]" may be far from every comma.
      if (comma < searched_from || comma > bracket) {
        searched_from = comma;
        bracket = text_.find(']', comma);
      }
      // Nowhere + 5 is small and must stay so: without a comma the matrix goes on.
      const std::size_t last = text_.find(',', comma);
      if (last + 5 >= bracket) {
        at = wrapped(bracket + 3);
        return true;
      }
      // Commas come one after the other until none is left, and then once more
      // from the front of the text. Out of commas twice is the circle.
      if (last == kNowhere && std::exchange(started_over, true)) return false;
      start = comma + 4;
      comma = find(',', start);
    }
  }

  const std::string& text_;
  sdpsol_wrapper::result& into_;
};

}  // namespace

int sdpsol_wrapper::parseResult() {
  sdpsol_internal::reset(lastResult);
  lastResult.feasible = read_feasible(resultText);
  read_objective(resultText, lastResult.objectiveValue);
  return VariableScan(resultText, lastResult).run() ? 0 : 1;
}
