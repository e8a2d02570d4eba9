#include "solver/language/excerpt.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <string_view>

namespace sdpsol {
namespace {

constexpr std::uint32_t kWindowBefore = 60;
constexpr std::uint32_t kWindowAfter = 40;

bool covers(Span span, std::uint32_t offset) {
  return span.begin <= offset && offset < span.end;
}

bool is_continuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

char mark_at(std::uint32_t offset, Span mark, const std::vector<Span>& ranges) {
  if (offset == mark.begin) return '^';
  if (covers(mark, offset)) return '~';
  const bool in_range =
      std::any_of(ranges.begin(), ranges.end(), [&](Span range) { return covers(range, offset); });
  return in_range ? '~' : ' ';
}

}  // namespace

std::size_t printable_length(std::string_view text) {
  if (text.empty()) return 0;
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80U) return first >= 0x20U && first != 0x7FU ? 1 : 0;

  std::size_t length = 0;
  // The second byte is bounded further where the first alone would allow control
  // characters, longer forms of shorter characters, halves of pairs, or too much.
  unsigned lowest = 0x80U;
  unsigned highest = 0xBFU;
  if (first >= 0xC2U && first <= 0xDFU) length = 2;
  if (first >= 0xE0U && first <= 0xEFU) length = 3;
  if (first >= 0xF0U && first <= 0xF4U) length = 4;
  if (first == 0xC2U || first == 0xE0U) lowest = 0xA0U;
  if (first == 0xEDU) highest = 0x9FU;
  if (first == 0xF0U) lowest = 0x90U;
  if (first == 0xF4U) highest = 0x8FU;
  if (length == 0 || text.size() < length) return 0;

  const auto second = static_cast<unsigned char>(text[1]);
  if (second < lowest || second > highest) return 0;
  const std::string_view rest = text.substr(1, length - 1);
  return std::all_of(rest.begin(), rest.end(), is_continuation) ? length : 0;
}

std::string excerpt(const Source& source, Span mark, const std::vector<Span>& ranges) {
  const Place place = source.place(mark.begin);
  const std::string_view line = source.line(place.line);
  const auto line_begin = mark.begin - (place.column - 1);
  const auto line_length = static_cast<std::uint32_t>(line.size());
  const std::uint32_t column = std::min(place.column - 1, line_length);

  std::uint32_t from = column > kWindowBefore ? column - kWindowBefore : 0;
  const std::uint32_t to = std::min(line_length, column + kWindowAfter);
  if (from <= 3) from = 0;
  while (from > 0 && from < to && is_continuation(line[from])) ++from;

  std::string shown = from > 0 ? "..." : "";
  std::string marks(shown.size(), ' ');
  for (std::uint32_t at = from; at < to;) {
    const std::size_t length = printable_length(line.substr(at));
    if (length > 0) {
      shown += line.substr(at, length);
    } else {
      shown += line[at] == '\t' ? ' ' : '?';
    }
    marks += mark_at(line_begin + at, mark, ranges);
    at += static_cast<std::uint32_t>(std::max<std::size_t>(length, 1));
  }
  // A place behind the last character: a missing ";" at the end of the line.
  if (column >= to) marks += '^';
  if (to < line_length) shown += "...";
  marks.erase(marks.find_last_not_of(' ') + 1);

  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "%5u", place.line);
  return std::string(number.data()) + " | " + shown + "\n      | " + marks + "\n";
}

}  // namespace sdpsol
