// Which bytes make names, numbers and blanks, and which letters are the same. ASCII
// only and the same under every locale, which <cctype> is not; and a table, because
// every byte of a text is asked.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace sdpsol {

namespace characters {

inline constexpr std::uint8_t kDigit = 1;
inline constexpr std::uint8_t kNameStart = 2;
inline constexpr std::uint8_t kBlank = 4;

constexpr std::array<std::uint8_t, 256> classify() {
  std::array<std::uint8_t, 256> classes{};
  for (std::size_t c = '0'; c <= '9'; ++c) classes[c] = kDigit;
  for (std::size_t c = 'a'; c <= 'z'; ++c) classes[c] = kNameStart;
  for (std::size_t c = 'A'; c <= 'Z'; ++c) classes[c] = kNameStart;
  classes['_'] = kNameStart;
  for (const char c : {' ', '\n', '\t', '\r', '\f', '\v'}) {
    classes[static_cast<unsigned char>(c)] = kBlank;
  }
  return classes;
}

inline constexpr std::array<std::uint8_t, 256> kClasses = classify();

constexpr bool is(char byte, unsigned classes) {
  return (kClasses[static_cast<unsigned char>(byte)] & classes) != 0;
}

}  // namespace characters

constexpr bool is_digit(char byte) {
  return characters::is(byte, characters::kDigit);
}
constexpr bool is_name_start(char byte) {
  return characters::is(byte, characters::kNameStart);
}
constexpr bool is_name_character(char byte) {
  return characters::is(byte, characters::kNameStart | characters::kDigit);
}
constexpr bool is_blank(char byte) {
  return characters::is(byte, characters::kBlank);
}

/// What some editors put in front of a text, to no effect.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr char lower(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

/// Whether two words differ in nothing but upper and lower case.
constexpr bool equal_but_for_case(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace sdpsol
