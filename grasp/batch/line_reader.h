// Lines of a file that need not fit into memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace grasp {

struct InputLine {
  /// Without its line break, which may be CR LF.
  std::string text;
  /// In the file, with the line break.
  std::uint64_t bytes = 0;
  /// It is longer than the reader takes; text is empty.
  bool too_long = false;

  friend bool operator==(const InputLine&, const InputLine&) = default;
};

/// Reads as much as is asked for and a buffer more.
class LineReader {
 public:
  /// @param descriptor stays the caller's. @param longest of a line, in bytes.
  /// @param name of the file, for errors.
  LineReader(int descriptor, std::size_t longest, std::string name);

  /// A line of what has been read; what stands behind the last line break is one at
  /// the end of the file.
  std::optional<InputLine> next();

  /// Reads once, waiting if need be. To be called when next() has none and is_at_end()
  /// is false. @throws std::system_error.
  void read_more();

  /// Whether the file is read to its end; next() may still have lines.
  [[nodiscard]] bool is_at_end() const { return is_at_end_; }

 private:
  InputLine finish_line();

  int descriptor_;
  std::size_t longest_;
  std::string name_;
  std::string buffer_;
  std::size_t begin_ = 0;
  // The line that has begun.
  InputLine line_;
  bool is_at_end_ = false;
};

}  // namespace grasp
