// What a child prints, kept in bounds: the beginning and the end of it.
#pragma once

#include <string>
#include <string_view>

namespace zelcheck {

class CapturedText {
 public:
  void append(std::string_view text);

  /// All of it, or the first and last 1000 bytes with a line between them that
  /// says how much is left out.
  [[nodiscard]] std::string text() const;

 private:
  std::string first_;
  std::string last_;
  std::size_t left_out_ = 0;
};

}  // namespace zelcheck
