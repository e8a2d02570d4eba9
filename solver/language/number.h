// Decimal numbers as the language writes them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sdpsol {

/// What scan_number() found at the start of a text.
struct ScannedNumber {
  enum class Status { kNumber, kMalformed, kOverflow };
  Status status = Status::kNumber;
  std::size_t length = 0;  ///< bytes that belong together, also where they are no number
  double value = 0;
};

/// Reads the number at the start of `text`, which begins with a digit or with
/// "." and a digit: digits, point, exponent ("2", "0.5", ".5", "1e-07"). The
/// value is the nearest double; what underflows is 0. Letters or points that
/// touch the number make it malformed ("1.2.3", "1e", "2x").
ScannedNumber scan_number(std::string_view text);

/// A number as messages show it: the shortest text that reads back equal.
std::string number_text(double value);

}  // namespace sdpsol
