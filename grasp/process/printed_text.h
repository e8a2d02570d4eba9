// What a worker prints, and whatever it starts.
#pragma once

#include <string>

namespace grasp {

/// Writes out what this process still holds back of its standard streams, before another
/// process shares them or they are looked at.
void flush_all();

/// In a worker standard output and standard error are one file, which is emptied after
/// each answer: so it never grows, and what stands in it belongs to one request.
class PrintedText {
 public:
  /// @param descriptor of the file, open for reading and appending; it stays the caller's.
  explicit PrintedText(int descriptor) : descriptor_(descriptor) {}

  /// What stands there now; of a long text the first ten thousand bytes.
  [[nodiscard]] std::string text() const;

  void clear() const;

 private:
  int descriptor_;
};

/// An error with what was printed on the way to it: "WHAT (printed: TEXT)".
std::string with_printed(const std::string& what, const std::string& printed);

}  // namespace grasp
