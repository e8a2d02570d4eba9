#include "grasp/picture/drawable_text.h"

#include <array>
#include <cstddef>

namespace grasp::picture {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kEllipsis = 0x2026;

/// In hundredths of the font's size, from ' ' to '~'.
constexpr std::array<unsigned char, 95> kWidths = {
    35,  41, 46, 84, 64, 95, 80, 32,  40, 40, 50, 84, 32, 37, 32, 35,  // ' ' .. '/'
    64,  64, 64, 64, 64, 64, 64, 64,  64, 64, 35, 35, 84, 84, 84, 56,  // '0' .. '?'
    102, 70, 70, 73, 78, 67, 61, 79,  76, 35, 35, 70, 60, 87, 76, 80,  // '@' .. 'O'
    67,  80, 72, 67, 64, 74, 70, 100, 70, 70, 70, 40, 35, 40, 84, 57,  // 'P' .. '_'
    50,  62, 64, 57, 64, 62, 38, 64,  64, 29, 29, 60, 29, 98, 64, 62,  // '`' .. 'o'
    64,  64, 43, 54, 41, 64, 60, 83,  60, 60, 54, 64, 35, 64, 84};     // 'p' .. '~'

static_assert(kWidths.back() == 84, "one width for each character");

double width_of(char32_t character) {
  if (character >= U' ' && character <= U'~') return kWidths[character - U' '] / 100.0;
  // From Hangul on characters may fill a square; so do the signs of what was no character.
  if (character >= 0x1100 && (character < 0x2000 || character > 0x2027)) return 1.05;
  return character == kEllipsis || character == 0x2014 ? 1.05 : 0.8;
}

bool moves_its_surroundings(char32_t c) {
  return (c >= 0x200B && c <= 0x200F) || (c >= 0x2028 && c <= 0x202E) ||
         (c >= 0x2060 && c <= 0x206F) || c == 0x061C || c == 0xFEFF;
}

bool is_drawable(char32_t c) {
  if (c < 0x20 || (c >= 0x7F && c < 0xA0)) return false;
  if (c >= 0xD800 && c < 0xE000) return false;
  if (c > 0x10FFFF || (c & 0xFFFE) == 0xFFFE) return false;
  return !moves_its_surroundings(c);
}

/// One character, and at behind it; a byte that begins none is one replacement.
char32_t decode(std::string_view utf8, std::size_t& at) {
  const auto lead = static_cast<unsigned char>(utf8[at++]);
  if (lead < 0x80) return lead;
  const std::size_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4 || at + more > utf8.size()) return kReplacement;
  char32_t character = lead & (0x3FU >> more);
  for (std::size_t k = 0; k < more; ++k) {
    const auto next = static_cast<unsigned char>(utf8[at + k]);
    if ((next & 0xC0U) != 0x80) return kReplacement;
    character = (character << 6U) | (next & 0x3FU);
  }
  constexpr std::array<char32_t, 4> kSmallest = {0, 0x80, 0x800, 0x10000};
  if (character < kSmallest[more]) return kReplacement;
  at += more;
  return character;
}

void append_utf8(std::string& to, char32_t c) {
  const auto tail = [&](unsigned shift) {
    to += static_cast<char>(0x80U | ((c >> shift) & 0x3FU));
  };
  if (c < 0x80) {
    to += static_cast<char>(c);
  } else if (c < 0x800) {
    to += static_cast<char>(0xC0U | (c >> 6U));
    tail(0);
  } else if (c < 0x10000) {
    to += static_cast<char>(0xE0U | (c >> 12U));
    tail(6);
    tail(0);
  } else {
    to += static_cast<char>(0xF0U | (c >> 18U));
    tail(12);
    tail(6);
    tail(0);
  }
}

/// How many characters from the position at on are not wider than width; at least 1.
std::size_t fitting(const std::u32string& text, std::size_t at, double width) {
  double used = 0;
  std::size_t count = 0;
  while (at + count < text.size()) {
    used += width_of(text[at + count]);
    if (used > width && count > 0) break;
    ++count;
  }
  return count;
}

}  // namespace

std::u32string drawable(std::string_view utf8) {
  std::u32string text;
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t c = decode(utf8, at);
    const bool blank = c == U'\t' || c == U'\n' || c == U'\r';
    text += blank ? U' ' : is_drawable(c) ? c : kReplacement;
  }
  return text;
}

std::string xml_text(const std::u32string& text) {
  std::string xml;
  for (const char32_t c : text) {
    switch (c) {
      case U'&':
        xml += "&amp;";
        break;
      case U'<':
        xml += "&lt;";
        break;
      case U'>':
        xml += "&gt;";
        break;
      case U'"':
        xml += "&quot;";
        break;
      default:
        append_utf8(xml, c);
    }
  }
  return xml;
}

double text_width(const std::u32string& text, bool bold) {
  double width = 0;
  for (const char32_t c : text) width += width_of(c);
  return bold ? width * 1.13 : width;
}

std::u32string cut(const std::u32string& text, double width, bool bold) {
  if (text_width(text, bold) <= width) return text;
  std::u32string kept;
  for (const char32_t c : text) {
    if (text_width(kept + c + kEllipsis, bold) > width) break;
    kept += c;
  }
  return kept + kEllipsis;
}

std::vector<std::u32string> wrap(const std::u32string& text, double width, std::size_t most) {
  std::vector<std::u32string> lines;
  std::size_t at = 0;
  while (at < text.size()) {
    if (text[at] == U' ') {
      ++at;
      continue;
    }
    if (lines.size() + 1 == most) {
      lines.push_back(cut(text.substr(at), width, false));
      break;
    }
    std::size_t count = fitting(text, at, width);
    if (at + count < text.size()) {
      const std::size_t blank = text.rfind(U' ', at + count);
      if (blank != std::u32string::npos && blank > at) count = blank - at;
    }
    lines.push_back(text.substr(at, count));
    at += count;
  }
  return lines;
}

}  // namespace grasp::picture
