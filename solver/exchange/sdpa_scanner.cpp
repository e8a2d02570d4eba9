#include "solver/exchange/sdpa_scanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string>
#include <system_error>

#include "solver/language/characters.h"

namespace sdpsol {
namespace {

bool is_separator(char byte) {
  return byte == ',' || byte == '(' || byte == ')' || byte == '{' || byte == '}';
}

bool ends_word(char byte) {
  return is_blank(byte) || is_separator(byte) || byte == '=';
}

bool is_sign(char byte) {
  return byte == '+' || byte == '-';
}

std::string_view without_sign(std::string_view word) {
  return word.substr(!word.empty() && is_sign(word[0]) ? 1 : 0);
}

bool begins_digits(std::string_view text) {
  if (text.starts_with('.')) text.remove_prefix(1);
  return !text.empty() && is_digit(text[0]);
}

// Where an exponent follows that scan_number() would not take for one: at a "D",
// or at the sign of an exponent that has no letter. The word's size if nowhere.
std::size_t foreign_exponent(std::string_view number) {
  const std::size_t letter = number.find_first_of("dD");
  if (letter != std::string_view::npos) return letter;
  const std::size_t mark = number.find_first_of("+-eE");
  const bool letterless = mark != std::string_view::npos && is_sign(number[mark]) &&
                          number.substr(0, mark).find('.') != std::string_view::npos;
  return letterless ? mark : number.size();
}

}  // namespace

SdpaScanner::SdpaScanner(std::string_view text, std::uint32_t begin) : text_(text), at_(begin) {
  if (begin == 0 && text_.starts_with(kByteOrderMark)) at_ = kByteOrderMark.size();
}

bool SdpaScanner::next() {
  for (skip_blanks(); at_ < text_.size(); skip_blanks()) {
    if (text_[at_] == '\n') {
      ++at_;
      at_line_start_ = true;
    } else if (at_line_start_ && (text_[at_] == '"' || text_[at_] == '*')) {
      skip_line();
    } else {
      take_word();
      return true;
    }
  }
  return false;
}

bool SdpaScanner::next_on_line() {
  skip_blanks();
  if (at_ == text_.size() || text_[at_] == '\n') return false;
  take_word();
  return true;
}

void SdpaScanner::skip_line() {
  at_ = std::min(text_.find('\n', at_), text_.size());
}

Span SdpaScanner::end_of_text() const {
  std::size_t end = text_.size();
  while (end > 0 && is_blank(text_[end - 1])) --end;
  return {static_cast<std::uint32_t>(end), static_cast<std::uint32_t>(end)};
}

void SdpaScanner::skip_blanks() {
  while (at_ < text_.size() && text_[at_] != '\n' &&
         (is_blank(text_[at_]) || is_separator(text_[at_]))) {
    ++at_;
  }
}

void SdpaScanner::take_word() {
  at_line_start_ = false;
  word_.begin = static_cast<std::uint32_t>(at_);
  ++at_;
  if (text_[word_.begin] != '=') {
    while (at_ < text_.size() && !ends_word(text_[at_])) ++at_;
  }
  word_.end = static_cast<std::uint32_t>(at_);
}

std::optional<std::int64_t> scan_whole(std::string_view word) {
  // from_chars takes a "-" by itself.
  if (word.starts_with('+') && word.size() > 1 && is_digit(word[1])) word.remove_prefix(1);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (end != word.data() + word.size() || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    using Range = std::numeric_limits<std::int64_t>;
    return word.starts_with('-') ? Range::min() : Range::max();
  }
  return value;
}

ScannedNumber scan_real(std::string_view word) {
  const std::string_view number = without_sign(word);
  ScannedNumber result;
  result.status = ScannedNumber::Status::kMalformed;
  if (begins_digits(number)) {
    const std::size_t exponent = foreign_exponent(number);
    if (exponent == number.size()) {
      result = scan_number(number);
    } else {
      const bool letter = !is_sign(number[exponent]);
      std::string rewritten(number.substr(0, exponent));
      rewritten += 'e';
      rewritten += number.substr(exponent + (letter ? 1 : 0));
      result = scan_number(rewritten);
      if (result.length == rewritten.size()) result.length = number.size();
    }
    if (result.length != number.size()) result.status = ScannedNumber::Status::kMalformed;
  }
  if (word.starts_with('-')) result.value = -result.value;
  result.length = word.size();
  return result;
}

bool is_nan_or_infinity(std::string_view word) {
  constexpr std::array<std::string_view, 3> kWords = {"nan", "inf", "infinity"};
  return std::any_of(kWords.begin(), kWords.end(), [&](std::string_view known) {
    return equal_but_for_case(without_sign(word), known);
  });
}

bool resembles_number(std::string_view word) {
  return begins_digits(without_sign(word)) || is_nan_or_infinity(word);
}

}  // namespace sdpsol
