#include "solver/exchange/sdpa_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <vector>

namespace sdpsol {
namespace {

/// An entry as the file counts it: from 1, and matrix 0 is F_0.
struct Entry {
  std::int32_t matrix = 0;
  std::int32_t block = 0;
  std::int32_t row = 0;
  std::int32_t column = 0;
  double value = 0;
};

auto key(const Entry& entry) {
  return std::tuple(entry.matrix, entry.block, entry.row, entry.column);
}

class Layout {
 public:
  explicit Layout(const ConeProgram& program) {
    for (const auto& cone : program.cones) {
      if (cone.size > 1) add_block(cone);
    }
    for (const auto& cone : program.cones) {
      if (cone.size == 1) add_row(cone, 1);
    }
    for (const auto& equation : program.equations) {
      add_row(equation, 1);
      add_row(equation, -1);
    }
    if (rows_ > 0 || sizes_.empty()) sizes_.push_back(-std::max(rows_, 1));
    collect();
  }

  const std::vector<std::int32_t>& sizes() const { return sizes_; }
  const std::vector<Entry>& entries() const { return entries_; }

 private:
  void add_block(const ConeProgram::Cone& cone) {
    sizes_.push_back(cone.size);
    for (const auto& c : cone.coefficients) add(c, 1, c.row + 1, c.column + 1);
  }

  void add_row(const ConeProgram::Cone& row, double sign) {
    if (rows_ == 0) row_block_ = static_cast<std::int32_t>(sizes_.size()) + 1;
    ++rows_;
    for (const auto& c : row.coefficients) add(c, sign, rows_, rows_);
  }

  void add(const ConeProgram::Coefficient& c, double sign, std::int32_t row, std::int32_t column) {
    const bool constant = c.unknown == ConeProgram::kConstantTerm;
    const std::int32_t block = rows_ > 0 ? row_block_ : static_cast<std::int32_t>(sizes_.size());
    entries_.push_back({constant ? 0 : c.unknown + 1, block, row, column,
                        constant ? -sign * c.value : sign * c.value});
  }

  // The format knows no entry twice, and 0 is what it takes for granted.
  void collect() {
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const Entry& a, const Entry& b) { return key(a) < key(b); });
    std::size_t kept = 0;
    for (const Entry& entry : entries_) {
      if (kept > 0 && key(entries_[kept - 1]) == key(entry)) {
        entries_[kept - 1].value += entry.value;
      } else {
        entries_[kept++] = entry;
      }
    }
    entries_.resize(kept);
    std::erase_if(entries_, [](const Entry& entry) { return entry.value == 0; });
  }

  std::vector<std::int32_t> sizes_;
  std::vector<Entry> entries_;
  std::int32_t row_block_ = 0;
  std::int32_t rows_ = 0;
};

template <typename Number>
void append(std::string& text, Number number, char behind) {
  std::array<char, 32> digits{};
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  text.append(digits.data(), written.ptr);
  text += behind;
}

/// Every line, whatever ends it, behind a mark of its own; control characters are
/// blanks, for programs that end a line or a text at one of them.
void append_comment(std::string& text, std::string_view comment) {
  while (!comment.empty()) {
    const std::size_t length = std::min(comment.find_first_of("\r\n"), comment.size());
    text += '"';
    for (const char byte : comment.substr(0, length)) {
      const auto code = static_cast<unsigned char>(byte);
      text += code < 0x20U || code == 0x7FU ? ' ' : byte;
    }
    text += '\n';
    const bool pair = comment.substr(length).starts_with("\r\n");
    comment.remove_prefix(std::min(length + (pair ? 2 : 1), comment.size()));
  }
}

}  // namespace

std::string sdpa_text(const ConeProgram& program, const std::string& comment) {
  const Layout layout(program);
  std::string text;
  append_comment(text, comment);
  append(text, program.unknowns, '\n');
  append(text, layout.sizes().size(), '\n');
  for (const std::int32_t size : layout.sizes()) append(text, size, ' ');
  text.back() = '\n';
  // On one line: not every program looks for the rest on the next.
  for (const double value : program.objective) append(text, value == 0 ? 0.0 : -value, ' ');
  if (program.objective.empty()) text += ' ';
  text.back() = '\n';
  for (const Entry& entry : layout.entries()) {
    append(text, entry.matrix, ' ');
    append(text, entry.block, ' ');
    append(text, entry.row, ' ');
    append(text, entry.column, ' ');
    append(text, entry.value, '\n');
  }
  return text;
}

}  // namespace sdpsol
