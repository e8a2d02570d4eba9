// Times differ from run to run.
#pragma once

#include <string>
#include <string_view>

namespace test_support {

/// The text with `word` in place of every time like "12.3 ms".
inline std::string without_times(std::string_view text, std::string_view word) {
  constexpr std::string_view kUnit = " ms";
  constexpr std::string_view kDigits = "0123456789.";
  std::string result;
  for (std::size_t unit = text.find(kUnit); unit != std::string_view::npos;
       unit = text.find(kUnit)) {
    const std::size_t before = text.substr(0, unit).find_last_not_of(kDigits);
    const std::size_t number = before == std::string_view::npos ? 0 : before + 1;
    const bool is_time = number < unit;
    result += std::string(text.substr(0, is_time ? number : unit + kUnit.size()));
    if (is_time) result += word;
    text.remove_prefix(unit + kUnit.size());
  }
  return result + std::string(text);
}

}  // namespace test_support
