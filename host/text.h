// Small pieces of reading text, independent of the process's locale.
#pragma once

#include <string>
#include <string_view>

namespace zelhost {

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// Without blanks, tabs and line breaks at both ends.
constexpr std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// A help text for people: "%n" becomes a line break, blanks around it go.
std::string readable(std::string_view help);

/// The text on one line, and without what would do something to a terminal: line
/// breaks become blanks, other control characters and what is no UTF-8 become "?".
/// @param longest how many bytes it may have; "..." stands for the rest.
std::string on_one_line(std::string_view text, std::size_t longest = 10'000);

}  // namespace zelhost
