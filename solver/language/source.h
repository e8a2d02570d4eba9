// The text of a definition and places in it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sdpsol {

/// Bytes [begin, end) of the source text.
struct Span {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
  friend bool operator==(const Span&, const Span&) = default;
};

/// A place as people count it: line and column from 1, the column in bytes.
struct Place {
  std::uint32_t line = 1;
  std::uint32_t column = 1;
  friend bool operator==(const Place&, const Place&) = default;
};

/// A named text whose lines can be found again. Owns the text.
class Source {
 public:
  Source(std::string name, std::string text);

  const std::string& name() const { return name_; }
  std::string_view text() const { return text_; }
  Place place(std::uint32_t offset) const;
  /// Line `line` (from 1) without its line break.
  std::string_view line(std::uint32_t line) const;

 private:
  std::string name_;
  std::string text_;
  std::vector<std::uint32_t> line_starts_;
};

}  // namespace sdpsol
