#include "host/text.h"

#include <algorithm>

namespace zelhost {
namespace {

constexpr unsigned byte_at(std::string_view text, std::size_t i) {
  return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
}

constexpr bool is_between(unsigned byte, unsigned first, unsigned last) {
  return first <= byte && byte <= last;
}

// How many bytes the first character of the text has, which is not empty; 0 if they are
// no UTF-8.
std::size_t first_character(std::string_view text) {
  const unsigned first = byte_at(text, 0);
  if (first < 0x80) return 1;
  if (!is_between(first, 0xC2, 0xF4)) return 0;
  // Neither longer than need be, nor a surrogate, nor beyond the last character.
  const unsigned lowest = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const unsigned highest = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  if (!is_between(byte_at(text, 1), lowest, highest)) return 0;
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  for (std::size_t i = 2; i < length; ++i)
    if (!is_between(byte_at(text, i), 0x80, 0xBF)) return 0;
  return length;
}

bool is_control(std::string_view character) {
  const unsigned first = byte_at(character, 0);
  return first < 0x20 || first == 0x7F || (first == 0xC2 && byte_at(character, 1) < 0xA0);
}

}  // namespace

std::string readable(std::string_view help) {
  std::string lines;
  while (!help.empty()) {
    const std::size_t end = help.find("%n");
    const std::string_view line = trimmed(help.substr(0, end));
    if (!line.empty()) {
      if (!lines.empty()) lines += '\n';
      lines += line;
    }
    help = end == std::string_view::npos ? std::string_view() : help.substr(end + 2);
  }
  return lines;
}

std::string on_one_line(std::string_view text, std::size_t longest) {
  std::string line;
  while (!text.empty()) {
    const std::size_t length = first_character(text);
    const std::string_view character = text.substr(0, length);
    if (line.size() + std::max<std::size_t>(length, 1) > longest) return line + "...";
    if (length == 0)
      line += '?';
    else if (is_control(character))
      line += character == "\n" ? ' ' : '?';
    else
      line += character;
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return line;
}

}  // namespace zelhost
