#include "solver/language/source.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace sdpsol {

Source::Source(std::string name, std::string text)
    : name_(std::move(name)), text_(std::move(text)) {
  line_starts_.push_back(0);
  for (std::size_t at = text_.find('\n'); at != std::string::npos; at = text_.find('\n', at + 1)) {
    line_starts_.push_back(static_cast<std::uint32_t>(at + 1));
  }
}

Place Source::place(std::uint32_t offset) const {
  const auto after = std::upper_bound(line_starts_.begin(), line_starts_.end(), offset);
  const auto line = static_cast<std::uint32_t>(after - line_starts_.begin());
  return {line, offset - line_starts_[line - 1] + 1};
}

std::string_view Source::line(std::uint32_t line) const {
  if (line < 1 || line > line_starts_.size()) return {};
  const std::size_t begin = line_starts_[line - 1];
  std::string_view rest = std::string_view(text_).substr(begin);
  rest = rest.substr(0, rest.find('\n'));
  if (rest.ends_with('\r')) rest.remove_suffix(1);
  return rest;
}

}  // namespace sdpsol
