#include "unit/sdpsol_text.h"

#include <iostream>
#include <locale>
#include <sstream>
#include <system_error>

namespace sdpsol_internal {
namespace {

constexpr std::string_view kSpace = " \t\n\v\f\r";

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// Takes what the fast way cannot answer: exponents without digits, overflow and
// underflow, texts without a number. Asking the stream itself is the one
// definition of what these give.
double read_by_stream(std::string_view piece) {
  const std::string_view token = piece.substr(0, piece.find_first_not_of("+-0123456789.eE"));
  std::istringstream stream{std::string(token)};
  stream.imbue(std::locale::classic());
  double number = 0.0;
  stream >> number;
  return number;
}

}  // namespace

void append_piece(std::string& text, double number) {
  std::array<char, 32> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                 std::chars_format::general, 6)
                       .ptr;
  text.append(digits.data(), end);
}

double read_number(std::string_view piece) {
  const std::size_t start = piece.find_first_not_of(kSpace);
  if (start == std::string_view::npos) return 0.0;
  piece.remove_prefix(start);

  const char* first = piece.data();
  const char* const last = first + piece.size();
  // from_chars knows no "+".
  if (*first == '+') ++first;
  const char* const mantissa = (*piece.data() == '-') ? first + 1 : first;
  // It also knows letters ("inf"), which are no number here.
  if (mantissa == last || !(is_digit(*mantissa) || *mantissa == '.')) return 0.0;

  double number = 0.0;
  const auto [end, error] = std::from_chars(first, last, number);
  // "1e" is 1 with a rest for from_chars, but no number for a stream, which has
  // taken the "e" before it notices.
  const bool dangling_exponent = end != last && (*end == 'e' || *end == 'E');
  if (error != std::errc() || dangling_exponent) return read_by_stream(piece);
  return number;
}

void say(std::string_view text) {
  std::cout.write(text.data(), static_cast<std::streamsize>(text.size()));
  std::cout.flush();
}

}  // namespace sdpsol_internal
