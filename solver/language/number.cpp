#include "solver/language/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <system_error>

#include "solver/language/characters.h"

namespace sdpsol {
namespace {

// from_chars reports overflow and underflow alike. The two lie hundreds of
// orders of magnitude apart, so the position of the first nonzero digit tells.
bool is_below_one(std::string_view number) {
  const std::size_t exponent_mark = std::min(number.find_first_of("eE"), number.size());
  const std::string_view digits = number.substr(0, exponent_mark);
  const std::size_t first = digits.find_first_not_of("0.");
  if (first == std::string_view::npos) return true;
  const std::size_t point = std::min(digits.find('.'), digits.size());

  std::string_view exponent = number.substr(exponent_mark);
  exponent.remove_prefix(std::min<std::size_t>(exponent.size(), 1));
  if (exponent.starts_with('+')) exponent.remove_prefix(1);
  std::int64_t power = 0;
  const auto read = std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
  if (read.ec == std::errc::result_out_of_range) return exponent.starts_with('-');
  return static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) + power <= 0;
}

// Most numbers are short and have no exponent. Up to 15 digits are exact as a
// double, and so is the power of ten beneath them: one division, correctly rounded.
// Returns false for every other number.
bool scan_short(std::string_view text, ScannedNumber& result) {
  constexpr std::array<double, 16> kPowers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const char* at = text.data();
  const char* const end = at + text.size();
  std::uint64_t digits = 0;
  const auto scan_digits = [&] {
    const char* const begin = at;
    for (; at != end && *at >= '0' && *at <= '9'; ++at) {
      digits = 10 * digits + static_cast<std::uint64_t>(*at - '0');
    }
    return static_cast<std::size_t>(at - begin);
  };
  std::size_t count = scan_digits();
  std::size_t decimals = 0;
  if (at != end && *at == '.') {
    ++at;
    decimals = scan_digits();
    count += decimals;
  }
  if (count >= kPowers.size()) return false;
  if (at != end && (is_name_character(*at) || *at == '.')) return false;
  result.length = static_cast<std::size_t>(at - text.data());
  result.value = static_cast<double>(digits) / kPowers[decimals];
  return true;
}

}  // namespace

ScannedNumber scan_number(std::string_view text) {
  ScannedNumber result;
  if (scan_short(text, result)) return result;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), result.value);
  result.length = static_cast<std::size_t>(read.ptr - text.data());
  if (result.length < text.size() &&
      (is_name_character(text[result.length]) || text[result.length] == '.')) {
    result.status = ScannedNumber::Status::kMalformed;
    while (result.length < text.size() &&
           (is_name_character(text[result.length]) || text[result.length] == '.')) {
      ++result.length;
    }
    return result;
  }
  if (read.ec == std::errc::result_out_of_range) {
    result.value = 0;
    if (!is_below_one(text.substr(0, result.length))) {
      result.status = ScannedNumber::Status::kOverflow;
    }
  }
  return result;
}

std::string number_text(double value) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end.ptr};
}

}  // namespace sdpsol
