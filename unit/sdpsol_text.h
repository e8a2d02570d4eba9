// Writing and reading numbers, and speaking to standard output: what every
// text of the driver is made of. Streams would follow the process's global
// locale, which belongs to the host and may carry decimal commas or digit
// grouping, so no text goes through one.
#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

namespace sdpsol_internal {

/// As a stream's default formatting in the classic locale: up to six
/// significant digits, "inf", "-nan".
void append_piece(std::string& text, double number);

inline void append_piece(std::string& text, std::string_view piece) {
  text.append(piece);
}

/// In plain decimal.
template <std::integral Integer>
requires(!std::same_as<Integer, bool> &&
         !std::same_as<Integer, char>) void append_piece(std::string& text, Integer number) {
  std::array<char, 24> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text.append(digits.data(), end);
}

/// Appends texts, integers and doubles one after the other.
template <class... Pieces>
void append(std::string& text, const Pieces&... pieces) {
  (append_piece(text, pieces), ...);
}

/// The number at the front of `piece`, exactly as the formatted extraction of a
/// double from a stream in the classic locale leaves it in a variable that was
/// 0: leading white space is skipped, what follows the number is ignored, an
/// unreadable text ("", "1e", "inf") gives 0, an overflow the largest double.
/// Cost: the white space and the number, not the piece.
double read_number(std::string_view piece);

/// Writes `text` to standard output and flushes it, so that it stands before
/// whatever a command started afterwards writes there.
void say(std::string_view text);

}  // namespace sdpsol_internal
