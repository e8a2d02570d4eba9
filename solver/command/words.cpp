#include "solver/command/words.h"

#include <array>
#include <charconv>

namespace sdpsol {

std::string shortest(double value) {
  if (value == 0) return "0";
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end};
}

std::string rounded(double value, int digits) {
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                          std::chars_format::general, digits);
  return {buffer.data(), end};
}

std::string count_text(std::size_t number, const char* one, const char* many) {
  return std::to_string(number) + " " + (number == 1 ? one : many);
}

}  // namespace sdpsol
